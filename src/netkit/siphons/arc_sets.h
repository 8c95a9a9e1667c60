// The arcs of a net as sets: which places a transition takes tokens from, and which it puts tokens into. This
// is all that decides about siphons and traps; multiplicities do not matter.
#pragma once

#include <cstdint>
#include <vector>

namespace siphons {

/// Place numbers, ascending, each once.
using PlaceList = std::vector<int32_t>;

struct ArcSets {
  struct Transition {
    PlaceList inputs;
    PlaceList outputs;
  };
  int32_t placeCount = 0;
  std::vector<Transition> transitions;
};

/// The arcs of the structural tables (struct_vars.h), as the dense matrices have them: of several arcs
/// between a place and a transition the first element of the row counts, and it is an arc when its value is
/// not 0.
ArcSets ArcSetsOfTables();

/// The arcs turned round. The siphons of the one net are the traps of the other.
ArcSets Reversed(ArcSets arcs);

}  // namespace siphons
