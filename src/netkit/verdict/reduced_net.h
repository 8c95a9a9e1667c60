// A net made smaller without a difference to the question whether a dead marking can be reached.
//
// Most of a large net is chains of transitions that only pass tokens on, copies of places and parts that are
// never used. Rules that keep dead markings in reach or out of it (agglomeration.cpp, redundancy.cpp) are
// applied until none does anything: every rule's theorem says that the net before it has a reachable dead
// marking exactly when the net after it has one, priorities left out, which only remove firings. So a proof
// about the smaller net is one about the original, and a sequence into a dead marking is unfolded into one of
// the original. With priorities that sequence may not be possible there: only the proof counts.
//
// The rules look at all places in turn, so that the cost of a pass is about linear in the arcs; a long
// workflow takes some ten passes.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "netkit/siphons/arc_sets.h"
#include "netkit/verdict/mutable_net.h"

namespace siphons {

class ReducedNet {
 public:
  /// The net has neither enabling functions nor marking-dependent arcs. `stop` ends the reduction early.
  ReducedNet(const PetriNet& net, const std::function<bool()>& stop);

  /// Empty, or a marked trap of the reduced net each of whose places is the only input, by an arc of weight
  /// 1, of some transition without inhibitor arcs: no reachable marking is dead.
  const PlaceList& KeepingTrap() const { return keepingTrap_; }
  /// What is left, timed transitions only. Places have the names that they have in the net; the name of a
  /// transition says what it stands for: `a+2*b` for a, then b twice; `a?` for what asks what a asks and
  /// changes nothing; `...` for more, with a number where names would be equal.
  const PetriNet& Net() const { return net_; }

  /// A sequence of the reduced net into a dead marking as one of the original net, priorities left out;
  /// nothing where it has more than so many firings.
  std::optional<std::vector<int32_t>> Unfolded(const std::vector<int32_t>& sequence, size_t most) const;

 private:
  bool Append(int32_t macro, int64_t times, size_t most, std::vector<int32_t>& sequence) const;
  bool AppendLate(size_t most, std::vector<int32_t>& sequence) const;

  FiringNet original_;
  MutableNet work_;
  PetriNet net_;
  std::vector<int32_t> macroOf_;  ///< by transition of the reduced net
  PlaceList keepingTrap_;
};

}  // namespace siphons
