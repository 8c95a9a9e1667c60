// Eliminations and sorts at odd shapes and numbers. fuzz/elimination.cpp compares them with their plain
// definitions on any matrix.
#include "matrix/matrixProcs.h"

#include <gtest/gtest.h>

#include "tests/rows.h"

namespace siphons {
namespace {

using Elimination = void (*)(Matrix**);

Rows After(Elimination eliminate, const Rows& rows, uint32_t columns = 0) {
  Matrix* m = MatrixOf(rows, columns).release();
  const uint32_t width = m->NbColumns;
  eliminate(&m);
  EXPECT_EQ(m->NbColumns, width);
  const Rows result = RowsOf(*m);
  FreeMat(m);
  return result;
}

TEST(Eliminations, OddShapes) {
  for (const Elimination e : {ElimEqualRows, ElimSimpleConstraints, ElimNonMinimal, RemoveZeroRows}) {
    EXPECT_EQ(After(e, {}, 4), Rows{});
  }
  EXPECT_EQ(After(ElimEqualRows, Rows(3)), Rows(1)) << "rows without columns are equal";
  EXPECT_EQ(After(ElimNonMinimal, {{0, 1, 1}}), Rows{}) << "one row alone does not survive";
  EXPECT_EQ(After(ElimNonMinimal, {{1, 1}, {1, 1}}), Rows{}) << "equal supports remove each other";
  EXPECT_EQ(After(ElimNonMinimal, {{1, 0}, {0, 0}, {0, 1}}), (Rows{{0, 0}}));
  EXPECT_EQ(After(RemoveZeroRows, {{0, 0}, {0, 3}, {0, 0}}), (Rows{{0, 3}}));
  Row wide(130), wider(130);
  wide[129] = wider[129] = wider[64] = 1;
  EXPECT_EQ(After(ElimNonMinimal, {wider, wide}), (Rows{wide})) << "supports of more than two words";
}

TEST(Eliminations, OnlyMultiplesOfEarlierRowsGo) {
  EXPECT_EQ(After(ElimSimpleConstraints, {{1, 1, -1}, {1, 2, -2}, {0, 2, -2}, {1, -1, 1}}),
            (Rows{{1, 1, -1}, {0, 2, -2}, {1, -1, 1}}));
  EXPECT_EQ(After(ElimSimpleConstraints, {{1, 2, 4}, {1, 1, 2}}), (Rows{{1, 2, 4}, {1, 1, 2}}));
  EXPECT_EQ(After(ElimSimpleConstraints, {{1, 0, 0}, {1, 0, 0}}), (Rows{{1, 0, 0}, {1, 0, 0}}));
}

// The quicksort as its rule is written: recursive, exchanging pairs of entries.
void PlainQuickSort(Rows& rows, size_t first, size_t last, size_t key, size_t payload) {
  if (first >= last) return;
  const int32_t pivot = rows[first][key];
  size_t i = first - 1, j = last + 1;
  while (true) {
    for (--j; rows[j][key] > pivot; --j) {
    }
    for (++i; rows[i][key] < pivot; ++i) {
    }
    if (j <= i) break;
    std::swap(rows[i][key], rows[j][key]);
    std::swap(rows[i][payload], rows[j][payload]);
  }
  PlainQuickSort(rows, first, j, key, payload);
  PlainQuickSort(rows, j + 1, last, key, payload);
}

TEST(Sorts, QuickSortLeavesEqualKeysAsWritten) {
  for (uint32_t seed = 0; seed < 200; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const Rows rows = RandomRows(random, seed % 60, 4, -2, int32_t(seed % 7));
    const OwnedMatrix quick = MatrixOf(rows, 4);
    const size_t first = std::min<size_t>(rows.size(), seed % 3);
    QuickSort(quick.get(), uint32_t(first), uint32_t(rows.size()) - 1 + (rows.empty() ? 1 : 0), 2, 0);
    Rows expected = rows;
    if (!rows.empty()) PlainQuickSort(expected, first, rows.size() - 1, 2, 0);
    EXPECT_EQ(RowsOf(*quick), expected);
  }
}

TEST(Sorts, ManyEqualKeysNeedNoDeepStack) {
  constexpr uint32_t kRows = 300000;
  const OwnedMatrix m(ZeroMatrix(kRows, 2));
  for (uint32_t r = 0; r < kRows; ++r) m->p[r][1] = static_cast<int32_t>(r);
  QuickSort(m.get(), 0, kRows - 1, 0, 1);
  int64_t sum = 0;
  for (uint32_t r = 0; r < kRows; ++r) sum += m->p[r][1];
  EXPECT_EQ(sum, int64_t{kRows} * (kRows - 1) / 2);
}

TEST(Sorts, OrdersBySparsityAndIgnoresTheKindLexicographically) {
  const OwnedMatrix m = MatrixOf({{1, 1, 1}, {0, 1, 1}, {1, 1, 0}, {1, 0, 1}, {0, 0, 0}});
  EXPECT_EQ(LexSmaller(m.get(), 1, 0), 0);
  EXPECT_EQ(LexSmaller(m.get(), 0, 1), 0);
  EXPECT_EQ(LexSmaller(m.get(), 3, 2), 1);
  _SortRows(m.get());
  EXPECT_EQ(RowsOf(*m), (Rows{{0, 0, 0}, {0, 1, 1}, {1, 1, 0}, {1, 0, 1}, {1, 1, 1}}));
}

}  // namespace
}  // namespace siphons
