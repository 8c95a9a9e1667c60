// First as many siphons as wanted, of any size, so that there is an answer when time is short. Then each
// place by itself, the places before it left out: the siphons with it, the smallest first, until they are
// greater than as many as are wanted (job_search.h). Small siphons are found, and the lack of them shown,
// without a look at the great ones.
#include "netkit/siphons/smallest_siphons.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <iterator>
#include <limits>
#include <set>

namespace siphons {

namespace {

/// The first ones in the order of answers, as many as wanted.
class SmallestSoFar {
 public:
  explicit SmallestSoFar(size_t count) : count_(count) {}

  void Take(std::span<const int32_t> siphon) {
    siphons_.emplace(siphon.begin(), siphon.end());  // an earlier search may have found it
    if (siphons_.size() <= count_) return;
    siphons_.erase(std::prev(siphons_.end()));
    isOneTooMany_ = true;
    mostPlaces_ = static_cast<int32_t>(siphons_.rbegin()->size());
  }

  bool IsOneTooMany() const { return isOneTooMany_; }
  /// How many places a siphon may have to be wanted still.
  const std::atomic<int32_t>& Bound() const { return mostPlaces_; }
  std::vector<PlaceList> Siphons() const { return {siphons_.begin(), siphons_.end()}; }

 private:
  const size_t count_;
  std::set<PlaceList, bool (*)(const PlaceList&, const PlaceList&)> siphons_{ShorterOrEarlier};
  bool isOneTooMany_ = false;
  std::atomic<int32_t> mostPlaces_ = std::numeric_limits<int32_t>::max();
};

}  // namespace

SmallestSiphons FindSmallestSiphons(const ArcSets& arcs, SiphonQuery query, int32_t threads, size_t count,
                                    const std::function<bool()>& stop) {
  SmallestSoFar smallest(count);
  bool isStopped = false;
  const auto asked = [&] { return isStopped = isStopped || stop(); };
  const bool areAll = EnumerateMinimalSiphons(
      arcs, query, threads,
      [&](std::span<const int32_t> siphon) {
        smallest.Take(siphon);
        return !smallest.IsOneTooMany();
      },
      asked);
  query.mostPlaces = &smallest.Bound();
  if (!areAll && !isStopped) {
    EnumerateMinimalSiphons(
        arcs, query, threads,
        [&](std::span<const int32_t> siphon) {
          smallest.Take(siphon);
          return true;
        },
        asked);
  }
  return {smallest.Siphons(), isStopped, areAll};
}

}  // namespace siphons
