// Exploration of the reachable markings until one is dead, none is left, or a limit is met.
//
// Breadth first, every firing is followed and the sequence into the first dead marking is a shortest one.
// Reduced, a stubborn set of firings is followed in each marking (stubborn_set.h), the latest marking first;
// this finds a dead marking whenever there is one, too, but no shortest way to it. The order is free there:
// with a goal, a marking that may be reachable and dead, the nearest ones take turns with the latest. Work is
// counted in transitions and places looked at and words of markings written, so that a limit means the same
// on every machine. Memory is the bound: a packed marking, its parent and its share of the hash table.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "netkit/verdict/firing_net.h"
#include "netkit/verdict/marking_store.h"
#include "netkit/verdict/stubborn_set.h"

namespace siphons {

enum class ExplorationOrder { kBreadthFirst, kReduced };

class Exploration {
 public:
  enum class End {
    kExhausted,  ///< all markings were seen, none is dead
    kDeadlock,
    kLimit,
    kTooLarge,  ///< all were seen but those with a number beyond 64 bits, and none is dead
    kStopped,
  };

  /// The net must outlive the object and be exact; kReduced needs one level.
  Exploration(const FiringNet& net, ExplorationOrder order);

  /// From now on, reduced, every other marking that is looked at is one that has fewest tokens to move to the
  /// goal.
  void SetGoal(Marking goal);

  /// Goes on until so much work is done in all, or so many bytes are held; `stop` is asked after every few
  /// markings.
  End Run(int64_t work, int64_t bytes, const std::function<bool()>& stop);

  int64_t Markings() const { return store_.Size(); }
  int64_t Bytes() const {
    return store_.Size() * (store_.BytesPerMarking() + kLinkBytes + (goal_.empty() ? 0 : kGoalBytes));
  }

  /// The firings from the initial marking to the dead one that was found.
  std::vector<int32_t> Sequence() const;

 private:
  static constexpr int64_t kLinkBytes = 12;
  static constexpr int64_t kGoalBytes = 17;

  /// How a marking was first reached.
  struct Link {
    int32_t parent;
    int32_t transition;
  };

  /// A marking not looked at, with its tokens away from the goal.
  struct Distant {
    int64_t distance;
    int32_t number;
    /// For a heap with the nearest and, of these, the latest one on top.
    bool operator<(const Distant& other) const {
      return distance != other.distance ? distance > other.distance : number < other.number;
    }
  };

  int32_t TakeNext();
  void Expand(int32_t number);
  int64_t Distance(const Marking& marking);

  const FiringNet& net_;
  ExplorationOrder order_;
  MarkingStore store_;
  std::optional<StubbornSet> stubborn_;
  std::vector<Link> links_;
  std::vector<int32_t> waiting_;  ///< kReduced: those not expanded yet are in it
  Marking goal_;                  ///< empty: none
  std::vector<Distant> nearest_;  ///< a heap; with a goal, those not expanded yet are in it
  std::vector<bool> expanded_;    ///< with a goal, by marking
  bool takeNearest_ = false;
  int32_t next_ = 0;  ///< kBreadthFirst: the first one not expanded
  int32_t dead_ = -1;
  bool tooLarge_ = false;
  int64_t work_ = 0;
  Marking marking_;
  std::vector<int32_t> enabled_;
};

}  // namespace siphons
