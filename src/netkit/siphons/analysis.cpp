// What a conflict teaches, and which of the learnt clauses stay.
//
// The literals of the conflict on the latest level are replaced by their reasons until one is left, which all
// of them go through; it is implied by the others once that level is left. A literal whose reason consists of
// other literals of the learnt clause is not needed in it. The glue of a learnt clause is the number of
// levels that its literals stem from: low ones are useful for long.
#include <algorithm>
#include <cassert>
#include <iterator>

#include "netkit/siphons/clause_search.h"

namespace siphons {

namespace {

constexpr double kActivityGrowth = 1 / 0.95;
constexpr double kGreatestActivity = 1e100;
constexpr uint32_t kGlueThatStays = 2;

}  // namespace

bool ClauseSearch::ResolveConflict() {
  HighestLevelsFirst(conflict_);
  if (conflict_.empty() || LevelOf(conflict_[0]) == 0) {
    hasModel_ = false;
    return false;
  }
  Backtrack(LevelOf(conflict_[0]));
  Analyse();
  HighestLevelsFirst(std::span(learnt_).subspan(1));
  const uint32_t glue = GlueOfLearnt();
  Backtrack(learnt_.size() == 1 ? 0 : LevelOf(learnt_[1]));
  Assign(learnt_[0], learnt_.size() == 1 ? kNoReason : Store(learnt_, glue));
  increment_ *= kActivityGrowth;
  return true;
}

bool ClauseSearch::AddFalseClause(std::span<const Literal> literals) {
  conflict_.clear();
  std::copy_if(literals.begin(), literals.end(), std::back_inserter(conflict_),
               [this](Literal literal) { return LevelOf(literal) > 0; });
  HighestLevelsFirst(conflict_);
  if (conflict_.size() < 2) {
    if (conflict_.empty()) return hasModel_ = false;
    Backtrack(0);
    Assign(conflict_[0], kNoReason);
    return true;
  }
  const Reason reason = Store(conflict_, 0);
  if (LevelOf(conflict_[0]) == LevelOf(conflict_[1])) return ResolveConflict();
  Backtrack(LevelOf(conflict_[1]));
  Assign(conflict_[0], reason);
  return true;
}

/// Puts the literals of the highest and of the second highest level first.
void ClauseSearch::HighestLevelsFirst(std::span<Literal> literals) const {
  if (literals.size() < 2) return;
  if (LevelOf(literals[0]) < LevelOf(literals[1])) std::swap(literals[0], literals[1]);
  uint32_t highest = LevelOf(literals[0]), second = LevelOf(literals[1]);
  for (Literal& literal : literals.subspan(2)) {
    const uint32_t level = LevelOf(literal);
    if (level <= second) continue;
    std::swap(literal, literals[1]);
    second = level;
    if (level <= highest) continue;
    std::swap(literals[0], literals[1]);
    std::swap(highest, second);
  }
}

/// Makes learnt_ of conflict_: the literal that becomes implied first, of the current level alone.
void ClauseSearch::Analyse() {
  learnt_.assign(1, 0);
  uint32_t open = 0;  // literals of this level that are yet to be replaced
  const auto add = [&](Literal literal) {
    const Variable variable = VariableOf(literal);
    if (seen_[variable] != 0 || levels_[variable] == 0) return;
    seen_[variable] = 1;
    Bump(variable);
    if (levels_[variable] == Level()) {
      ++open;
    } else {
      learnt_.push_back(literal);
    }
  };
  for (const Literal literal : conflict_) add(literal);
  for (size_t i = trail_.size();;) {
    do --i;
    while (seen_[VariableOf(trail_[i])] == 0);
    const Literal literal = trail_[i];
    seen_[VariableOf(literal)] = 0;
    if (--open == 0) {
      learnt_[0] = Negated(literal);
      break;
    }
    ForEachReason(literal, add);
  }
  ShortenLearnt();
}

std::vector<Literal> ClauseSearch::DecisionsAgainst(Literal literal) {
  assert(IsFalse(literal));
  std::vector<Literal> decisions;
  if (LevelOf(literal) == 0) return decisions;
  seen_[VariableOf(literal)] = 1;
  for (size_t i = trail_.size(); i-- > levelStarts_[0];) {
    const Variable variable = VariableOf(trail_[i]);
    if (seen_[variable] == 0) continue;
    seen_[variable] = 0;
    if (reasons_[variable] == kNoReason) {
      decisions.push_back(trail_[i]);
      continue;
    }
    ForEachReason(trail_[i],
                  [this](Literal other) { seen_[VariableOf(other)] = LevelOf(other) > 0 ? 1 : 0; });
  }
  return decisions;
}

void ClauseSearch::ShortenLearnt() {
  added_.assign(learnt_.begin() + 1, learnt_.end());
  seen_[VariableOf(learnt_[0])] = 1;
  const auto isKnown = [this](Literal other) { return seen_[VariableOf(other)] != 0 || LevelOf(other) == 0; };
  const auto implied = [&](Literal literal) {
    const Reason reason = reasons_[VariableOf(literal)];
    if (reason == kNoReason) return false;
    if ((reason & 1U) != 0) return isKnown(reason / 2);
    const std::span<const Literal> others = LiteralsOf(reason / 2).subspan(1);
    return std::all_of(others.begin(), others.end(), isKnown);
  };
  learnt_.erase(std::remove_if(learnt_.begin() + 1, learnt_.end(), implied), learnt_.end());
  for (const Literal literal : added_) seen_[VariableOf(literal)] = 0;
  seen_[VariableOf(learnt_[0])] = 0;
}

void ClauseSearch::Bump(Variable variable) {
  activities_[variable] += increment_;
  if (activities_[variable] <= kGreatestActivity) return;
  for (double& activity : activities_) activity /= kGreatestActivity;
  increment_ /= kGreatestActivity;
}

uint32_t ClauseSearch::GlueOfLearnt() {
  ++stamp_;
  uint32_t glue = 0;
  for (const Literal literal : learnt_) {
    uint32_t& mark = levelStamps_[LevelOf(literal)];
    glue += mark == stamp_ ? 0 : 1;
    mark = stamp_;
  }
  return glue;
}

void ClauseSearch::CollectClauses() {
  assert(Level() == 0 && propagated_ == trail_.size());
  std::vector<uint32_t> glues;
  for (ClauseRef clause = 0; clause < arena_.size(); clause += kHeader + SizeOf(clause)) {
    if (GlueOf(clause) > kGlueThatStays) glues.push_back(GlueOf(clause));
  }
  const auto middle = glues.begin() + static_cast<std::ptrdiff_t>(glues.size() / 2);
  std::nth_element(glues.begin(), middle, glues.end());
  const uint32_t mostGlue = glues.empty() ? kGlueThatStays : std::max(kGlueThatStays, *middle - 1);

  std::vector<uint32_t> old;
  old.swap(arena_);
  for (std::vector<Watch>& watches : watches_) watches.clear();
  for (size_t at = 0; at < old.size(); at += kHeader + old[at]) {
    const uint32_t glue = old[at + 1];
    const std::span<Literal> literals{&old[at + kHeader], old[at]};
    const bool isTrue =
        std::any_of(literals.begin(), literals.end(), [this](Literal l) { return IsTrue(l); });
    if (isTrue || glue > mostGlue) continue;
    const auto end =
        std::remove_if(literals.begin(), literals.end(), [this](Literal l) { return IsFalse(l); });
    Store({literals.begin(), end}, glue);
  }
  for (Literal literal = 0; literal < binaries_.size(); ++literal) {
    std::vector<Literal>& implied = binaries_[literal];
    if (IsAssigned(VariableOf(literal))) implied.clear();
    implied.erase(std::remove_if(implied.begin(), implied.end(), [this](Literal l) { return IsTrue(l); }),
                  implied.end());
  }
  constexpr size_t kLeastGrowth = 1U << 16;
  collectAt_ = 2 * arena_.size() + kLeastGrowth;
}

}  // namespace siphons
