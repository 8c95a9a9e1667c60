// The solver's containers against plain ones, under random programs of fixed seed.
#include <gtest/gtest.h>

#include <deque>
#include <map>
#include <optional>

#include "solver/index.h"
#include "solver/lists.h"
#include "solver/sharedVars.h"
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
    uint32_t nbKeys = 0, nbValues = 0;
    ScanList(list, &nbKeys, &nbValues);
    EXPECT_EQ(nbKeys, keys.size());
    EXPECT_EQ(nbValues, 6000u);
    FreeLiList(list);
  }
}

TEST(PairList, OpensBlocksAndElements) {
  LiList* const list = CreateLiList();
  for (uint32_t key = 0; key < kBlockKeys; ++key) StorePair(list, key, 0);
  EXPECT_EQ(list->next, nullptr);
  StorePair(list, kBlockKeys, 0);
  ASSERT_NE(list->next, nullptr);
  EXPECT_EQ(list->next->nbKeys, 1u);
  for (uint32_t i = 1; i < kElementValues; ++i) StorePair(list, 3, i);
  EXPECT_EQ(list->chains[3]->next, nullptr);
  StorePair(list, 3, 7);
  ASSERT_NE(list->chains[3]->next, nullptr);
  EXPECT_EQ(list->chains[3]->next->values, std::vector<uint32_t>{7});
  FreeLiList(list);
  FreeLiList(nullptr);

  LLElement* first = nullptr;
  ASSERT_EQ(CreateLLElement(&first), 0);
  LLElement* last = first;
  ASSERT_EQ(CreateLLElement(&last), 0);
  EXPECT_EQ(first->next, last);
  FreeLiListElement(first);
}

TEST(PairList, Prints) {
  LiList* const list = CreateLiList();
  StorePair(list, 4, 1);
  StorePair(list, 4, 2);
  testing::internal::CaptureStdout();
  printLiList(list);
  printLiList(nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "************DISPLAYLIST***********\nRow number 4 is adjacent to rows\n 1  2 \n*********1 "
            "ELEMENTS***********\n"
            "************DISPLAYLIST***********\n*********0 ELEMENTS***********\n");
  FreeLiList(list);
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

TEST(FreeList, KeepsItsBlockWhenItRunsEmpty) {
  FreeListBlock* head = InitFreeList();
  uint32_t empty = 1;
  for (uint32_t i = 0; i < kFreeBlockRows; ++i) DelSingleRow(&head, &empty, i);
  EXPECT_EQ(head->next, nullptr);
  for (uint32_t i = 0; i < kFreeBlockRows; ++i) ASSERT_EQ(GetFreeRow(&head, &empty), i);
  EXPECT_EQ(empty, 1u);
  EXPECT_EQ(head->nbRows, 0u);
  EXPECT_EQ(head->readPos, 0u);
  DelFreeList(head);
}

/// Rays as plain objects: who is in which row, who has which number, by the rules of the tables.
class PlainNumbers {
 public:
  uint32_t Number(uint32_t row) {
    std::optional<uint32_t>& number = rows[row];
    if (!number) {
      if (released.empty()) {
        number = next++;
      } else {
        number = released.front();
        released.pop_front();
      }
    }
    return *number;
  }

  void Remove(uint32_t first) {
    while (rows.size() > first) {
      if (const std::optional<uint32_t> number = rows.back()) {
        if (*number == next - 1) {
          --next;
        } else {
          released.push_back(*number);
        }
      }
      rows.pop_back();
    }
  }

  std::vector<std::optional<uint32_t>> rows;
  std::deque<uint32_t> released;
  uint32_t next = 0;
};

bool TablesAgree(const PlainNumbers& plain) {
  for (uint32_t row = 0; row < plain.rows.size(); ++row) {
    const std::optional<uint32_t> number = plain.rows[row];
    if (IndexRL->p[row][0] != (number ? static_cast<int32_t>(*number) : kNoNumber)) return false;
    if (number && IndexLR->p[*number][0] != static_cast<int32_t>(row)) return false;
  }
  return NbIndexLR == plain.next;
}

TEST(IndexTables, FollowTheRays) {
  for (uint32_t seed = 0; seed < 10; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    PlainNumbers plain;
    plain.rows.resize(4);
    IndexLR = ZeroMatrix(4, 1);
    IndexRL = ZeroMatrix(4, 1);
    NbIndexLR = 0;
    ResizeIndexRL(0, 4);
    FLR = InitFreeList();
    blockflag = 1;
    for (int step = 0; step < 4000; ++step) {
      const uint32_t count = static_cast<uint32_t>(plain.rows.size());
      const uint32_t a = count == 0 ? 0 : Below(random, count), b = count == 0 ? 0 : Below(random, count);
      switch (count == 0 ? 9 : random() % 10) {
        case 0: {  // the rays from a on go, others come
          const uint32_t come = Below(random, 700);
          plain.Remove(std::max(a, count * 9 / 10));
          const uint32_t kept = static_cast<uint32_t>(plain.rows.size());
          RemoveIndices(kept, count);
          plain.rows.resize(kept + come);
          ResizeIndexRL(kept, kept + come);
          break;
        }
        case 1:
        case 2:
        case 3:
        case 4:
          std::swap(plain.rows[a], plain.rows[b]);
          IndexExchange(a, b);
          break;
        case 9:
          plain.rows.resize(count + 1);
          ResizeIndexRL(count, count + 1);
          break;
        default:
          ASSERT_EQ(StoreIndex(a), plain.Number(a));
      }
      ASSERT_TRUE(TablesAgree(plain)) << "step " << step;
    }
    const uint32_t row = static_cast<uint32_t>(
        std::find_if(plain.rows.begin(), plain.rows.end(), [](auto number) { return number.has_value(); }) -
        plain.rows.begin());
    ++IndexLR->p[IndexRL->p[row][0]][0];
    EXPECT_FALSE(TablesAgree(plain)) << "the check must see a planted fault";
    FreeMat(IndexLR);
    FreeMat(IndexRL);
    IndexLR = IndexRL = nullptr;
    DelFreeList(FLR);
    FLR = nullptr;
    blockflag = 1;
  }
}

}  // namespace
}  // namespace siphons
