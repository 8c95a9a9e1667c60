// 32-bit arithmetic, the life of a matrix, and the operations on rows and matrices: shapes at the edge,
// wrap-around, what moves and what stays.
#include "matrix/matrix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <csignal>

#include "base/arithmetic.h"
#include "matrix/matrixOps.h"
#include "tests/rows.h"

namespace siphons {
namespace {

constexpr int32_t kMin = INT32_MIN;

TEST(Arithmetic, WrapsAndTruncatesAtTheEdges) {
  EXPECT_EQ(WrapAdd(INT32_MAX, 1), kMin);
  EXPECT_EQ(WrapMul(65536, 65536), 0);
  EXPECT_EQ(WrapAbs(kMin), kMin);
  EXPECT_EQ(TruncateToInt32(2147483647.9L), INT32_MAX);
  EXPECT_EQ(TruncateToInt32(-2147483648.9L), kMin);
  EXPECT_EQ(TruncateToInt32(2147483648.0L), kMin);
  EXPECT_EQ(TruncateToInt32(std::nanl("")), kMin);
  EXPECT_EQ(TruncRem(-7, 2), -1);
}

TEST(ArithmeticDeathTest, ImpossibleDivisionsRaiseTheSignal) {
  EXPECT_EXIT(TruncDiv(1, 0), testing::KilledBySignal(SIGFPE), "");
  EXPECT_EXIT(TruncDiv(kMin, -1), testing::KilledBySignal(SIGFPE), "");
  EXPECT_EXIT(TruncRem(kMin, -1), testing::KilledBySignal(SIGFPE), "");
}

TEST(MatrixLife, GrowingKeepsRowsAndTruncatingDropsThem) {
  Matrix* m = MatrixOf({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}).release();
  int32_t* const second = m->p[1];
  ASSERT_EQ(ResizeRows(&m, 1000), 0);
  EXPECT_EQ(m->NbRows, 1003u);
  EXPECT_EQ(m->p[1], second);
  m->p[1002][2] = 7;
  PartFreeMat(&m, 3);
  EXPECT_EQ(RowsOf(*m), (Rows{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}));
  ASSERT_EQ(ResizeRows(&m, 0), 0);
  const OwnedMatrix copy(CopyMat(m));
  PartFreeMat(&m, 0);
  EXPECT_EQ(copy->NbRows, 3u);
  ASSERT_EQ(ResizeRows(&m, 2), 0);
  EXPECT_EQ(m->NbRows, 2u);
  FreeMat(m);
}

TEST(MatrixLife, RowsKeepWhatTheyHoldWhileOthersComeAndGo) {
  Matrix* m = BuildMat(0, 2);
  for (const uint32_t rows : {2300u, 1000u, 2600u, 1u, 1500u, 999u, 1001u}) {
    const uint32_t kept = std::min(rows, m->NbRows);
    PartFreeMat(&m, kept);
    ASSERT_EQ(ResizeRows(&m, static_cast<int32_t>(rows - kept)), 0);
    for (uint32_t r = kept; r < rows; ++r) m->p[r][0] = m->p[r][1] = static_cast<int32_t>(r);
    for (uint32_t r = 0; r < rows; ++r) {
      ASSERT_EQ(m->p[r][0], static_cast<int32_t>(r)) << rows;
      ASSERT_EQ(m->p[r][1], static_cast<int32_t>(r)) << rows;
    }
  }
  FreeMat(m);
}

TEST(MatrixOps, RowsMoveAndProductsWrap) {
  const OwnedMatrix m = MatrixOf({{1, 2}, {4, 8}, {0, 0}});
  int32_t scratch[2];
  RowExchange(m.get(), 0, 1, scratch);
  RowExchange(m.get(), 2, 2, scratch);
  CopyRow(m.get(), 1, 2);
  RowOr(0, 1, 1, m.get());
  EXPECT_EQ(RowsOf(*SwapRows(0, 2, m.get())), (Rows{{1, 2}, {5, 10}, {4, 8}}));
  const OwnedMatrix a = MatrixOf({{1, 2, 3}, {65536, 0, INT32_MAX}});
  const OwnedMatrix b = MatrixOf({{1, 65536}, {1, 0}, {1, 1}});
  EXPECT_EQ(RowsOf(*OwnedMatrix(MultMat(a.get(), b.get()))), (Rows{{6, 65539}, {kMin + 65535, INT32_MAX}}));
  const OwnedMatrix narrow(ZeroMatrix(2, 0)), flat(ZeroMatrix(0, 3));
  EXPECT_EQ(RowsOf(*OwnedMatrix(MultMat(narrow.get(), flat.get()))), (Rows{{0, 0, 0}, {0, 0, 0}}));
}

}  // namespace
}  // namespace siphons
