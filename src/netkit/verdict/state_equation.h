// What linear arithmetic says about the markings that a net can reach.
//
// A reachable marking M is M0 + C f, where f counts how often each transition fired and C holds what a firing
// changes: the state equation, with M >= 0 and f >= 0. Markings of interest (dead ones, or such in which all
// places of a siphon are short of tokens) add conditions of the form "M(p) is less than this" and, joined by
// "or", one such condition per transition. If all of it has no solution, no such marking is reachable. A
// solution is a candidate only; marked traps that it empties refute it and are added one after the other
// (Esparza et al. 2000). Solved by Z3, in exact rational numbers, then with markings in whole numbers.
//
// What is left out makes the answer weaker, never wrong: priorities; transitions with an enabling function or
// a marking-dependent arc, which may be held up by other things than tokens; and the equation of a place that
// a marking-dependent input or output arc changes.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "netkit/model/petri_net.h"
#include "netkit/siphons/arc_sets.h"

namespace siphons {

/// A solution of the equation. Numbers that are no whole ones are rounded up; those beyond 64 bits are cut.
struct Candidate {
  std::vector<int64_t> marking;
  std::vector<int64_t> firings;  ///< by transition
};

/// What every sequence of firings keeps to, in terms that the equation knows (support_sets.h).
///
/// kTrap: one of the places holds a token, or a breaker fires, or the cause does not. Without breakers and
/// cause that is a marked trap. kSiphon: a breaker fires, or the cause does not.
struct FiringCondition {
  enum class Kind { kTrap, kSiphon };
  Kind kind = Kind::kTrap;
  PlaceList places;
  std::vector<int32_t> breakers = {};  ///< the transitions for which the places are no trap or siphon
  int32_t cause = -1;  ///< puts into the trap or takes from the siphon; -1: the trap is marked initially
};

class StateEquation {
 public:
  enum class Numbers { kNoEquation, kRational, kWhole };
  /// Whether the solver decides the conditions that its clauses need, or all of them. The first leaves places
  /// empty that nothing fills, so that a solution is refuted by many traps at once; the second finds
  /// contradictions sooner where few traps are needed. Which one is faster, by a factor of ten either way,
  /// depends on the net.
  enum class Search { kNeeded, kEverything };
  enum class Answer { kNoSolution, kSolution, kUnknown };

  /// The net must outlive the object.
  StateEquation(const PetriNet& net, Numbers numbers, Search search);
  ~StateEquation();
  StateEquation(const StateEquation&) = delete;
  StateEquation& operator=(const StateEquation&) = delete;

  /// From now on every transition that arcs alone hold up is held up.
  void RequireDead();
  /// From now on M(place) <= most.
  void RequireAtMost(int32_t place, int64_t most);
  /// From now on the places, a trap that is marked initially, hold a token at least.
  void RequireMarked(const PlaceList& trap) { Require({.places = trap}); }
  /// From now on the condition holds. Its transitions change some place; the cause stands for all that are
  /// alike.
  void Require(const FiringCondition& condition);
  /// The transitions with the same change, whose firings are counted together; the transition changes some
  /// place.
  const std::vector<int32_t>& Alike(int32_t transition) const;

  /// Conditions between Push and the next Pop are taken back by it.
  void Push();
  void Pop();

  /// Looks for a solution in so many steps of the solver; `stop` is asked by another thread meanwhile.
  Answer Solve(int64_t steps, const std::function<bool()>& stop);
  /// The same, with more conditions for this time only. If there is no solution, `needed` becomes those of
  /// them, by number, that already leave none.
  Answer SolveWith(const std::vector<FiringCondition>& conditions, std::vector<size_t>& needed, int64_t steps,
                   const std::function<bool()>& stop);
  /// Steps taken until now.
  int64_t Steps() const;
  /// What the last Solve found: the places that are exactly empty in it, and all of it.
  PlaceList EmptyPlaces();
  Candidate Solution();

 private:
  struct Z3;
  Answer Check(int64_t steps, const std::function<bool()>& stop, const std::function<Answer()>& ask);
  const PetriNet& net_;
  std::unique_ptr<Z3> z3_;
};

}  // namespace siphons
