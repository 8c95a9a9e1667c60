#include "netkit/verdict/explanation.h"

#include <algorithm>

#include "netkit/siphons/minimal_siphons.h"

namespace siphons {

std::vector<int64_t> ShortBelow(const PetriNet& net) {
  std::vector<int64_t> below(net.places.size());
  for (const Transition& transition : net.transitions) {
    for (const Arc& arc : transition.inputs) {
      int64_t& bound = below[static_cast<size_t>(arc.place)];
      bound = std::max(bound, arc.markingDependent ? INT64_MAX : arc.weight);
    }
  }
  return below;
}

PlaceList ShortPlaces(const PetriNet& net, std::span<const int64_t> marking) {
  const std::vector<int64_t> below = ShortBelow(net);
  PlaceList places;
  for (size_t p = 0; p < below.size(); ++p) {
    if (marking[p] < below[p]) places.push_back(static_cast<int32_t>(p));
  }
  return places;
}

std::vector<PlaceList> SiphonsAmong(const PetriNet& net, const PlaceList& places, size_t most,
                                    const std::function<bool()>& stop) {
  std::vector<PlaceList> siphons;
  const auto take = [&](std::span<const int32_t> siphon) {
    siphons.emplace_back(siphon.begin(), siphon.end());
    return siphons.size() < most;
  };
  const ArcSets arcs = ArcSetsOf(net);
  ForEachMinimalSiphon(arcs, {places, {}}, take, stop);
  std::sort(siphons.begin(), siphons.end(), [](const PlaceList& a, const PlaceList& b) {
    return a.size() != b.size() ? a.size() < b.size() : a < b;
  });
  return siphons;
}

std::vector<Obstacle> Obstacles(const PetriNet& net, std::span<const int64_t> marking) {
  std::vector<Obstacle> obstacles;
  int32_t number = 0;
  for (const Transition& transition : net.transitions) {
    const auto tokens = [&marking](const Arc& arc) { return marking[static_cast<size_t>(arc.place)]; };
    const auto input = std::find_if(transition.inputs.begin(), transition.inputs.end(),
                                    [&](const Arc& arc) { return tokens(arc) < arc.weight; });
    const auto inhibitor = std::find_if(transition.inhibitors.begin(), transition.inhibitors.end(),
                                        [&](const Arc& arc) { return tokens(arc) >= arc.weight; });
    if (input != transition.inputs.end()) {
      obstacles.push_back({number, input->place, tokens(*input), input->weight, false});
    } else if (inhibitor != transition.inhibitors.end()) {
      obstacles.push_back({number, inhibitor->place, tokens(*inhibitor), inhibitor->weight, true});
    }
    ++number;
  }
  return obstacles;
}

}  // namespace siphons
