#include "netkit/siphons/arc_sets.h"

#include <utility>

#include "structure/struct_vars.h"

namespace siphons {

namespace {

PlaceList PlacesOfRow(const sp_entry* row) {
  PlaceList places;
  const sp_entry* previous = nullptr;
  for (const sp_entry* element = row; element != nullptr; element = element->next) {
    const bool first = previous == nullptr || previous->index != element->index;
    if (first && element->value != 0) places.push_back(element->index);
    previous = element;
  }
  return places;
}

}  // namespace

ArcSets ArcSetsOfTables() {
  ArcSets arcs;
  arcs.placeCount = no_places;
  for (int32_t t = 0; t < no_trans; ++t) {
    arcs.transitions.push_back({PlacesOfRow(i_matrix[t]), PlacesOfRow(o_matrix[t])});
  }
  return arcs;
}

ArcSets Reversed(ArcSets arcs) {
  for (ArcSets::Transition& transition : arcs.transitions) std::swap(transition.inputs, transition.outputs);
  return arcs;
}

}  // namespace siphons
