// How many tokens a place can have at most, by the arcs alone.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "netkit/model/petri_net.h"

namespace siphons {

struct StructuralBounds {
  /// By place: the greatest number of tokens it can have in any marking that is reachable from the initial
  /// one; nothing where no weighting of places bounds it, or where the search for one was stopped.
  std::vector<std::optional<int64_t>> bounds;
  bool complete = true;  ///< every place was looked at to the end
};

/// A weighting y >= 0 of the places that no transition increases keeps y M below y M0 for ever, so that M(p)
/// is at most y M0 / y(p). The least such bound of a place is a linear program in exact rationals, one for
/// every place. Asks `stop` between places. A weight that depends on the marking counts as nothing where
/// tokens are taken, and as no bound at all where they are put.
StructuralBounds BoundsOf(const PetriNet& net, const std::function<bool()>& stop);

}  // namespace siphons
