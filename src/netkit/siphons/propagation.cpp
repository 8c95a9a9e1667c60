// Assignments, clauses and their consequences.
//
// A clause watches two literals that are not false while it is not satisfied: only when one of them becomes
// false it is looked at. It moves the watch to another literal, or implies the last one, or is the conflict.
// Taking assignments back leaves the watches as they are.
#include <algorithm>
#include <cassert>
#include <functional>

#include "base/out_of_memory.h"
#include "netkit/siphons/clause_search.h"

namespace siphons {

ClauseSearch::ClauseSearch(uint32_t variables)
    : values_(size_t{2} * variables),
      levels_(variables),
      reasons_(variables, kNoReason),
      activities_(variables),
      seen_(variables),
      watches_(size_t{2} * variables),
      binaries_(size_t{2} * variables),
      levelStamps_(size_t{1} + variables) {}

Variable ClauseSearch::AddVariable() {
  const Variable variable = static_cast<Variable>(levels_.size());
  values_.resize(values_.size() + 2);
  watches_.resize(values_.size());
  binaries_.resize(values_.size());
  levels_.push_back(0);
  reasons_.push_back(kNoReason);
  activities_.push_back(0);
  seen_.push_back(false);
  levelStamps_.push_back(0);
  return variable;
}

void ClauseSearch::AddClause(std::span<const Literal> literals) {
  assert(Level() == 0);
  added_.clear();
  for (const Literal literal : literals) {
    if (IsTrue(literal)) return;
    if (!IsFalse(literal)) added_.push_back(literal);
  }
  const auto isAscending = [](Literal a, Literal b) { return VariableOf(a) < VariableOf(b); };
  if (std::adjacent_find(added_.begin(), added_.end(), std::not_fn(isAscending)) != added_.end()) {
    std::sort(added_.begin(), added_.end());
    added_.erase(std::unique(added_.begin(), added_.end()), added_.end());
    const bool holdsBoth =
        std::adjacent_find(added_.begin(), added_.end(), std::not_fn(isAscending)) != added_.end();
    if (holdsBoth) return;
  }
  if (added_.empty()) {
    hasModel_ = false;
  } else if (added_.size() == 1) {
    Assign(added_[0], kNoReason);
  } else {
    Store(added_, 0);
  }
}

void ClauseSearch::Assign(Literal literal, Reason reason) {
  assert(values_[literal] == 0);
  values_[literal] = 1;
  values_[Negated(literal)] = -1;
  levels_[VariableOf(literal)] = Level();
  reasons_[VariableOf(literal)] = reason;
  trail_.push_back(literal);
}

/// Stores a clause of two literals or more, the first two to be watched, and returns what it is as the reason
/// of its first literal.
ClauseSearch::Reason ClauseSearch::Store(std::span<const Literal> literals, uint32_t glue) {
  if (literals.size() == 2) {
    binaries_[literals[0]].push_back(literals[1]);
    binaries_[literals[1]].push_back(literals[0]);
    return 2 * literals[1] + 1;
  }
  if (arena_.size() > kNoReason / 2 - literals.size() - kHeader) OutOfMemory();
  const ClauseRef clause = static_cast<ClauseRef>(arena_.size());
  arena_.push_back(static_cast<uint32_t>(literals.size()));
  arena_.push_back(glue);
  arena_.insert(arena_.end(), literals.begin(), literals.end());
  WatchClause(clause);
  return 2 * clause;
}

void ClauseSearch::WatchClause(ClauseRef clause) {
  const std::span<const Literal> literals = LiteralsOf(clause);
  watches_[literals[0]].push_back({clause, literals[1]});
  watches_[literals[1]].push_back({clause, literals[0]});
}

bool ClauseSearch::Propagate() {
  if (!hasModel_) {
    conflict_.clear();
    return false;
  }
  while (propagated_ < trail_.size()) {
    const Literal nowFalse = Negated(trail_[propagated_++]);
    for (const Literal implied : binaries_[nowFalse]) {
      if (IsTrue(implied)) continue;
      if (IsFalse(implied)) {
        conflict_.assign({nowFalse, implied});
        return false;
      }
      Assign(implied, 2 * nowFalse + 1);
    }
    steps_ += 1 + binaries_[nowFalse].size() / 4;
    if (!PropagateClauses(nowFalse)) return false;
  }
  return true;
}

bool ClauseSearch::PropagateClauses(Literal nowFalse) {
  std::vector<Watch>& watches = watches_[nowFalse];
  steps_ += watches.size();
  // No watch is added to this list meanwhile, since no other literal of a clause is this one.
  const auto end = watches.end();
  auto kept = watches.begin();
  bool isConflict = false;
  for (auto at = watches.begin(); at != end; ++at) {
    const Watch watch = *at;
    if (IsTrue(watch.other)) {
      *kept++ = watch;
      continue;
    }
    const std::span<Literal> literals = LiteralsOf(watch.clause);
    const Literal first = literals[0] ^ literals[1] ^ nowFalse;
    literals[0] = first;
    literals[1] = nowFalse;
    if (IsTrue(first)) {
      *kept++ = {watch.clause, first};
      continue;
    }
    const auto next =
        std::find_if(literals.begin() + 2, literals.end(), [this](Literal l) { return !IsFalse(l); });
    if (next != literals.end()) {
      std::swap(literals[1], *next);
      watches_[literals[1]].push_back({watch.clause, first});
      continue;
    }
    *kept++ = {watch.clause, first};
    if (!IsFalse(first)) {
      Assign(first, 2 * watch.clause);
      continue;
    }
    conflict_.assign(literals.begin(), literals.end());
    kept = std::copy(at + 1, end, kept);
    isConflict = true;
    break;
  }
  watches.erase(kept, end);
  return !isConflict;
}

void ClauseSearch::Decide(Literal literal) {
  assert(propagated_ == trail_.size());
  levelStarts_.push_back(static_cast<uint32_t>(trail_.size()));
  Assign(literal, kNoReason);
}

void ClauseSearch::Backtrack(uint32_t level) {
  if (Level() <= level) return;
  const size_t start = levelStarts_[level];
  for (size_t i = start; i < trail_.size(); ++i) values_[trail_[i]] = values_[Negated(trail_[i])] = 0;
  trail_.resize(start);
  levelStarts_.resize(level);
  propagated_ = std::min(propagated_, start);
}

}  // namespace siphons
