// The verdict: whether a net can block.
//
// Two lines are followed in turn, each with a budget that grows from round to round, so that an easy answer
// of either kind comes early. The proof asks whether the marked traps alone, then the state equation with
// marked traps, rule a dead marking out (state_equation.h, traps.h). The search explores the markings breadth
// first, then reduced to stubborn sets (exploration.h), and walks, the proof's last candidate as a guide
// (walks.h). What a short look does not decide is reduced first (reduced_net.h), and the lines are followed
// on the smaller net. Budgets count steps, not time: the answer does not depend on the machine, unless `stop`
// ends it.
//
// Nothing is said that was not checked: every trap is tested arc by arc before a proof may use it, every
// sequence is replayed on the record of the net (replay.h) before it becomes an answer.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "netkit/model/petri_net.h"
#include "netkit/verdict/proof.h"
#include "netkit/verdict/state_equation.h"

namespace siphons {

enum class Finding { kDeadlockFree, kDeadlock, kUndecided };

/// What the finding rests on.
enum class Ground {
  kNone,
  kNothingAsked,   ///< some transition asks for nothing at all
  kTraps,          ///< marked traps alone; Commoner's condition, in an ordinary net
  kEquation,       ///< the state equation over the rationals, with the traps
  kWholeEquation,  ///< the same with whole numbers
  kAllMarkings,    ///< all reachable markings were seen, none is dead
  kReduced,        ///< all that stubborn sets left to be seen
  kBreadthFirst,   ///< the sequence is a shortest one
  kReducedSearch,
  kWalk,
  kReductions,  ///< a marked trap of places that each enable a transition alone, seen while reducing
};

struct Verdict {
  Finding finding = Finding::kUndecided;
  Ground ground = Ground::kNone;
  std::optional<PetriNet> reduced;     ///< the reduced net that a proof is about; else it is the net itself
  Refutations refutations;             ///< that the proof used; their places are those of its net
  std::vector<int32_t> sequence;       ///< into the dead marking
  std::vector<int64_t> dead;           ///< the dead marking
  std::optional<Candidate> candidate;  ///< the last one that no marked trap refutes
  int64_t markings = 0;                ///< seen by the exploration that decided, or by the largest one
  int64_t firings = 0;                 ///< of the walks
  std::string reason;                  ///< undecided: what stands in the way
};

struct VerdictLimits {
  int32_t rounds = 5;                ///< each has four times the budget of the one before
  int64_t bytes = int64_t{1} << 30;  ///< that an exploration may hold
  /// Which lines are followed.
  bool proof = true, breadthFirst = true, reduced = true, walks = true, reductions = true;
  /// Whether the refutations that a proof can do without are looked for and left out.
  bool onlyNeeded = false;
};

/// Asked often, sometimes from another thread, with the number of markings and firings looked at until then;
/// true ends the matter.
using StopQuestion = std::function<bool(int64_t looked)>;

/// Decides, unless `stop` ends it.
Verdict Decide(const PetriNet& net, const VerdictLimits& limits, const StopQuestion& stop);

}  // namespace siphons
