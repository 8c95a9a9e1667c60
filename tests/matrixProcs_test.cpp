// What fuzz/elimination.cpp, which holds eliminations and sorts against the reference, does not reach: rows
// wider than two words, matrices without columns, sorts of a part and of many rows.
#include "matrix/matrixProcs.h"

#include <gtest/gtest.h>

#include "tests/reference/reference.h"
#include "tests/rows.h"

namespace siphons {
namespace {

TEST(Eliminations, EqualTheReferenceAtOddShapes) {
  const std::pair<void (*)(Matrix**), void (*)(Rows&)> eliminations[] = {
      {ElimEqualRows, reference::ElimEqualRows}, {ElimNonMinimal, reference::ElimNonMinimal}};
  Row wide(130), wider(130);
  wide[129] = wider[129] = wider[64] = 1;
  for (const Rows& rows : {Rows(3), Rows{wider, wide, wider}, Rows{wider, wide}, Rows{wider}}) {
    for (const auto& [eliminate, define] : eliminations) {
      Matrix* m = MatrixOf(rows).release();
      eliminate(&m);
      Rows expected = rows;
      define(expected);
      EXPECT_EQ(RowsOf(*OwnedMatrix(m)), expected);
    }
  }
}

TEST(Sorts, PartsAndManyEqualKeys) {
  for (uint32_t seed = 0; seed < 200; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    Rows rows = RandomRows(random, 1 + seed % 60, 4, -2, static_cast<int32_t>(seed % 7));
    const uint32_t last = static_cast<uint32_t>(rows.size()) - 1, first = std::min(last, seed % 3);
    const OwnedMatrix m = MatrixOf(rows);
    QuickSort(m.get(), first, last, 2, 0);
    reference::QuickSort(rows, first, last, 2, 0);
    EXPECT_EQ(RowsOf(*m), rows);
  }
  constexpr uint32_t kRows = 300000;  // a deep recursion would end the process
  const OwnedMatrix m(ZeroMatrix(kRows, 2));
  for (uint32_t r = 0; r < kRows; ++r) m->p[r][1] = static_cast<int32_t>(r);
  QuickSort(m.get(), 0, kRows - 1, 0, 1);
  int64_t sum = 0;
  for (uint32_t r = 0; r < kRows; ++r) sum += m->p[r][1];
  EXPECT_EQ(sum, int64_t{kRows} * (kRows - 1) / 2);
}

}  // namespace
}  // namespace siphons
