#include "netkit/siphons/least_size.h"

#include <algorithm>
#include <iterator>

namespace siphons {

LeastSize::LeastSize(ClauseSearch& search, uint32_t places) : search_(search) {
  for (Variable p = 0; p < places; ++p) wishes_.push_back(Lacks(p));
}

void LeastSize::Raise(std::span<const Literal> core) {
  ++value_;
  const auto isOfCore = [core](Literal wish) {
    return std::find(core.begin(), core.end(), wish) != core.end();
  };
  wishes_.erase(std::remove_if(wishes_.begin(), wishes_.end(), isOfCore), wishes_.end());
  clause_.clear();
  std::transform(core.begin(), core.end(), std::back_inserter(clause_), Negated);
  search_.AddClause(clause_);
  for (const Literal wish : core) {
    const auto limit = limits_.find(wish);
    if (limit != limits_.end()) WishFewerThan(limit->second.counter, limit->second.number + 1);
  }
  if (core.size() > 1) WishFewerThan(CounterOf(core), 2);
}

/// Wishes that fewer than the number of what the counter counts are true.
void LeastSize::WishFewerThan(uint32_t counter, uint32_t number) {
  if (number > counters_[counter].size) return;
  CountTo(counter, number);
  wishes_.push_back(Negated(counters_[counter].atLeast[number - 1]));
  limits_.emplace(wishes_.back(), Limit{counter, number});
}

/// A counter of the wishes that are not fulfilled.
uint32_t LeastSize::CounterOf(std::span<const Literal> wishes) {
  Counter counter{0, 0, static_cast<uint32_t>(wishes.size()), {}};
  if (wishes.size() == 1) {
    counter.atLeast.push_back(Negated(wishes[0]));
  } else {
    counter.left = CounterOf(wishes.first(wishes.size() / 2));
    counter.right = CounterOf(wishes.subspan(wishes.size() / 2));
  }
  counters_.push_back(std::move(counter));
  return static_cast<uint32_t>(counters_.size() - 1);
}

/// Gives the counter its literals up to the number, and the clauses that make them true: so many on the left
/// and so many on the right are so many together.
void LeastSize::CountTo(uint32_t counter, uint32_t number) {
  Counter& sum = counters_[counter];
  number = std::min(number, sum.size);
  if (sum.atLeast.size() >= number) return;
  CountTo(sum.left, number);
  CountTo(sum.right, number);
  const std::vector<Literal>&left = counters_[sum.left].atLeast, &right = counters_[sum.right].atLeast;
  for (size_t total = sum.atLeast.size() + 1; total <= number; ++total) {
    sum.atLeast.push_back(Holds(search_.AddVariable()));
    for (size_t i = 0; i <= std::min(total, left.size()); ++i) {
      if (total - i > right.size()) continue;
      clause_.assign(1, sum.atLeast.back());
      if (i > 0) clause_.push_back(Negated(left[i - 1]));
      if (i < total) clause_.push_back(Negated(right[total - i - 1]));
      search_.AddClause(clause_);
    }
  }
}

}  // namespace siphons
