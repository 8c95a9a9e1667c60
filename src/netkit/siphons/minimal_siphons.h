// All minimal siphons of a net, one after the other, without arithmetic.
#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "netkit/siphons/arc_sets.h"

namespace siphons {

/// Which minimal siphons are wanted.
struct SiphonQuery {
  PlaceList within;      ///< all places of the siphon are among these
  PlaceList containing;  ///< and these are among its places
};

/// Calls found(places) for every wanted minimal siphon of the net, its places ascending, each siphon once, in
/// no particular order. The search ends early when `found` returns false, or when `stop`, which is asked
/// often, returns true. Returns whether it came to its end, so that there is no other. Needs memory for the
/// net and for the siphons found; with `containing`, also for those met on the way that do not contain it.
bool ForEachMinimalSiphon(const ArcSets& arcs, const SiphonQuery& query,
                          const std::function<bool(std::span<const int32_t>)>& found,
                          const std::function<bool()>& stop);

/// All places of the net.
PlaceList AllPlaces(const ArcSets& arcs);

}  // namespace siphons
