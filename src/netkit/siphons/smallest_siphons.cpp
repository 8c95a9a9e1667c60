// First as many siphons as wanted, of any size, so that there is an answer when time is short. Their greatest
// size is a bound from then on, which falls with each smaller siphon that is found. Two searches know to use
// it (job_search.h). One enumerates, and gives up what has grown beyond the bound: it is fast where small
// siphons are found by chance, and where there are not many altogether. The other one finds those of each
// place by their size, so that it never looks at great ones, at the price of a set-up for each place and of
// proofs. Neither is always good, and how good is seen only afterwards: of a long chain of choices not all
// siphons can be looked at, and in a large manufacturing cell the proofs are hard. So the second one begins,
// and may try to come to its end with little work. Then the first one is interrupted now and then, each time
// after four times the work, and the second one may try with half of that. The work is counted, not timed.
// Whichever ends, the answer is the same, and mostly takes no more than three times as long as with the
// better one alone.
#include "netkit/siphons/smallest_siphons.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <iterator>
#include <limits>
#include <set>

namespace siphons {

namespace {

constexpr uint64_t kFirstTurn = 750000;  ///< steps
constexpr uint64_t kTurnGrowth = 4;

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
  if (areAll || isStopped) return {smallest.Siphons(), isStopped, areAll};

  query.mostPlaces = &smallest.Bound();
  const auto take = [&](std::span<const int32_t> siphon) {
    smallest.Take(siphon);
    return true;
  };
  const auto endsBySize = [&](uint64_t mostWork) {
    std::atomic<uint64_t> work = 0;
    SiphonQuery bySize = query;
    bySize.smallestFirst = true;
    bySize.work = &work;
    return EnumerateMinimalSiphons(arcs, bySize, threads, take, [&] { return asked() || work > mostWork; });
  };
  std::atomic<uint64_t> work = 0;
  query.work = &work;
  uint64_t turn = kFirstTurn;
  const auto isOver = [&] {
    if (asked()) return true;
    if (work < turn * kTurnGrowth) return false;
    turn *= kTurnGrowth;
    return endsBySize(turn / 2) || isStopped;
  };
  if (!endsBySize(turn)) EnumerateMinimalSiphons(arcs, query, threads, take, isOver);
  return {smallest.Siphons(), isStopped, false};
}

}  // namespace siphons
