// The operations that no run of the program calls, each at what is odd about it. fuzz/elimination.cpp tests
// RemoveZeroRows and _SortRows.
#include <gtest/gtest.h>

#include "matrix/matrixProcs.h"
#include "matrix/uncalled.h"
#include "solver/sharedOps.h"
#include "solver/sharedVars.h"
#include "solver/uncalled.h"
#include "tests/messages.h"
#include "tests/rows.h"

namespace siphons {
namespace {

TEST(MatrixLife, SizeIsPrintedAndReturned) {
  const OwnedMatrix m(ZeroMatrix(3, 5));
  testing::internal::CaptureStdout();
  EXPECT_EQ(SIZEOFMATI(m.get()), 100);
  EXPECT_EQ(SIZEOFMATI(nullptr), 0);
  const std::string output = testing::internal::GetCapturedStdout();
  EXPECT_EQ(output.find("size of matrix: 100 bytes\n"), 0u);
  ExpectRowsOfThisTest({{output, "", 0}});
}

TEST(Uncalled, MatrixOperations) {
  EXPECT_EQ(RowsOf(*OwnedMatrix(IdentityMat(2))), (Rows{{1, 0}, {0, 1}}));
  const OwnedMatrix a = MatrixOf({{1, 2, 3}, {65536, 0, INT32_MAX}});
  EXPECT_EQ(RowsOf(*OwnedMatrix(AddMultCol(2, 0, 2, a.get()))), (Rows{{7, 2, 3}, {65534, 0, INT32_MAX}}));
  EXPECT_EQ(RowsOf(*OwnedMatrix(ScalarCol(2, -2, a.get()))), (Rows{{1, 2, -6}, {65536, 0, 2}}));
  EXPECT_EQ(RowsOf(*SwapCols(0, 1, a.get())), (Rows{{2, 1, 3}, {0, 65536, INT32_MAX}}));

  const OwnedMatrix m = MatrixOf({{0, 0, 5}, {0, 3, 0}, {0, 0, 5}});
  EXPECT_EQ(RowSeek(m.get(), 1, 0), 1u);
  EXPECT_EQ(RowSeek(m.get(), 1, 2), 3u);
  EXPECT_EQ(RowSeek(m.get(), 1, 9), 9u);
  EXPECT_EQ(ISIN(2, m.get(), m.get()), 0);
  EXPECT_EQ(ISIN(1, m.get(), MatrixOf({{0, 3}}).get()), -1);
  EXPECT_EQ(ISIN(1, m.get(), MatrixOf({{0, 0, 3}}).get()), -1);

  const OwnedMatrix rows = MatrixOf({{1, 1, 1}, {0, 1, 1}, {1, 1, 0}, {1, 0, 1}});
  EXPECT_EQ(LexSmaller(rows.get(), 1, 0), 0) << "column 0 does not count";
  EXPECT_EQ(LexSmaller(rows.get(), 3, 2), 1);
}

/// The saturation row of a ray that does not saturate these constraints.
int32_t Bits(std::initializer_list<uint32_t> constraints) {
  uint32_t word = 0;
  for (const uint32_t c : constraints) word |= BitOf(c);
  return static_cast<int32_t>(word);
}

// Three rays of two coordinates under the constraints x >= 0, y >= 0, x - y >= 0.
TEST(Uncalled, SolverOperations) {
  const OwnedMatrix constraints = MatrixOf({{1, 1, 0}, {1, 0, 1}, {1, 1, -1}});
  const OwnedMatrix rays = MatrixOf({{0, 1, 1}, {0, 0, 1}, {0, 3, -1}});
  Constraints = constraints.get();
  Ray = rays.get();
  NbConstraints = NbRay = 3;
  maxMinF = 3;
  Dimension = 2;
  NbLines = 1;
  EXPECT_EQ(CheckForStartingVertex(0, 0, 3), 0);
  EXPECT_EQ(CheckForStartingVertex(1, 0, 3), -1) << "both violate a constraint";
  const OwnedMatrix sat(BuildSat(Ray));
  EXPECT_EQ(RowsOf(*sat), (Rows{{Bits({0, 1})}, {Bits({1, 2})}, {Bits({0, 1, 2})}})) << "violated ones too";
  Sat = sat.get();
  const OwnedMatrix status(ZeroMatrix(3, 1));
  WriteStatusConstraints(status.get());
  EXPECT_EQ(RowsOf(*status), (Rows{{1}, {0}, {1}}));
  WriteStatusConstraints2(status.get());
  EXPECT_EQ(RowsOf(*status), (Rows{{1}, {0}, {0}})) << "without the line";
  EXPECT_EQ(RowsOf(*OwnedMatrix(AddLines(status.get(), 1))), (Rows{{1}, {0}, {0}, {0}}));
  Border = {kNoRow, 0, kNoRow, kNoRow};
  EXPECT_EQ(GetUpperBound(0), 1);
  Constraints = Ray = Sat = nullptr;
  NbRay = NbLines = 0;
  Border.clear();

  EXPECT_EQ((Row{INT(-7, 2), INT(-8, 2), INT(-1, 4), INT(-65536 * 8, 65536)}), (Row{-4, -4, -1, -8}));
  EXPECT_EQ((Row{NEAREST_INT(3, 2), NEAREST_INT(-3, 2), NEAREST_INT(7, 4), NEAREST_INT(3, -2)}),
            (Row{1, -2, 2, -2}));
  EXPECT_EQ((Row{RSV(-3, 2), RSV(-3, 3), RSV(INT32_MIN, 0)}), (Row{1, 0, -1}))
      << "the absolute value of the lowest number stays negative";
}

TEST(Uncalled, PairLists) {
  LiList* const list = CreateLiList();
  StorePair(list, 4, 1);
  StorePair(list, 4, 2);
  uint32_t keys = 0, companions = 0;
  ScanList(list, &keys, &companions);
  EXPECT_EQ(keys * 10 + companions, 12u);
  testing::internal::CaptureStdout();
  printLiList(list);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "************DISPLAYLIST***********\nRow number 4 is adjacent to rows\n 1  2 \n*********1 "
            "ELEMENTS***********\n");
  FreeLiList(list);
  LLElement* first = nullptr;
  ASSERT_EQ(CreateLLElement(&first), 0);
  FreeLiListElement(first);
}

}  // namespace
}  // namespace siphons
