// All minimal siphons of a net, one after the other, without arithmetic.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <span>

#include "netkit/siphons/arc_sets.h"

namespace siphons {

/// Which minimal siphons are wanted.
struct SiphonQuery {
  PlaceList within;      ///< all places of the siphon are among these, each once
  PlaceList containing;  ///< and these are among its places
  /// If not null: with two places or more, it has no more than these many. The number may fall meanwhile.
  const std::atomic<int32_t>* mostPlaces = nullptr;
  /// With `mostPlaces`: those that have the same first place come by their size, so that it is proved of the
  /// rest, without a look at it, that it is greater.
  bool smallestFirst = false;
  /// If not null, the work is added to it now and then, in steps: about a hundred take a microsecond.
  std::atomic<uint64_t>* work = nullptr;
  int32_t part = 1;   ///< of `parts`: every siphon belongs to one part
  int32_t parts = 1;  ///< at least 1
};

/// Calls found(places) for every wanted minimal siphon of the net, its places ascending, each siphon once.
/// The order depends on nothing but the net and the query. The search ends early when `found` returns false,
/// or when `stop`, which is asked often, returns true; both are called from the calling thread. With more
/// than one thread the search runs beside it, and waits for `stop` with its next job. Needs memory for the
/// net and for some thousand siphons, and in rare cases for all that were found.
bool EnumerateMinimalSiphons(const ArcSets& arcs, const SiphonQuery& query, int32_t threads,
                             const std::function<bool(std::span<const int32_t>)>& found,
                             const std::function<bool()>& stop);

/// The same on one thread; whether it came to its end.
bool ForEachMinimalSiphon(const ArcSets& arcs, const SiphonQuery& query,
                          const std::function<bool(std::span<const int32_t>)>& found,
                          const std::function<bool()>& stop);

/// The order of answers: by number of places, then by place numbers.
bool ShorterOrEarlier(const PlaceList& a, const PlaceList& b);

/// All places of the net.
PlaceList AllPlaces(const ArcSets& arcs);

}  // namespace siphons
