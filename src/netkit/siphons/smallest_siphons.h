// The smallest minimal siphons of a net, without looking at the greater ones.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "netkit/siphons/minimal_siphons.h"

namespace siphons {

struct SmallestSiphons {
  std::vector<PlaceList> siphons;  ///< in the order of ShorterOrEarlier
  bool stopped = false;            ///< as asked: some of them may not be the smallest
  bool areAll = false;             ///< there is no other wanted siphon
};

/// The first `count` wanted siphons in the order of ShorterOrEarlier; the bound of the query on places does
/// not count. Ends early when `stop`, asked often, returns true. Needs memory for `count` siphons.
SmallestSiphons FindSmallestSiphons(const ArcSets& arcs, SiphonQuery query, int32_t threads, size_t count,
                                    const std::function<bool()>& stop);

}  // namespace siphons
