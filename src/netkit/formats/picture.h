// What a picture of a net shows beside the net itself: chosen sets of places, and places that are monitors.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "netkit/model/petri_net.h"

namespace siphons {

/// A set of places that the picture fills. Transitions that take from it and give nothing back are marked,
/// since they are the ones that can run it dry.
struct Highlight {
  std::string name;             ///< a word: the nodes get it as a class
  std::vector<int32_t> places;  ///< ascending, each once
};

struct PictureOptions {
  std::vector<Highlight> highlights;
  std::vector<bool> monitors;  ///< by place; empty: none
};

/// The transitions that take tokens from the places and put none back into them, ascending.
std::vector<int32_t> DrainingTransitions(const PetriNet& net, const std::vector<int32_t>& places);

/// "immediate", "exponential", "deterministic" or "general".
const char* WordOf(TransitionKind kind);

}  // namespace siphons
