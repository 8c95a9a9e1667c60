// The solver's containers against plain ones, under random programs of fixed seed. The numbers of rays that
// the index tables hand out are compared with the reference's by solver_test.cpp, in every filed pair.
#include <gtest/gtest.h>

#include <deque>
#include <map>

#include "solver/lists.h"
#include "tests/rows.h"

namespace siphons {
namespace {

using Pairs = std::vector<std::pair<uint32_t, uint32_t>>;

Pairs PairsOf(const LiList* list) {
  Pairs pairs;
  ForEachPair(list, [&](uint32_t key, uint32_t companion) {
    pairs.emplace_back(key, companion);
    return 0;
  });
  return pairs;
}

TEST(PairList, KeepsInsertionOrderOfKeysAndCompanions) {
  for (uint32_t seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    std::vector<uint32_t> keys;
    std::map<uint32_t, std::vector<uint32_t>> companions;
    LiList* const list = CreateLiList();
    EXPECT_EQ(list->keys[0], 0xFFFFFFFF);
    for (uint32_t i = 0; i < 6000; ++i) {
      const uint32_t key = Below(random, 1 + seed * 3), companion = Below(random, 50);
      if (companions[key].empty()) keys.push_back(key);
      companions[key].push_back(companion);
      ASSERT_EQ(StorePair(list, key, companion), 0);
    }
    Pairs expected;
    for (const uint32_t key : keys) {
      for (const uint32_t companion : companions[key]) expected.emplace_back(key, companion);
    }
    EXPECT_EQ(PairsOf(list), expected);
    FreeLiList(list);
  }
}

TEST(FreeList, HandsOutFirstInFirstOut) {
  FreeListBlock* head = InitFreeList();
  uint32_t empty = 1;
  std::deque<uint32_t> expected;
  std::mt19937 random(1);
  for (uint32_t i = 0; i < 200000; ++i) {
    // Phases of growth and of draining, so that blocks open and close.
    const bool release = random() % 4 < (i / 30000 % 2 == 0 ? 3 : 1);
    if (release) {
      DelSingleRow(&head, &empty, i);
      expected.push_back(i);
    } else if (empty == 0) {
      ASSERT_EQ(GetFreeRow(&head, &empty), expected.front());
      expected.pop_front();
    }
    ASSERT_EQ(empty == 1, expected.empty());
  }
  DelFreeList(head);
}

}  // namespace
}  // namespace siphons
