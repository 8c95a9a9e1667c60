// A proof that no dead marking is reachable: the state equation, refuted solution by solution.
//
// Each solution of the equation must be refuted by a marked trap that it empties, or by the order in which it
// fires its transitions; what refutes it is given to the equation, which is then solved again. Many of the
// refutations turn out to be of no use: what is told of a finished proof is a part of them that is enough,
// found by solving once more.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "netkit/verdict/state_equation.h"
#include "netkit/verdict/support_sets.h"
#include "netkit/verdict/traps.h"

namespace siphons {

/// What rules the solutions of an equation out.
struct Refutations {
  std::vector<PlaceList> traps;             ///< marked initially
  std::vector<FiringCondition> conditions;  ///< on the order of firings
};

class Proof {
 public:
  /// The net must outlive the object. `exact`: it has no enabling function and no marking-dependent arc.
  Proof(const PetriNet& net, StateEquation::Numbers numbers, StateEquation::Search search, bool exact);

  enum class State { kOpen, kProved, kCandidate };

  /// Goes on for about so many steps of the solver. `traps` are marked ones of the net, which the proof uses
  /// and adds to.
  State Go(int64_t steps, TrapFinder& finder, std::vector<PlaceList>& traps,
           const std::function<bool()>& stop);

  /// In state kCandidate: the solution that nothing refutes.
  Candidate ItsCandidate() { return equation_.Solution(); }

  /// In state kProved, with the traps of Go: all refutations that the equation was given, or some that are
  /// enough. As a rule none of these can be spared; the search for them ends after a part of the steps that
  /// the proof took.
  Refutations Given(const std::vector<PlaceList>& traps) const { return {traps, conditions_}; }
  Refutations Needed(const std::vector<PlaceList>& traps, const std::function<bool()>& stop) const;

 private:
  bool RefuteBySupport();

  const PetriNet& net_;
  StateEquation::Numbers numbers_;
  StateEquation::Search search_;
  StateEquation equation_;
  std::optional<SupportSets> supportSets_;
  std::vector<FiringCondition> conditions_;  ///< that were given to the equation
  size_t trapsGiven_ = 0;
  State state_ = State::kOpen;
};

}  // namespace siphons
