#include "netkit/siphons/arc_sets.h"

#include <algorithm>
#include <utility>

namespace siphons {

namespace {

PlaceList PlacesOf(const std::vector<Arc>& arcs) {
  PlaceList places;
  std::transform(arcs.begin(), arcs.end(), std::back_inserter(places),
                 [](const Arc& arc) { return arc.place; });
  std::sort(places.begin(), places.end());
  return places;
}

}  // namespace

ArcSets ArcSetsOf(const PetriNet& net) {
  ArcSets arcs;
  arcs.placeCount = static_cast<int32_t>(net.places.size());
  for (const Transition& transition : net.transitions) {
    arcs.transitions.push_back({PlacesOf(transition.inputs), PlacesOf(transition.outputs)});
  }
  return arcs;
}

ArcSets Reversed(ArcSets arcs) {
  for (ArcSets::Transition& transition : arcs.transitions) std::swap(transition.inputs, transition.outputs);
  return arcs;
}

}  // namespace siphons
