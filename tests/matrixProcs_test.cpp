// Eliminations and sorts against their plain definitions, on random matrices of fixed seed.
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

// The plain definitions: what makes row j disappear because of row i.
bool SupportWithin(const Row& inner, const Row& outer) {
  for (size_t c = 0; c < inner.size(); ++c) {
    if (inner[c] != 0 && outer[c] == 0) return false;
  }
  return true;
}

bool MultipleOf(const Row& j, const Row& i) {
  if (i[0] != j[0]) return false;
  for (int32_t q = 1; q <= 8; ++q) {
    bool all = true;
    bool nonzero = false;
    for (size_t c = 1; c < i.size(); ++c) {
      all = all && j[c] == q * i[c];
      nonzero = nonzero || i[c] != 0;
    }
    if (all && nonzero) return true;
  }
  return false;
}

TEST(Eliminations, EqualThePlainDefinitions) {
  for (uint32_t seed = 0; seed < 300; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const Rows rows = RandomRows(random, 2 + seed % 12, 1 + seed % 4, -1 - int32_t(seed % 3), 2);
    Rows distinct, simple, minimal;
    for (size_t i = 0; i < rows.size(); ++i) {
      if (std::find(distinct.begin(), distinct.end(), rows[i]) == distinct.end()) distinct.push_back(rows[i]);
      const auto removes = [&](const Row& earlier) { return MultipleOf(rows[i], earlier); };
      if (std::none_of(simple.begin(), simple.end(), removes)) simple.push_back(rows[i]);
      bool keep = true;
      for (size_t j = 0; j < rows.size(); ++j) keep = keep && (j == i || !SupportWithin(rows[j], rows[i]));
      if (keep) minimal.push_back(rows[i]);
    }
    EXPECT_EQ(After(ElimEqualRows, rows), distinct);
    EXPECT_EQ(After(ElimSimpleConstraints, rows), simple);
    EXPECT_EQ(After(ElimNonMinimal, rows), minimal);
  }
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

// The sorts as their rules are written: two bubble sorts, and a recursive quicksort that exchanges pairs of
// entries.
void BubbleSortRows(Rows& rows) {
  for (size_t end = rows.size(); end > 1; --end) {
    for (size_t k = 1; k < end; ++k) {
      const auto tail = [](const Row& row) { return Row(row.begin() + 1, row.end()); };
      if (tail(rows[k]) < tail(rows[k - 1])) std::swap(rows[k - 1], rows[k]);
    }
  }
  for (size_t end = rows.size(); end > 1; --end) {
    for (size_t k = 1; k < end; ++k) {
      if (rows[k][0] < rows[k - 1][0]) std::swap(rows[k - 1], rows[k]);
    }
  }
}

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

TEST(Sorts, EqualTheWrittenOrder) {
  for (uint32_t seed = 0; seed < 200; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    Rows rows = RandomRows(random, seed % 60, 4, -2, int32_t(seed % 7));
    const OwnedMatrix sorted = MatrixOf(rows, 4);
    SortRows(sorted.get());
    const OwnedMatrix quick = MatrixOf(rows, 4);
    const size_t first = std::min<size_t>(rows.size(), seed % 3);
    QuickSort(quick.get(), uint32_t(first), uint32_t(rows.size()) - 1 + (rows.empty() ? 1 : 0), 2, 0);
    Rows expected = rows;
    if (!rows.empty()) PlainQuickSort(expected, first, rows.size() - 1, 2, 0);
    EXPECT_EQ(RowsOf(*quick), expected);
    BubbleSortRows(rows);
    EXPECT_EQ(RowsOf(*sorted), rows);
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
