// A conflict-driven search over clauses, made for enumerations: it takes an answer's clause as its next
// conflict and goes on from there, instead of starting anew.
//
// Two literals of every clause are watched (Moskewicz et al. 2001), each beside a second literal of the
// clause that is looked at first; clauses of two literals are lists of their own and need no watches. A
// conflict is resolved to the first unique implication point (Marques-Silva and Sakallah 1996), the learnt
// clause is shortened by what its other literals imply, and the levels between it and its second highest
// level are left (Een and Sorensson 2003, MiniSat). Learnt clauses whose literals stem from many levels go
// first when there are too many (Audemard and Simon 2009). What is decided, and when to restart, is the
// caller's business.
//
// Nothing here knows about nets. Memory is that of the clauses: 4 bytes a literal, and 16 for the watches.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "netkit/siphons/literals.h"

namespace siphons {

class ClauseSearch {
 public:
  /// Variables are numbered from 0.
  explicit ClauseSearch(uint32_t variables);

  /// Adds a further variable and returns its number.
  Variable AddVariable();

  /// Adds a clause while no decision stands, before the next Propagate. The literals may be in any order and
  /// come twice. Without a literal that can be true the clauses have no model: Propagate fails.
  void AddClause(std::span<const Literal> literals);

  /// Draws the consequences of what is assigned; false when a clause has become false, which is then the
  /// conflict to resolve.
  bool Propagate();

  /// Learns from the conflict of Propagate and returns to the level at which the learnt clause implies a
  /// literal; false when there is no model.
  bool ResolveConflict();

  /// Adds a clause, each literal once, all of them false, and makes it the conflict and resolves it. What
  /// stands without decisions is left out of it. False when there is no model.
  bool AddFalseClause(std::span<const Literal> literals);

  /// Makes an unassigned literal true, on a level of its own.
  void Decide(Literal literal);

  /// The decisions from which it follows that the literal is false.
  std::vector<Literal> DecisionsAgainst(Literal literal);

  /// Takes everything back that was assigned above the level.
  void Backtrack(uint32_t level);

  /// Without decisions: forgets clauses that are true, and the worse half of the learnt ones.
  void CollectClauses();

  /// Whether enough was added since the last CollectClauses to make one worth its cost.
  bool WantsCollection() const { return arena_.size() > collectAt_; }

  bool IsTrue(Literal literal) const { return values_[literal] > 0; }
  bool IsFalse(Literal literal) const { return values_[literal] < 0; }
  bool IsAssigned(Variable variable) const { return values_[Holds(variable)] != 0; }
  /// Assigned without any decision.
  bool IsFixed(Variable variable) const { return IsAssigned(variable) && levels_[variable] == 0; }

  /// How much the variable had to do with the latest conflicts.
  double Activity(Variable variable) const { return activities_[variable]; }

  /// The number of decisions that stand.
  uint32_t Level() const { return static_cast<uint32_t>(levelStarts_.size()); }
  /// All literals that are true, in the order of their assignment.
  std::span<const Literal> Trail() const { return trail_; }
  /// Steps taken so far, a measure of time that does not depend on the machine.
  uint64_t Steps() const { return steps_; }

  /// Whether watches, trail, reasons and arena fit each other; between calls and after a Propagate that
  /// returned true. Costs as much as all clauses.
  bool Consistent() const;

 private:
  /// Why a literal is true: a clause by its place in the arena (twice), the other literal of a clause of two
  /// (twice, and 1), or nothing, for decisions and for what is fixed.
  using Reason = uint32_t;
  static constexpr Reason kNoReason = UINT32_MAX;
  using ClauseRef = uint32_t;

  struct Watch {
    ClauseRef clause;
    Literal other;  ///< some literal of the clause; when it is true, the clause is
  };

  /// A clause in the arena: its size, its glue (0: not learnt), its literals, the watched ones first.
  static constexpr uint32_t kHeader = 2;
  uint32_t SizeOf(ClauseRef clause) const { return arena_[clause]; }
  uint32_t GlueOf(ClauseRef clause) const { return arena_[clause + 1]; }
  std::span<Literal> LiteralsOf(ClauseRef clause) { return {&arena_[clause + kHeader], arena_[clause]}; }
  std::span<const Literal> LiteralsOf(ClauseRef clause) const {
    return {&arena_[clause + kHeader], arena_[clause]};
  }

  uint32_t LevelOf(Literal literal) const { return levels_[VariableOf(literal)]; }
  void Assign(Literal literal, Reason reason);
  Reason Store(std::span<const Literal> literals, uint32_t glue);
  void WatchClause(ClauseRef clause);
  bool PropagateClauses(Literal nowFalse);
  void HighestLevelsFirst(std::span<Literal> literals) const;

  /// Visits the other literals, all false, of the clause that implied a literal, which is its first one.
  template <typename Visit>
  void ForEachReason(Literal literal, Visit visit) const {
    const Reason reason = reasons_[VariableOf(literal)];
    if ((reason & 1U) != 0) {
      visit(reason / 2);
      return;
    }
    for (const Literal other : LiteralsOf(reason / 2).subspan(1)) visit(other);
  }

  void Analyse();
  void ShortenLearnt();
  void Bump(Variable variable);
  uint32_t GlueOfLearnt();

  std::vector<int8_t> values_;  ///< by literal: 1 true, -1 false, 0 unassigned
  std::vector<uint32_t> levels_;
  std::vector<Reason> reasons_;
  std::vector<double> activities_;
  std::vector<int8_t> seen_;  ///< by variable, while a conflict is analysed: 0 or 1
  std::vector<Literal> trail_;
  std::vector<uint32_t> levelStarts_;
  size_t propagated_ = 0;  ///< of the trail

  std::vector<uint32_t> arena_;
  std::vector<std::vector<Watch>> watches_;     ///< by literal that would become false
  std::vector<std::vector<Literal>> binaries_;  ///< by literal: what is implied when it is false
  size_t collectAt_ = 1U << 16;

  std::vector<Literal> conflict_;  ///< literals of a clause, all false
  std::vector<Literal> learnt_;
  std::vector<Literal> added_;
  std::vector<uint32_t> levelStamps_;
  uint32_t stamp_ = 0;
  double increment_ = 1;
  uint64_t steps_ = 0;
  bool hasModel_ = true;
};

}  // namespace siphons
