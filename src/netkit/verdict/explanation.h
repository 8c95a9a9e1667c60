// Why a marking is dead: what holds each transition up, and which siphons lack tokens.
//
// A place is short of tokens at a marking when it holds less than the greatest weight with which it feeds a
// transition; a marking-dependent weight may be greater than any number of tokens, so its place is always
// short. At a dead marking of a net without inhibitor arcs every transition has a short input place. The
// short places are therefore a siphon: who fills one of them takes from one of them. Its minimal siphons are
// the usual explanation of the deadlock.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "netkit/model/petri_net.h"
#include "netkit/siphons/arc_sets.h"

namespace siphons {

/// By place: with fewer tokens it is short. 0 where it feeds no transition, INT64_MAX where a weight depends
/// on the marking.
std::vector<int64_t> ShortBelow(const PetriNet& net);

/// The places that are short at the marking, ascending.
PlaceList ShortPlaces(const PetriNet& net, std::span<const int64_t> marking);

/// Minimal siphons among the places, `most` at most, ordered by number of places.
std::vector<PlaceList> SiphonsAmong(const PetriNet& net, const PlaceList& places, size_t most,
                                    const std::function<bool()>& stop);

/// A condition of a transition that fails: too few tokens for an input arc, or too many at an inhibitor arc.
struct Obstacle {
  int32_t transition = 0;
  int32_t place = 0;
  int64_t tokens = 0;  ///< that the place holds
  int64_t weight = 0;  ///< of the arc
  bool inhibitor = false;
};

/// The first obstacle of each transition that arcs hold up at the marking. The net has no marking-dependent
/// arcs.
std::vector<Obstacle> Obstacles(const PetriNet& net, std::span<const int64_t> marking);

}  // namespace siphons
