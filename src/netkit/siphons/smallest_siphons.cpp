// The bound on the number of places rises by one from search to search until enough siphons are within it.
// Searches with a small bound are short, since they end at the first place too many; all together cost little
// more than the last one.
#include "netkit/siphons/smallest_siphons.h"

#include <iterator>
#include <set>

namespace siphons {

SmallestSiphons FindSmallestSiphons(const ArcSets& arcs, SiphonQuery query, int32_t threads, size_t count,
                                    const std::function<bool()>& stop) {
  SmallestSiphons result;
  std::set<PlaceList, bool (*)(const PlaceList&, const PlaceList&)> smallest(ShorterOrEarlier);
  bool isOneTooMany = false;
  const auto take = [&](std::span<const int32_t> siphon) {
    if (!smallest.emplace(siphon.begin(), siphon.end()).second) return true;  // of an earlier search
    if (smallest.size() > count) {
      smallest.erase(std::prev(smallest.end()));
      isOneTooMany = true;
    }
    return true;
  };
  for (query.mostPlaces = 1;; ++query.mostPlaces) {
    const EnumerationEnd end = EnumerateMinimalSiphons(arcs, query, threads, take, stop);
    result.stopped = !end.complete;
    result.areAll = end.complete && !end.leftOutGreat && !isOneTooMany;
    if (result.stopped || isOneTooMany || !end.leftOutGreat) break;
  }
  result.siphons.assign(smallest.begin(), smallest.end());
  return result;
}

}  // namespace siphons
