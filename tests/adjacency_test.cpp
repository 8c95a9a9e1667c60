// The adjacency search against the definition, on random saturation rows with repetitions.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <random>
#include <span>

#include "solver/adjacency_search.h"
#include "solver/pattern_tree.h"
#include "solver/sharedVars.h"
#include "tests/instruction_sets.h"
#include "tests/rows.h"

namespace siphons {
namespace {

/// The definition: rows a and b of the rows from `first` on, constraints 0 to k. With `byValue` the planted
/// fault: rows equal to a or b are no third rows.
struct PlainTest {
  uint32_t first, k;
  bool byValue = false;

  uint32_t Common(uint32_t a, uint32_t b) const {
    uint32_t common = 0;
    for (uint32_t c = 0; c <= k; ++c) common += IsUnsaturated(a, c) || IsUnsaturated(b, c) ? 0U : 1U;
    return common;
  }
  bool Counts(uint32_t a, uint32_t b) const { return Common(a, b) + 1 >= Dimension - 2; }
  bool Equal(uint32_t a, uint32_t b) const {
    for (uint32_t c = 0; c <= k; ++c) {
      if (IsUnsaturated(a, c) != IsUnsaturated(b, c)) return false;
    }
    return true;
  }
  bool Adjacent(uint32_t a, uint32_t b) const {
    for (uint32_t t = first; t < NbRay; ++t) {
      if (t == a || t == b || (byValue && (Equal(t, a) || Equal(t, b)))) continue;
      bool holds = true;
      for (uint32_t c = 0; c <= k; ++c)
        holds = holds && (IsUnsaturated(a, c) || IsUnsaturated(b, c) || !IsUnsaturated(t, c));
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

/// A tree whose first node has lost a bit.
class SpoiltTree : public PatternTree {
 public:
  using PatternTree::PatternTree;
  void Spoil() { Levels()[1][0] &= Levels()[1][0] - 1; }
};

TEST(PatternTree, FindsWhatLookingAtEveryPatternFinds) {
  size_t selected = 0, passed = 0;
  for (uint32_t seed = 0; seed < 60; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937_64 random(seed);
    PatternRows patterns{{}, 1 + seed % 4};
    const uint32_t count = static_cast<uint32_t>(random() % (seed % 10 == 0 ? 1000 : 150));
    for (size_t i = 0; i < count * patterns.wordCount; ++i) {
      const uint64_t half = random();
      patterns.words.push_back(half & random());
    }
    const std::vector<uint32_t> order = OrderForTree(patterns, count);
    std::vector<uint32_t> sorted = order;
    std::sort(sorted.begin(), sorted.end());
    for (uint32_t i = 0; i < count; ++i) ASSERT_EQ(sorted.at(i), i);
    for (const InstructionSet set : SupportedSets()) {
      SpoiltTree tree(set, patterns.wordCount);
      for (const size_t size : {order.size(), order.size() / 3}) {
        tree.Build(patterns, std::span(order).first(size));
        ASSERT_TRUE(tree.UnionsHold());
        for (uint32_t least = 0; least < 24 * patterns.wordCount; least += 3) {
          // Masks are patterns without some bits, so that something holds them.
          std::vector<uint64_t> mask(patterns.wordCount);
          for (size_t w = 0; w < mask.size() && count > 0; ++w) {
            mask[w] = patterns[random() % count][0] & ~(uint64_t{1} << (random() % 64)) & random();
          }
          std::vector<uint32_t> sharing, holding;
          for (uint32_t i = 0; i < size; ++i) {
            uint32_t common = 0;
            bool holds = true;
            for (size_t w = 0; w < mask.size(); ++w) {
              const uint64_t word = patterns[order[i]][w];
              ASSERT_EQ(tree.Word(i, w), word);
              common += static_cast<uint32_t>(std::popcount(word & mask[w]));
              holds = holds && (mask[w] & ~word) == 0;
            }
            if (common >= least) sharing.push_back(i);
            if (holds) holding.push_back(i);
          }
          ASSERT_TRUE(std::ranges::equal(tree.SelectSharing(mask.data(), least), sharing));
          ASSERT_TRUE(std::ranges::equal(tree.SelectHolding(mask.data()), holding));
          selected += sharing.size() + holding.size();
          passed += 2 * size - sharing.size() - holding.size();
        }
      }
      if (order.size() <= kBlockPatterns) continue;
      tree.Build(patterns, order);
      tree.Spoil();
      EXPECT_FALSE(tree.UnionsHold()) << "a node that is no union must be seen";
    }
  }
  EXPECT_GT(selected, 10000U);
  EXPECT_GT(passed, 10000U);
}

TEST(AdjacencySearch, EqualsTheDefinition) {
  int adjacent = 0, faults = 0;
  for (uint32_t seed = 0; seed < 100; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const uint32_t constraints = 3 + Below(random, 140), k = Below(random, constraints - 1);
    const uint32_t due = k + 1 + Below(random, std::min(3U, constraints - k - 1));
    NbRay = 2 + Below(random, 60);
    Dimension = 1 + Below(random, std::max(2U, k / 3));
    const OwnedMatrix sat = RandomSaturation(random, NbRay, constraints);
    Sat = sat.get();
    nc = Sat->NbColumns;
    const uint32_t first = Below(random, NbRay - 1), from = first + 1 + Below(random, NbRay - first - 1);
    const PlainTest plain{first, k}, faulty{first, k, true};
    const auto betweenShared = [&](uint32_t a, uint32_t b) {
      for (uint32_t c = k + 1; c < due; ++c) {
        if (!IsUnsaturated(a, c) && !IsUnsaturated(b, c)) return true;
      }
      return false;
    };
    for (const InstructionSet set : SupportedSets()) {
      AdjacencySearch search(first, k, set);
      search.ChoosePartners(from, due);
      uint64_t tests = 0, expectedTests = 0;
      for (uint32_t a = first; a < from; ++a) {
        std::vector<uint32_t> expected;
        for (uint32_t b = from; b < NbRay; ++b) {
          if (!IsUnsaturated(b, due) || Dimension < 2 || !plain.Counts(a, b) || betweenShared(a, b)) continue;
          ++expectedTests;
          if (plain.Adjacent(a, b)) expected.push_back(b);
          faults += plain.Adjacent(a, b) != faulty.Adjacent(a, b) ? 1 : 0;
        }
        ASSERT_TRUE(std::ranges::equal(search.AdjacentPartners(a, tests), expected));
        adjacent += static_cast<int>(expected.size());
      }
      EXPECT_EQ(tests, expectedTests);
      for (uint32_t a = 0; a < NbRay; ++a) {
        const uint32_t b = (a + 1 + Below(random, NbRay - 1)) % NbRay;
        const bool enough = Dimension >= 2 && plain.Counts(a, b);
        const Adjacency ifEnough = plain.Adjacent(a, b) ? Adjacency::kAdjacent : Adjacency::kSeparated;
        ASSERT_EQ(search.Test(a, b), enough ? ifEnough : Adjacency::kShareTooFew);
      }
    }
  }
  Sat = nullptr;
  NbRay = 0;
  nc = 0;
  EXPECT_GT(adjacent, 100);
  EXPECT_GT(faults, 0) << "rows excluded by value must be seen";
}

}  // namespace
}  // namespace siphons
