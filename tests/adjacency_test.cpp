// The fast solver against the plain one: predicates on random saturation rows with repetitions, and whole
// solves, the order of the siphons included.
#include <gtest/gtest.h>

#include <iostream>

#include "solver/adjacency_search.h"
#include "solver/sharedVars.h"
#include "tests/reference/solve.h"
#include "tests/rows.h"

namespace siphons {
namespace {

std::vector<InstructionSet> SupportedSets() {
  std::vector<InstructionSet> sets;
  for (const InstructionSet set :
       {InstructionSet::kPortable, InstructionSet::kAvx2, InstructionSet::kAvx512}) {
    if (IsSupported(set)) {
      sets.push_back(set);
    } else {
      std::cout << "not supported here: instruction set " << static_cast<int>(set) << "\n";
    }
  }
  return sets;
}

/// The definition: rows a and b of the rows from `first` on, constraints 0 to k. With `byValue` the planted
/// fault: rows equal to a or b are no third rows.
struct PlainTest {
  uint32_t first, k;
  bool byValue = false;

  uint32_t Common(uint32_t a, uint32_t b) const {
    uint32_t common = 0;
    for (uint32_t c = 0; c <= k; ++c) common += SatBit(a, c) || SatBit(b, c) ? 0U : 1U;
    return common;
  }
  bool Counts(uint32_t a, uint32_t b) const { return Common(a, b) + 1 >= Dimension - 2; }
  bool Equal(uint32_t a, uint32_t b) const {
    for (uint32_t c = 0; c <= k; ++c) {
      if (SatBit(a, c) != SatBit(b, c)) return false;
    }
    return true;
  }
  bool Adjacent(uint32_t a, uint32_t b) const {
    for (uint32_t t = first; t < NbRay; ++t) {
      if (t == a || t == b || (byValue && (Equal(t, a) || Equal(t, b)))) continue;
      bool holds = true;
      for (uint32_t c = 0; c <= k; ++c) holds = holds && (SatBit(a, c) || SatBit(b, c) || !SatBit(t, c));
      if (holds) return false;
    }
    return true;
  }
};

/// Random saturation rows of `constraints` bits, every fourth a copy of another.
OwnedMatrix RandomSaturation(std::mt19937& random, uint32_t rows, uint32_t constraints) {
  OwnedMatrix sat(ZeroMatrix(rows, WordOf(constraints - 1) + 1));
  for (uint32_t r = 0; r < rows; ++r) {
    if (r % 4 == 3) {
      const uint32_t copied = Below(random, r);
      std::copy_n(sat->p[copied], sat->NbColumns, sat->p[r]);
      continue;
    }
    for (uint32_t c = 0; c < constraints; ++c) {
      if (Below(random, 3) == 0) sat->p[r][WordOf(c)] |= static_cast<int32_t>(BitOf(c));
    }
  }
  return sat;
}

TEST(AdjacencySearch, EqualsTheDefinition) {
  int adjacent = 0, faults = 0;
  for (uint32_t seed = 0; seed < 60; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const uint32_t constraints = 2 + Below(random, 140), k = Below(random, constraints);
    NbRay = 1 + Below(random, 40);
    Dimension = 1 + Below(random, std::max(2U, k / 3));
    const OwnedMatrix sat = RandomSaturation(random, NbRay, constraints);
    Sat = sat.get();
    const uint32_t first = Below(random, NbRay);
    const PlainTest plain{first, k}, faulty{first, k, true};
    for (const InstructionSet set : SupportedSets()) {
      AdjacencySearch search(first, k, KernelsFor(set));
      for (uint32_t a = first; a < NbRay; ++a) {
        const uint32_t from = first + Below(random, NbRay - first);
        search.Fix(a, from);
        std::vector<uint32_t> expected;
        for (uint32_t b = from; b < NbRay; ++b) {
          if (b != a && Dimension >= 2 && plain.Counts(a, b)) expected.push_back(b);
        }
        ASSERT_EQ(search.CandidateCount(), expected.size());
        for (size_t i = 0; i < expected.size(); ++i) {
          ASSERT_EQ(search.Candidate(i), expected[i]);
          ASSERT_EQ(search.IsAdjacent(i), plain.Adjacent(a, expected[i]));
          adjacent += search.IsAdjacent(i) ? 1 : 0;
          faults += search.IsAdjacent(i) != faulty.Adjacent(a, expected[i]) ? 1 : 0;
        }
      }
    }
  }
  Sat = nullptr;
  NbRay = 0;
  EXPECT_GT(adjacent, 100);
  EXPECT_GT(faults, 0) << "rows excluded by value must be seen";
}

comparison::Rows RandomArcs(std::mt19937& random, size_t transitionCount, size_t placeCount,
                            uint32_t weight) {
  comparison::Rows rows(transitionCount, Row(placeCount));
  for (Row& row : rows) {
    for (size_t arcs = 1 + Below(random, 3); arcs > 0; --arcs) {
      row[Below(random, static_cast<uint32_t>(placeCount))] = static_cast<int32_t>(1 + Below(random, weight));
    }
  }
  return rows;
}

/// Nets side by side, with a few arcs from one to the next: more than 32 constraints, several saturation
/// words.
comparison::Arcs Union(std::mt19937& random, uint32_t nets) {
  constexpr size_t kSize = 5;
  comparison::Arcs arcs{comparison::Rows(nets * kSize, Row(nets * kSize)), {}};
  arcs.input = arcs.output;
  for (size_t n = 0; n < nets; ++n) {
    for (comparison::Rows* whole : {&arcs.output, &arcs.input}) {
      const comparison::Rows part = RandomArcs(random, kSize, kSize, 2);
      for (size_t t = 0; t < kSize; ++t) {
        std::copy(part[t].begin(), part[t].end(),
                  (*whole)[n * kSize + t].begin() + static_cast<ptrdiff_t>(n * kSize));
      }
    }
    if (n > 0) arcs.output[n * kSize][(n - 1) * kSize + Below(random, kSize)] = 1;
  }
  return arcs;
}

TEST(Solvers, GiveTheSameSiphonsInTheSameOrder) {
  uint64_t pairs = 0;
  testing::internal::CaptureStdout();
  for (uint32_t seed = 0; seed < 400; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const uint32_t weight = seed % 10 == 0 ? 100000 : 3;  // now and then sums and products leave 32 bits
    const size_t placeCount = 5 + seed % 8;
    const comparison::Arcs arcs = seed % 4 == 0 ? Union(random, 3 + Below(random, 3))
                                                : comparison::Arcs{RandomArcs(random, 7, placeCount, weight),
                                                                   RandomArcs(random, 7, placeCount, weight)};
    const comparison::Solution fast = comparison::SolveFast(arcs), plain = comparison::SolvePlain(arcs);
    ASSERT_EQ(fast.siphons, plain.siphons);
    ASSERT_EQ(fast.rays, plain.rays);
    ASSERT_EQ(fast.pairs, plain.pairs);
    ASSERT_EQ(fast.tests, plain.tests);
    pairs += fast.pairs;
  }
  testing::internal::GetCapturedStdout();
  EXPECT_GT(pairs, 5000u);
}

}  // namespace
}  // namespace siphons
