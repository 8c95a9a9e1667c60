// The arcs of a net as sets: which places a transition takes tokens from, and which it puts tokens into. This
// is all that decides about siphons and traps; multiplicities do not matter.
#pragma once

#include <cstdint>
#include <vector>

#include "netkit/model/petri_net.h"

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

/// The input and output arcs of the net; a marking-dependent weight counts as one of at least 1.
ArcSets ArcSetsOf(const PetriNet& net);

/// The arcs with inputs and outputs exchanged. The siphons of the one net are the traps of the other.
ArcSets Reversed(ArcSets arcs);

}  // namespace siphons
