// First as many siphons as wanted, of any size, so that there is an answer when time is short. Then searches
// for siphons within a bound on the number of places, which rises by a quarter from search to search until
// enough siphons are within it, or no greater one is left. Small siphons are found, and the lack of them
// shown, without a look at the great ones. As soon as there are enough, greater ones than these are not
// wanted any more, which narrows the search that is under way; so a bound that is too high does little harm.
#include "netkit/siphons/smallest_siphons.h"

#include <algorithm>
#include <atomic>
#include <iterator>
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
    mostPlaces_ = MostPlaces();
  }

  bool IsFull() const { return siphons_.size() == count_; }
  bool IsOneTooMany() const { return isOneTooMany_; }
  int32_t MostPlaces() const { return static_cast<int32_t>(siphons_.rbegin()->size()); }
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
  query.mostPlaces = std::numeric_limits<int32_t>::max();
  bool areAll = EnumerateMinimalSiphons(
                    arcs, query, threads,
                    [&](std::span<const int32_t> siphon) {
                      smallest.Take(siphon);
                      return !smallest.IsOneTooMany();
                    },
                    asked)
                    .complete;
  query.mostPlacesNow = &smallest.Bound();
  bool areSmallest = areAll;
  for (query.mostPlaces = 1; !areSmallest && !isStopped;
       query.mostPlaces = std::max(query.mostPlaces + 1, query.mostPlaces / 4 * 5)) {
    const EnumerationEnd end = EnumerateMinimalSiphons(
        arcs, query, threads,
        [&](std::span<const int32_t> siphon) {
          smallest.Take(siphon);
          return true;
        },
        asked);
    areAll = end.complete && !end.leftOutGreat && !smallest.IsOneTooMany();
    areSmallest =
        end.complete && (areAll || (smallest.IsFull() && smallest.MostPlaces() <= query.mostPlaces));
  }
  return {smallest.Siphons(), isStopped, areAll};
}

}  // namespace siphons
