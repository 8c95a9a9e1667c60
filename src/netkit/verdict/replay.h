// Replays a firing sequence on the record of the net, for the last word before it is printed.
//
// Nothing of the search is used here: enabledness, priorities and sums are computed again from the arcs, one
// by one, so that a fault of the search cannot confirm itself.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "netkit/model/petri_net.h"

namespace siphons {

/// Whether a transition can fire: its arcs allow it, and those of no transition that goes before it do. The
/// net has no enabling functions and no marking-dependent arcs.
bool CanFire(const PetriNet& net, std::span<const int64_t> marking, const Transition& transition);

/// The marking after the sequence; nothing where a transition of it cannot fire, a number leaves 64 bits, or
/// an enabling function or a marking-dependent arc is in the net.
std::optional<std::vector<int64_t>> Replay(const PetriNet& net, std::span<const int32_t> sequence);

/// Whether no transition can fire.
bool IsDead(const PetriNet& net, std::span<const int64_t> marking);

}  // namespace siphons
