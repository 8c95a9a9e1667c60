// The clause search against all assignments, and whether its invariants see a fault.
#include "netkit/siphons/clause_search.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "tests/rows.h"

namespace siphons {
namespace {

using Clause = std::vector<Literal>;

std::vector<Clause> RandomClauses(std::mt19937& random, uint32_t variables) {
  std::vector<Clause> clauses(2 * variables + Below(random, 2 * variables));
  for (Clause& clause : clauses) {
    clause.resize(1 + Below(random, 4) + (Below(random, 8) != 0 ? 1U : 0U));
    for (Literal& literal : clause) literal = Below(random, 2 * variables);
  }
  return clauses;
}

/// An assignment has bit v set when variable v is true.
bool IsModel(const std::vector<Clause>& clauses, uint32_t assignment) {
  const auto isTrue = [assignment](Literal l) {
    return (assignment >> VariableOf(l) & 1) == (l & 1 ? 0 : 1);
  };
  return std::all_of(clauses.begin(), clauses.end(),
                     [&](const Clause& clause) { return std::any_of(clause.begin(), clause.end(), isTrue); });
}

/// All models, each left out by a clause once it was found.
std::set<uint32_t> Models(const std::vector<Clause>& clauses, uint32_t variables, std::mt19937& random) {
  ClauseSearch search(variables - 1);
  search.AddVariable();
  for (const Clause& clause : clauses) search.AddClause(clause);
  std::set<uint32_t> models;
  for (int round = 0;; ++round) {
    if (!search.Propagate()) {
      if (!search.ResolveConflict()) return models;
      continue;
    }
    EXPECT_TRUE(search.Consistent());
    if (round % 50 == 49) {
      search.Backtrack(0);
      if (search.Propagate()) search.CollectClauses();
      continue;
    }
    Variable free = Below(random, variables);
    for (uint32_t tried = 0; tried < variables && search.IsAssigned(free); ++tried)
      free = (free + 1) % variables;
    if (!search.IsAssigned(free)) {
      search.Decide(Below(random, 2) == 0 ? Holds(free) : Lacks(free));
      continue;
    }
    uint32_t model = 0;
    Clause excluding;
    for (const Literal literal : search.Trail()) {
      excluding.push_back(Negated(literal));
      if (literal == Holds(VariableOf(literal))) model |= 1U << VariableOf(literal);
    }
    EXPECT_TRUE(models.insert(model).second) << "a model comes twice";
    if (!search.AddFalseClause(excluding)) return models;
  }
}

TEST(ClauseSearch, FindsAllModels) {
  int withModels = 0, faultsSeen = 0;
  for (uint32_t seed = 0; seed < 300; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const uint32_t variables = 3 + Below(random, 7);
    const std::vector<Clause> clauses = RandomClauses(random, variables);
    std::set<uint32_t> models;
    for (uint32_t assignment = 0; assignment < 1U << variables; ++assignment) {
      if (IsModel(clauses, assignment)) models.insert(assignment);
    }
    EXPECT_EQ(Models(clauses, variables, random), models);
    withModels += models.empty() ? 0 : 1;
    // The comparison would see a clause that the search loses.
    faultsSeen += Models({clauses.begin() + 1, clauses.end()}, variables, random) != models ? 1 : 0;
  }
  EXPECT_GT(withModels, 50);
  EXPECT_GT(faultsSeen, 50);
}

}  // namespace
}  // namespace siphons
