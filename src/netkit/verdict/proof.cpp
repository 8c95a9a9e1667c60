#include "netkit/verdict/proof.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace siphons {

namespace {

constexpr size_t kRefutationsAtOnce = 50;

/// The listed ones.
std::vector<FiringCondition> Chosen(const std::vector<FiringCondition>& all,
                                    const std::vector<size_t>& numbers) {
  std::vector<FiringCondition> chosen;
  for (const size_t i : numbers) chosen.push_back(all[i]);
  return chosen;
}

/// Some of the conditions that leave the equation without a solution, if these do: those that the solver
/// names, then without each run of them that it can do without, long runs first.
void KeepNeeded(StateEquation& equation, std::vector<FiringCondition>& conditions, int64_t steps,
                const std::function<bool()>& stop) {
  const int64_t end = equation.Steps() + steps;
  std::vector<size_t> needed;
  const auto areEnough = [&](const std::vector<FiringCondition>& some) {
    const int64_t left = end - equation.Steps();
    return left > 0 && equation.SolveWith(some, needed, left, stop) == StateEquation::Answer::kNoSolution;
  };
  if (!areEnough(conditions)) return;
  conditions = Chosen(conditions, needed);
  for (size_t run = conditions.size(); run > 0; run = run == 1 ? 0 : (run + 1) / 2) {
    for (size_t from = 0; from < conditions.size();) {
      const auto begin = conditions.begin() + static_cast<std::ptrdiff_t>(from);
      const size_t length = std::min(run, conditions.size() - from);
      std::vector<FiringCondition> fewer(conditions.begin(), begin);
      fewer.insert(fewer.end(), begin + static_cast<std::ptrdiff_t>(length), conditions.end());
      if (areEnough(fewer)) {
        conditions = Chosen(fewer, needed);
      } else {
        from += run;
      }
    }
  }
}

}  // namespace

Proof::Proof(const PetriNet& net, StateEquation::Numbers numbers, StateEquation::Search search, bool exact)
    : net_(net), numbers_(numbers), search_(search), equation_(net, numbers, search) {
  equation_.RequireDead();
  if (exact && numbers != StateEquation::Numbers::kNoEquation) supportSets_.emplace(net, equation_);
}

Proof::State Proof::Go(int64_t steps, TrapFinder& finder, std::vector<PlaceList>& traps,
                       const std::function<bool()>& stop) {
  const int64_t end = equation_.Steps() + steps;
  while (state_ == State::kOpen) {
    for (; trapsGiven_ < traps.size(); ++trapsGiven_) equation_.RequireMarked(traps[trapsGiven_]);
    const int64_t left = end - equation_.Steps();
    if (left <= 0) break;
    const StateEquation::Answer answer = equation_.Solve(left, stop);
    if (answer == StateEquation::Answer::kUnknown) break;
    if (answer == StateEquation::Answer::kNoSolution) {
      state_ = State::kProved;
      break;
    }
    const auto found = finder.MarkedTraps(equation_.EmptyPlaces(), kRefutationsAtOnce);
    if (found.empty() && !RefuteBySupport()) state_ = State::kCandidate;
    for (const PlaceList& trap : found) {
      if (!IsMarkedTrap(net_, trap)) std::abort();  // a proof on it would be worthless
      traps.push_back(trap);
    }
  }
  return state_;
}

/// Whether the solution breaks conditions on the order of its firings; they are given to the equation.
bool Proof::RefuteBySupport() {
  if (!supportSets_) return false;
  auto broken = supportSets_->Broken(equation_.Solution(), equation_.EmptyPlaces(), kRefutationsAtOnce);
  for (FiringCondition& condition : broken) {
    equation_.Require(condition);
    conditions_.push_back(std::move(condition));
  }
  return !broken.empty();
}

Refutations Proof::Needed(const std::vector<PlaceList>& traps, const std::function<bool()>& stop) const {
  constexpr int64_t kFewSteps = 300'000, kPartOfProof = 8;
  std::vector<FiringCondition> all;
  for (const PlaceList& trap : traps) all.push_back({.places = trap});
  all.insert(all.end(), conditions_.begin(), conditions_.end());
  if (!all.empty()) {
    StateEquation equation(net_, numbers_, search_);
    equation.RequireDead();
    KeepNeeded(equation, all, std::max(kFewSteps, equation_.Steps() / kPartOfProof), stop);
  }
  Refutations needed;
  for (FiringCondition& condition : all) {
    const bool isTrap =
        condition.kind == FiringCondition::Kind::kTrap && condition.cause < 0 && condition.breakers.empty();
    if (isTrap) {
      needed.traps.push_back(std::move(condition.places));
    } else {
      needed.conditions.push_back(std::move(condition));
    }
  }
  return needed;
}

}  // namespace siphons
