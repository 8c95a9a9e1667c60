// Whole solves against the reference: siphons and rays in their order, every pair in the order in which it is
// filed, the counters, and what is printed.
#include <gtest/gtest.h>

#include <iterator>
#include <optional>

#include "solver/adjacency.h"
#include "solver/sharedVars.h"
#include "tests/files.h"
#include "tests/instruction_sets.h"
#include "tests/reference/program.h"
#include "tests/rows.h"

namespace siphons {
namespace {

using reference::Answer;
using reference::Arcs;

void ExpectEqual(const Answer& program, const Answer& expected) {
  ASSERT_EQ(program.output, expected.output);
  ASSERT_EQ(program.pairs, expected.pairs);
  ASSERT_EQ(program.counters, expected.counters);
  ASSERT_EQ(program.failed, expected.failed);
  ASSERT_EQ(program.rays, expected.rays);
  ASSERT_EQ(program.supports, expected.supports);
}

Rows RandomArcs(std::mt19937& random, size_t transitionCount, size_t placeCount, uint32_t weight) {
  Rows rows(transitionCount, Row(placeCount));
  for (Row& row : rows) {
    for (size_t arcs = 1 + Below(random, 3); arcs > 0; --arcs) {
      row[Below(random, static_cast<uint32_t>(placeCount))] = static_cast<int32_t>(1 + Below(random, weight));
    }
  }
  return rows;
}

/// Nets side by side, with a few arcs from one to the next: more than 32 constraints, several saturation
/// words.
Arcs Union(std::mt19937& random, uint32_t nets) {
  constexpr size_t kSize = 5;
  Arcs arcs{Rows(nets * kSize, Row(nets * kSize)), {}};
  arcs.input = arcs.output;
  for (size_t n = 0; n < nets; ++n) {
    for (Rows* whole : {&arcs.output, &arcs.input}) {
      const Rows part = RandomArcs(random, kSize, kSize, 2);
      for (size_t t = 0; t < kSize; ++t) {
        std::copy(part[t].begin(), part[t].end(),
                  (*whole)[n * kSize + t].begin() + static_cast<ptrdiff_t>(n * kSize));
      }
    }
    if (n > 0) arcs.output[n * kSize][(n - 1) * kSize + Below(random, kSize)] = 1;
  }
  return arcs;
}

TEST(Solver, SolvesNetsAsTheReferenceDoes) {
  size_t pairs = 0;
  const std::vector<InstructionSet> sets = SupportedSets();
  for (uint32_t seed = 0; seed < 250; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const uint32_t weight = seed % 10 == 0 ? 100000 : 3;  // now and then sums and products leave 32 bits
    const size_t placeCount = 5 + seed % 8;
    const Arcs arcs = seed % 4 == 0 ? Union(random, 3 + Below(random, 3))
                                    : Arcs{RandomArcs(random, 7, placeCount, weight),
                                           RandomArcs(random, 7, placeCount, weight)};
    Answer expected = reference::SolveNet(arcs);
    testing::internal::CaptureStdout();
    pairSearchInstructions = sets[seed / 4 % sets.size()];
    Answer program = reference::SolveNetByProgram(arcs);
    program.output = testing::internal::GetCapturedStdout();
    // Of a net the program gives the siphons alone. A failed solve is a net without siphons.
    if (expected.failed) program.counters.onFacets = 0;
    expected.failed = false;
    expected.rays.clear();
    ExpectEqual(program, expected);
    if (HasFatalFailure()) return;
    pairs += expected.pairs.size();
  }
  EXPECT_GT(pairs, 3000u);
}

/// Constraints of any kind. Every third system has constant terms, every fifth too few constraints for a
/// basis, and one in eight numbers with which sums and products leave 32 bits.
Rows RandomSystem(std::mt19937& random, uint32_t seed) {
  const uint32_t dimension = 1 + Below(random, seed % 7 == 0 ? 16 : 7);
  const uint32_t count = seed % 5 == 0 ? 1 + Below(random, dimension) : 1 + Below(random, 2 * dimension + 6);
  const uint32_t density = 1 + Below(random, 4);
  const int32_t range = seed % 8 == 0 ? 1 << (10 + Below(random, 21)) : 3;
  const int32_t low = seed % 2 == 0 ? -range : -range / 2;  // mostly positive: fewer cones are empty
  Rows rows = RandomRows(random, count, dimension + 1, low, range);
  for (Row& row : rows) {
    for (int32_t& entry : row) entry = Below(random, 4) < density ? entry : 0;
    if (seed % 3 != 0) row.back() = 0;
  }
  return rows;
}

/// Solves both ways and expects the same. Returns the reference's answer, or nothing where the program would
/// end at an impossible division.
std::optional<Answer> Compare(const Rows& system) {
  Answer expected;
  try {
    expected = reference::Solve(system, 400);
  } catch (const reference::ArithmeticFault&) {
    return std::nullopt;
  }
  testing::internal::CaptureStdout();
  Answer program = reference::SolveByProgram(system, 400);
  program.output = testing::internal::GetCapturedStdout();
  ExpectEqual(program, expected);
  return expected;
}

TEST(Solver, SolvesSystemsAsTheReferenceDoes) {
  int failed = 0, wrapped = 0, inhomogeneous = 0, withoutBasis = 0, notAdjacent = 0;
  for (uint32_t seed = 0; seed < 4000 && !HasFatalFailure(); ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const std::optional<Answer> answer = Compare(RandomSystem(random, seed));
    if (!answer) continue;
    failed += answer->failed ? 1 : 0;
    wrapped += ArithmeticWrapped ? 1 : 0;
    inhomogeneous += Homogeneous ? 0 : 1;
    withoutBasis += NbLines > 0 ? 1 : 0;
    notAdjacent += answer->counters.notAdjacent;
  }
  EXPECT_GT(failed, 500);
  EXPECT_GT(wrapped, 200);
  EXPECT_GT(inhomogeneous, 500);
  EXPECT_GT(withoutBasis, 500);
  EXPECT_GT(notAdjacent, 200);
}

// One system in a thousand with constant terms tests a new ray with a parent behind the last ray.
TEST(Solver, TestsParentsThatLeft) {
  const std::pair<const char*, const char*> systems[] = {
      {"adjacent",
       "-1 3 0 0 | 2 0 3 3 | 0 2 0 1 | 1 -1 2 3 | 3 -1 0 3 | 3 1 -1 3 | 1 -1 1 2 | 1 3 1 1 | 0 0 -1 1 | -1 2 "
       "0 2"},
      {"too few constraints in common",
       "-1 2 2 2 -1 | 0 3 3 0 3 | 3 3 2 1 -1 | -1 0 -1 0 1 | 3 2 -1 3 2 | 2 3 -1 2 1 | 0 3 3 2 3 | -1 3 2 0 "
       "2 | 2 -1 0 3 -1 | 0 0 -1 0 1 | 0 2 0 -1 3 | 2 1 -1 3 3"},
      {"separated",
       "-1 -1 0 -3 0 | -3 -3 0 0 1 | -2 -3 0 0 0 | -2 0 -2 0 -1 | 0 0 0 -3 0 | -3 0 0 0 1 | -2 1 0 0 1 | 1 0 "
       "-2 1 0"},
      {"adjacent because the row that would separate is moved out of sight",
       "1 0 1 -1 -1 0 | 2 -1 0 0 1 0 | 1 -1 2 0 -1 0 | -1 0 -1 1 0 1 | 1 1 -1 0 -1 2 | 0 -1 0 -1 1 1 | 2 -1 "
       "1 0 0 1 | 0 1 0 0 -1 2 | 2 0 0 0 2 0 | 2 -1 1 2 2 0 | -1 -1 0 -1 1 -1"}};
  for (const auto& [name, text] : systems) {
    SCOPED_TRACE(name);
    Rows system;
    for (const std::string& row : Split(text, '|')) {
      std::istringstream numbers(row);
      system.emplace_back(std::istream_iterator<int32_t>(numbers), std::istream_iterator<int32_t>());
    }
    Compare(system);
  }
}

}  // namespace
}  // namespace siphons
