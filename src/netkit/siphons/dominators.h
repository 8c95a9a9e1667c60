// Which places lie on every path to one of them.
//
// Place q leads to place p when a transition takes from q and fills p. Place p dominates place q, with regard
// to a root, when every path from q to the root goes through p. The immediate dominators are a tree, which is
// found by the simple iteration of Cooper, Harvey and Kennedy (2001) over places and transitions, so that a
// transition with many arcs costs no more than these. Some rounds over all arcs suffice, mostly two.
#pragma once

#include <cstdint>
#include <vector>

#include "netkit/siphons/job_arcs.h"
#include "netkit/siphons/literals.h"

namespace siphons {

class Dominators {
 public:
  /// Every place of the job leads to the root, at once or by others.
  Dominators(const JobArcs& arcs, Variable root);

  /// Whether every path from q to the root goes through p; also when they are the same.
  bool Dominates(Variable p, Variable q) const { return first_[p] <= first_[q] && first_[q] < end_[p]; }

 private:
  std::vector<uint32_t> first_, end_;  ///< by place, and then by transition: the numbers of what it dominates
};

}  // namespace siphons
