// Which transitions are enough to look at in a marking, when only dead markings are sought.
//
// A set of transitions is stubborn in a marking when what happens outside of it neither disables nor enables
// one of its own, and its enabled ones disable none outside (Valmari 1991). If no member fires, all members
// stay as they are; so every way into a dead marking fires one of the enabled members at some time, and that
// firing can be put first. Exploring the enabled members alone therefore reaches every reachable dead
// marking, often through far fewer markings.
//
// The set is closed under two rules. With an enabled transition it holds all that could disable it or that it
// could disable: those that take from (or, at inhibitor arcs, fill) a place that the other one watches. With
// a disabled transition it holds all that could mend one chosen condition that fails: the fillers of a place
// with too few tokens, or the drainers of one with too many. Priorities are outside of the theory: a net with
// several levels has to be explored whole.
#pragma once

#include <cstdint>
#include <vector>

#include "netkit/verdict/firing_net.h"

namespace siphons {

class StubbornSet {
 public:
  /// The net must outlive the object and have one level.
  explicit StubbornSet(const FiringNet& net);

  /// Reduces the enabled transitions of a marking, of which there is one at least, to the enabled members of
  /// a stubborn set: the smallest of the closures around a few of them.
  void Reduce(const Marking& marking, std::vector<int32_t>& enabled);

  /// Transitions looked at, until now.
  int64_t Work() const { return work_; }

 private:
  bool Close(int32_t from, size_t mostEnabled);
  void Add(int32_t transition);
  void AddMenders(int32_t transition);

  const FiringNet& net_;
  const Marking* marking_ = nullptr;
  FlatLists<int32_t> conflicts_;  ///< by transition: what it could disable, or what could disable it
  std::vector<uint64_t> memberSince_, enabledSince_;  ///< the last round in which it was
  int64_t work_ = 0;
  uint64_t round_ = 0, marked_ = 0;
  std::vector<int32_t> members_, enabledMembers_, best_;
};

}  // namespace siphons
