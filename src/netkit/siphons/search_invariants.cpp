// What holds of the clause search between its calls; debug builds ask.
#include <algorithm>
#include <cstddef>

#include "netkit/siphons/clause_search.h"

namespace siphons {

bool ClauseSearch::Consistent() const {
  // Every literal of the trail is true, on the level in whose part it stands.
  uint32_t level = 0;
  for (size_t i = 0; i < trail_.size(); ++i) {
    while (level < Level() && levelStarts_[level] <= i) ++level;
    const Literal literal = trail_[i];
    if (!IsTrue(literal) || !IsFalse(Negated(literal)) || LevelOf(literal) != level) return false;
  }
  const auto assigned =
      std::count_if(values_.begin(), values_.end(), [](int8_t value) { return value != 0; });
  if (static_cast<size_t>(assigned) != 2 * trail_.size() || propagated_ > trail_.size()) return false;

  // The reason of a literal implies it: it is in the clause, the others are false and not of later levels.
  for (const Literal literal : trail_) {
    const Reason reason = reasons_[VariableOf(literal)];
    if (LevelOf(literal) == 0 || reason == kNoReason) continue;
    const bool isClause = (reason & 1U) == 0;
    if (isClause && LiteralsOf(reason / 2)[0] != literal) return false;
    bool implies = true;
    ForEachReason(literal, [&](Literal other) {
      implies = implies && IsFalse(other) && LevelOf(other) <= LevelOf(literal);
    });
    if (!implies) return false;
  }

  // The arena is clause after clause; each is watched by its first two literals and by nothing else, and once
  // all is propagated, a false one of the two stands beside a true one of no later level.
  size_t clauses = 0, watches = 0;
  ClauseRef clause = 0;
  for (; clause < arena_.size(); clause += kHeader + SizeOf(clause)) {
    ++clauses;
    const std::span<const Literal> literals = LiteralsOf(clause);
    if (literals.size() < 3 || clause + kHeader + literals.size() > arena_.size()) return false;
    for (const Literal watched : literals.first(2)) {
      const auto watchesClause = [clause](const Watch& watch) { return watch.clause == clause; };
      if (!std::any_of(watches_[watched].begin(), watches_[watched].end(), watchesClause)) return false;
    }
    const bool implies =
        std::none_of(literals.begin(), literals.end(), [this](Literal l) { return IsTrue(l); });
    if (propagated_ == trail_.size() && implies && (IsFalse(literals[0]) || IsFalse(literals[1])))
      return false;
  }
  for (const std::vector<Watch>& list : watches_) watches += list.size();
  return clause == arena_.size() && watches == 2 * clauses;
}

}  // namespace siphons
