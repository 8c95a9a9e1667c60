#include "netkit/verdict/separation.h"

#include <z3++.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <string>

namespace siphons {

namespace {

constexpr int kMostTries = 400;  // markings to be kept that enter the solver
constexpr int64_t kMostWeight = 1'000'000;
constexpr unsigned kSolverSteps = 4'000'000;  // for one question

class Separation {
 public:
  explicit Separation(const SeparationTask& task)
      : task_(task), solver_(context_, z3::solver::simple()), least_(context_.real_const("least")) {
    z3::params params(context_);
    params.set("ctrl_c", false);
    params.set("random_seed", 0U);
    params.set("rlimit", kSolverSteps);
    solver_.set(params);
    std::vector<size_t> index(task.initial.size(), SIZE_MAX);
    for (const int32_t p : task.places) {
      index[static_cast<size_t>(p)] = weights_.size();
      weights_.push_back(context_.real_const(("w" + std::to_string(p)).c_str()));
      if (!task.anySign) solver_.add(weights_.back() >= 0);
    }
    for (const auto& changes : task.mayNotLower) {
      z3::expr_vector terms(context_);
      for (const PlaceTokens& change : changes) {
        const size_t i = index[static_cast<size_t>(change.place)];
        if (i != SIZE_MAX) terms.push_back(context_.real_val(change.tokens) * weights_[i]);
      }
      if (!terms.empty()) solver_.add(z3::sum(terms) >= 0);
    }
    solver_.add(Sum(task.away) <= least_ - 1);
    solver_.add(Sum(task.initial) >= least_);
  }

  bool Solve() {
    try {
      return solver_.check() == z3::sat;
    } catch (const z3::exception&) {  // the solver gave up
      return false;
    }
  }

  /// Keeps the marking from now on, if that is possible.
  bool Keep(const Marking& marking) { return Add(Sum(marking) >= least_); }

  /// Takes the weights away that the others can do without; false when the solver gave up.
  bool Simplify(const std::function<bool()>& stop) {
    for (size_t i = 0; i < weights_.size() && !stop(); ++i) Add(weights_[i] == 0);
    return Solve();
  }

  /// The solution in whole numbers.
  std::optional<MarkingBound> Solution() {
    const z3::model model = solver_.get_model();
    int64_t common = 1;
    std::vector<int64_t> numerators, denominators;
    for (size_t i = 0; i <= weights_.size(); ++i) {
      const z3::expr value = model.eval(i < weights_.size() ? weights_[i] : least_, true);
      int64_t numerator = 0, denominator = 1;
      if (!Z3_get_numeral_rational_int64(context_, value, &numerator, &denominator)) return std::nullopt;
      if (denominator > kMostWeight || numerator > kMostWeight || numerator < -kMostWeight)
        return std::nullopt;
      common = std::lcm(common, denominator);
      if (common > kMostWeight) return std::nullopt;
      numerators.push_back(numerator);
      denominators.push_back(denominator);
    }
    MarkingBound bound;
    for (size_t i = 0; i < weights_.size(); ++i) {
      const int64_t weight = numerators[i] * (common / denominators[i]);
      if (weight != 0) bound.weights.push_back({task_.places[i], weight});
    }
    bound.least = numerators.back() * (common / denominators.back());
    return bound;
  }

 private:
  bool Add(const z3::expr& condition) {
    solver_.push();
    solver_.add(condition);
    if (Solve()) return true;
    solver_.pop();
    return false;
  }

  z3::expr Sum(const Marking& marking) {
    z3::expr_vector terms(context_);
    terms.push_back(context_.real_val(0));
    for (size_t i = 0; i < weights_.size(); ++i) {
      const int64_t tokens = marking[static_cast<size_t>(task_.places[i])];
      if (tokens != 0) terms.push_back(context_.real_val(tokens) * weights_[i]);
    }
    return z3::sum(terms);
  }

  const SeparationTask& task_;
  z3::context context_;
  z3::solver solver_;
  std::vector<z3::expr> weights_;  ///< of the task's places
  z3::expr least_;
};

}  // namespace

std::optional<int64_t> SumAt(const MarkingBound& bound, const Marking& marking) {
  int64_t sum = 0;
  for (const PlaceTokens& term : bound.weights) {
    int64_t product = 0;
    if (__builtin_mul_overflow(term.tokens, marking[static_cast<size_t>(term.place)], &product) ||
        __builtin_add_overflow(sum, product, &sum)) {
      return std::nullopt;
    }
  }
  return sum;
}

size_t CutOff(const MarkingBound& bound, std::span<const Marking> markings) {
  return static_cast<size_t>(
      std::count_if(markings.begin(), markings.end(), [&bound](const Marking& marking) {
        const std::optional<int64_t> sum = SumAt(bound, marking);
        return !sum || *sum < bound.least;
      }));
}

std::optional<MarkingBound> Separate(const SeparationTask& task, const std::function<bool()>& stop) {
  Separation separation(task);
  if (!separation.Solve()) return std::nullopt;
  std::optional<MarkingBound> bound = separation.Solution();
  std::vector<bool> tried(task.keep.size());
  for (int tries = 0; bound && tries < kMostTries && !stop(); ++tries) {
    size_t furthest = task.keep.size();
    int64_t deepest = 0;
    for (size_t i = 0; i < task.keep.size(); ++i) {
      if (tried[i]) continue;
      const std::optional<int64_t> sum = SumAt(*bound, task.keep[i]);
      if (!sum || bound->least - *sum <= deepest) continue;
      deepest = bound->least - *sum;
      furthest = i;
    }
    if (furthest == task.keep.size()) break;
    tried[furthest] = true;
    if (!separation.Keep(task.keep[furthest])) continue;
    bound = separation.Solution();
  }
  if (!bound) return std::nullopt;
  if (!separation.Simplify(stop)) return bound;
  const std::optional<MarkingBound> simple = separation.Solution();
  return simple && CutOff(*simple, task.keep) <= CutOff(*bound, task.keep) ? simple : bound;
}

}  // namespace siphons
