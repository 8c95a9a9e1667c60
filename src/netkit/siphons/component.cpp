#include "netkit/siphons/component.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

namespace siphons {

namespace {

constexpr size_t kMostCompared = 32;  ///< a place with more producers keeps some of the dominated ones

}  // namespace

ArcSets WithoutDominatedArcs(const ArcSets& arcs, const PlaceList& places) {
  std::vector<bool> among(static_cast<size_t>(arcs.placeCount));
  for (const int32_t p : places) among[static_cast<size_t>(p)] = true;
  const auto isOutside = [&among](int32_t p) { return !among[static_cast<size_t>(p)]; };

  ArcSets reduced{arcs.placeCount, {}};
  std::vector<std::vector<size_t>> producers(among.size());
  for (const ArcSets::Transition& transition : arcs.transitions) {
    PlaceList inputs;
    std::remove_copy_if(transition.inputs.begin(), transition.inputs.end(), std::back_inserter(inputs),
                        isOutside);
    for (const int32_t p : transition.outputs) {
      if (isOutside(p) || std::binary_search(inputs.begin(), inputs.end(), p)) continue;
      producers[static_cast<size_t>(p)].push_back(reduced.transitions.size());
    }
    reduced.transitions.push_back({std::move(inputs), {}});
  }
  const auto inputsOf = [&reduced](size_t t) -> const PlaceList& { return reduced.transitions[t].inputs; };
  for (const int32_t p : places) {
    std::vector<size_t>& mine = producers[static_cast<size_t>(p)];
    std::stable_sort(mine.begin(), mine.end(),
                     [&](size_t a, size_t b) { return inputsOf(a).size() < inputsOf(b).size(); });
    size_t kept = 0;
    for (const size_t t : mine) {
      const auto end = mine.begin() + static_cast<std::ptrdiff_t>(std::min(kept, kMostCompared));
      const bool isDominated = std::any_of(mine.begin(), end, [&](size_t smaller) {
        return std::includes(inputsOf(t).begin(), inputsOf(t).end(), inputsOf(smaller).begin(),
                             inputsOf(smaller).end());
      });
      if (isDominated) continue;
      mine[kept++] = t;
      reduced.transitions[t].outputs.push_back(p);
    }
  }
  return reduced;
}

std::vector<Component> ComponentsOf(const ArcSets& arcs, std::vector<PlaceList> parts) {
  constexpr size_t kNone = SIZE_MAX;
  std::vector<size_t> partOf(static_cast<size_t>(arcs.placeCount), kNone);
  std::vector<int32_t> numberOf(partOf.size());
  std::vector<Component> components(parts.size());
  for (size_t i = 0; i < parts.size(); ++i) {
    components[i].places = std::move(parts[i]);
    components[i].arcs.placeCount = static_cast<int32_t>(components[i].places.size());
    for (size_t k = 0; k < components[i].places.size(); ++k) {
      const size_t p = static_cast<size_t>(components[i].places[k]);
      partOf[p] = i;
      numberOf[p] = static_cast<int32_t>(k);
    }
  }
  // A transition becomes one of every part that it fills.
  std::vector<size_t> lastTransition(components.size());  // which was seen last there, and 1
  for (size_t t = 0; t < arcs.transitions.size(); ++t) {
    for (const int32_t p : arcs.transitions[t].outputs) {
      const size_t part = partOf[static_cast<size_t>(p)];
      if (part == kNone) continue;
      std::vector<ArcSets::Transition>& transitions = components[part].arcs.transitions;
      if (lastTransition[part] != t + 1) transitions.emplace_back();
      lastTransition[part] = t + 1;
      transitions.back().outputs.push_back(numberOf[static_cast<size_t>(p)]);
    }
    for (const int32_t p : arcs.transitions[t].inputs) {
      const size_t part = partOf[static_cast<size_t>(p)];
      if (part == kNone || lastTransition[part] != t + 1) continue;
      components[part].arcs.transitions.back().inputs.push_back(numberOf[static_cast<size_t>(p)]);
    }
  }
  return components;
}

}  // namespace siphons
