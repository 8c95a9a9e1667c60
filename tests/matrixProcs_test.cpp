// Eliminations and sorts against the reference, at odd shapes and on random rows, and what the reference
// cannot show. fuzz/elimination.cpp holds them against definitions of its own.
#include "matrix/matrixProcs.h"

#include <gtest/gtest.h>

#include "tests/reference/reference.h"
#include "tests/rows.h"

namespace siphons {
namespace {

template <typename Eliminate>
Rows After(Eliminate eliminate, const Rows& rows, uint32_t columns = 0) {
  Matrix* m = MatrixOf(rows, columns).release();
  const uint32_t width = m->NbColumns;
  eliminate(&m);
  EXPECT_EQ(m->NbColumns, width);
  const OwnedMatrix owner(m);
  return RowsOf(*m);
}

const struct {
  void (*program)(Matrix**);
  void (*expected)(Rows&);
} kEliminations[] = {{ElimEqualRows, reference::ElimEqualRows},
                     {ElimSimpleConstraints, reference::ElimSimpleConstraints},
                     {ElimNonMinimal, reference::ElimNonMinimal}};

TEST(Eliminations, EqualTheReference) {
  Row wide(130), wider(130);
  wide[129] = wider[129] = wider[64] = 1;  // supports of more than two words
  std::vector<Rows> cases{Rows(3), {{0, 1, 1}}, {{1, 1}, {1, 1}}, {wider, wide}, {{1, 2, 4}, {1, 1, 2}}};
  for (uint32_t seed = 0; seed < 300; ++seed) {
    std::mt19937 random(seed);
    cases.push_back(RandomRows(random, seed % 12, 1 + seed % 5, -1, static_cast<int32_t>(seed % 3)));
  }
  for (const auto& [eliminate, expected] : kEliminations) {
    EXPECT_EQ(After(eliminate, {}, 4), Rows{});
    for (size_t i = 0; i < cases.size(); ++i) {
      SCOPED_TRACE(testing::Message() << "case or 5 + seed " << i);
      if (eliminate == ElimSimpleConstraints && !cases[i].empty() && cases[i][0].empty()) continue;
      Rows rows = cases[i];
      expected(rows);
      EXPECT_EQ(After(eliminate, cases[i]), rows);
    }
  }
}

TEST(Sorts, EqualTheReference) {
  for (uint32_t seed = 0; seed < 200; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    Rows rows = RandomRows(random, 1 + seed % 60, 4, -2, static_cast<int32_t>(seed % 7));
    const uint32_t last = static_cast<uint32_t>(rows.size()) - 1, first = std::min(last, seed % 3);
    const OwnedMatrix m = MatrixOf(rows);
    QuickSort(m.get(), first, last, 2, 0);
    reference::QuickSort(rows, first, last, 2, 0);
    EXPECT_EQ(RowsOf(*m), rows);
    SortRows(m.get());
    reference::SortRows(rows);
    EXPECT_EQ(RowsOf(*m), rows);
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

}  // namespace
}  // namespace siphons
