// Siphons by looking at every set of places.
#pragma once

#include <algorithm>
#include <set>

#include "tests/rows.h"

namespace siphons {

/// Place p is bit p.
using PlaceSet = uint32_t;

/// All inclusion-minimal non-empty place sets that are siphons of the net, by looking at every set.
inline std::set<PlaceSet> MinimalSiphons(const Rows& O, const Rows& I) {
  const uint32_t placeCount = static_cast<uint32_t>(O[0].size());
  const auto support = [](const Row& row) {
    PlaceSet set = 0;
    for (size_t p = 0; p < row.size(); ++p) set |= row[p] != 0 ? PlaceSet{1} << p : 0;
    return set;
  };
  std::set<PlaceSet> minimal;
  for (PlaceSet s = 1; s < PlaceSet{1} << placeCount; ++s) {
    bool siphon = true;
    for (size_t t = 0; t < O.size(); ++t)
      siphon = siphon && ((support(O[t]) & s) == 0 || (support(I[t]) & s) != 0);
    const bool holdsOne =
        std::any_of(minimal.begin(), minimal.end(), [s](PlaceSet m) { return (m & s) == m; });
    if (siphon && !holdsOne) minimal.insert(s);  // subsets of s are smaller numbers
  }
  return minimal;
}

}  // namespace siphons
