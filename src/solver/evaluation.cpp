// Evaluation of constraints on rays.
//
// The rows of a siphon system are sparse (the row of x >= 0 has one entry), so a sum runs over the nonzero
// coefficients only. It is taken in 64 bits; its low 32 bits are the value, and ArithmeticWrapped remembers a
// sum that 32 bits do not hold. Gathering the coefficients costs one pass over the constraints per call.
#include "solver/evaluation.h"

#include <cstdlib>
#include <span>
#include <vector>

#include "base/arithmetic.h"
#include "solver/sharedVars.h"

namespace siphons {

namespace {

/// The nonzero coefficients of a constraint.
struct Term {
  uint32_t column;
  int32_t coefficient;
};

/// Appends the terms of a constraint. Where the coefficients are so great that 64 bits may not hold a value,
/// every value counts as wrapped: Value cannot tell it then.
void AppendTerms(const int32_t* constraint, std::vector<Term>& terms) {
  constexpr uint64_t kMost = uint64_t{1} << 31;  // times a coordinate of at most 2^31
  uint64_t sum = 0;
  for (uint32_t j = 1; j <= Dimension; ++j) {
    if (constraint[j] == 0) continue;
    terms.push_back({j, constraint[j]});
    sum += static_cast<uint64_t>(std::abs(int64_t{constraint[j]}));
  }
  if (sum > kMost) ArithmeticWrapped = true;
}

/// The 32-bit value of a constraint on a ray. Sets ArithmeticWrapped where that is not the exact value.
int32_t Value(const int32_t* ray, std::span<const Term> terms) {
  uint64_t sum = 0;
  for (const auto& [column, coefficient] : terms) {
    sum += static_cast<uint64_t>(int64_t{ray[column]}) * static_cast<uint64_t>(int64_t{coefficient});
  }
  const int64_t value = static_cast<int64_t>(sum);
  if (value != static_cast<int32_t>(value)) ArithmeticWrapped = true;
  return WrapToInt32(value);
}

/// Constraints first to end - 1 of the system, their nonzero coefficients one after the other.
class SparseConstraints {
 public:
  SparseConstraints(int32_t first, int32_t end) : first_(first), end_(end), starts_{0} {
    for (int32_t c = first; c < end; ++c) {
      AppendTerms(Constraints->p[c], terms_);
      starts_.push_back(terms_.size());
    }
  }

  /// Calls see(c, value) for the constraints in order, up to the first that the ray violates; returns that,
  /// or maxMinF.
  template <typename See>
  int32_t FirstViolated(const int32_t* ray, See see) const {
    const std::span<const Term> all(terms_);
    for (int32_t c = first_; c < end_; ++c) {
      const size_t i = static_cast<size_t>(c - first_);
      const int32_t value = Value(ray, all.subspan(starts_[i], starts_[i + 1] - starts_[i]));
      see(static_cast<uint32_t>(c), value);
      if (value < 0) return c;
    }
    return maxMinF;
  }

 private:
  int32_t first_, end_;
  std::vector<Term> terms_;
  std::vector<size_t> starts_;
};

}  // namespace

void EvalConstraint(const int32_t* row) {
  std::vector<Term> terms;
  AppendTerms(row, terms);
  for (uint32_t r = 0; r < NbRay; ++r) Ray->p[r][0] = Value(Ray->p[r], terms);
}

void EvalAllConstraints(uint32_t firstRay, int32_t firstConstraint, int32_t endConstraint) {
  const SparseConstraints constraints(firstConstraint, endConstraint);
  for (uint32_t r = firstRay; r < NbRay; ++r) {
    uint32_t* const bits = SatWords(r);
    MinF->p[r][0] = constraints.FirstViolated(Ray->p[r], [bits](uint32_t c, int32_t value) {
      if (value != 0) bits[WordOf(c)] |= BitOf(c);
    });
  }
}

}  // namespace siphons
