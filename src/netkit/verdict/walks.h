// Walks in search of a dead marking: where the markings are too many to be listed, luck and a guide may do.
//
// A walk fires transitions from the initial marking on until a marking is dead or the walk is long enough;
// the next one is as long as a fixed series says. Four ways to choose take turns, since nets differ in what
// leads into a corner: any enabled transition; one out of two by a rank drawn anew for each walk, so that
// some things happen seldom; the one that leaves the fewest enabled; and, with a candidate of the state
// equation, those that it still has to fire. The generator has a fixed seed: runs are repeatable.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <random>
#include <vector>

#include "netkit/verdict/firing_net.h"
#include "netkit/verdict/walker.h"

namespace siphons {

class Walks {
 public:
  /// The net must outlive the object and be exact.
  explicit Walks(const FiringNet& net);

  /// From now on walks follow these counts of firings, by transition, too.
  void SetGuide(std::vector<int64_t> firings) { guide_ = std::move(firings); }

  /// Walks on for about so much work in all, or until a dead marking is found; true when it is. The first
  /// walk may take half of it, the others are short at first.
  bool Run(int64_t work, const std::function<bool()>& stop);
  /// One walk by the guide.
  bool FollowGuide(const std::function<bool()>& stop);

  /// The last walk.
  const std::vector<int32_t>& Sequence() const { return sequence_; }
  int64_t Firings() const { return firings_; }

 private:
  enum class Way { kAny, kRanked, kFewest, kGuided };

  bool Walk(Way way, int64_t length, int64_t mostWork, const std::function<bool()>& stop);
  void Prepare(Way way);
  int32_t Choose(Way way);
  int32_t Any(std::span<const int32_t> enabled);
  int32_t LeavingFewest(std::span<const int32_t> enabled);
  int32_t ByGuide(std::span<const int32_t> enabled);

  const FiringNet& net_;
  Walker walker_;
  std::mt19937_64 random_{20261121};
  std::vector<int32_t> sequence_;
  std::vector<int64_t> guide_, left_;  ///< firings the guide asks for, and those not done yet
  std::vector<uint64_t> ranks_;
  std::vector<int32_t> tried_;
  int64_t firings_ = 0;
  int64_t walks_ = 0;
};

}  // namespace siphons
