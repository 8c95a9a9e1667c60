// Operations of the solver and the timers that the program itself does not call, or not in this way.
#include <gtest/gtest.h>

#include "base/timer.h"
#include "solver/index.h"
#include "solver/inequalities.h"
#include "solver/sharedOps.h"
#include "solver/sharedVars.h"
#include "tests/messages.h"
#include "tests/rows.h"

namespace siphons {
namespace {

/// Three rays of two coordinates under the constraints x >= 0, y >= 0, x - y >= 0.
class SolverState : public testing::Test {
 protected:
  void SetUp() override {
    constraints_ = MatrixOf({{1, 1, 0}, {1, 0, 1}, {1, 1, -1}});
    rays_ = MatrixOf({{0, 1, 1}, {0, 0, 1}, {0, 3, -1}});
    sat_.reset(ZeroMatrix(3, 1));
    minF_.reset(ZeroMatrix(3, 2));
    Constraints = constraints_.get();
    NbConstraints = 3;
    maxMinF = 3;
    Dimension = 2;
    nc = 1;
    Ray = rays_.get();
    Sat = sat_.get();
    MinF = minF_.get();
    NbRay = 3;
    NbLines = 1;
  }
  void TearDown() override {
    Constraints = Ray = Sat = MinF = nullptr;
    NbRay = NbLines = 0;
    Border.clear();
  }
  /// The saturation row of a ray that does not saturate these constraints.
  static int32_t Bits(std::initializer_list<uint32_t> constraints) {
    uint32_t word = 0;
    for (const uint32_t c : constraints) word |= BitOf(c);
    return static_cast<int32_t>(word);
  }

 private:
  OwnedMatrix constraints_, rays_, sat_, minF_;
};

TEST_F(SolverState, EvaluationStopsAtTheFirstViolation) {
  EvalAllConstraints(0, 0, 3);
  EXPECT_EQ(RowsOf(*Sat), (Rows{{Bits({0, 1})}, {Bits({1, 2})}, {Bits({0, 1})}}));
  EXPECT_EQ(MinF->p[0][0], 3);
  EXPECT_EQ(MinF->p[1][0], 2);
  EXPECT_EQ(MinF->p[2][0], 1);
  EXPECT_EQ(CheckForStartingVertex(0, 0, 3), 0);
  EXPECT_EQ(CheckForStartingVertex(1, 0, 3), -1) << "both violate a constraint";
  EvalAllConstraints(1, 2, 2);
  EXPECT_EQ(MinF->p[2][0], 3) << "no constraints: MinF alone is reset";
  BuildBorder(0);
  EXPECT_EQ(GetUpperBound(), 3);
  EXPECT_EQ(GetBorder(-1), 0);
  EXPECT_EQ(GetBorder(maxMinF), -1);
}

TEST_F(SolverState, SaturationIsBuiltAndCounted) {
  const OwnedMatrix sat(BuildSat(Ray));
  EXPECT_EQ(RowsOf(*sat), (Rows{{Bits({0, 1})}, {Bits({1, 2})}, {Bits({0, 1, 2})}})) << "violated ones too";
  const OwnedMatrix status(ZeroMatrix(3, 1));
  WriteStatus(sat.get(), 0, 3, status.get());
  EXPECT_EQ(RowsOf(*status), (Rows{{1}, {0}, {1}}));
  Sat->p[1][0] = sat->p[1][0];
  WriteStatusConstraints(status.get());
  EXPECT_EQ(RowsOf(*status), (Rows{{3}, {2}, {2}}));
  WriteStatusConstraints2(status.get());
  EXPECT_EQ(RowsOf(*status), (Rows{{2}, {1}, {1}})) << "without the line";
  const OwnedMatrix longer(AddLines(status.get(), 2));
  EXPECT_EQ(RowsOf(*longer), (Rows{{2}, {1}, {1}, {0}, {0}}));
}

TEST_F(SolverState, DeferralNeedsAConstraintStrictlyBetween) {
  BitRow2.assign(1, 0);
  EXPECT_EQ(CheckedLater(0, 1, 0, 1), 0);
  EXPECT_EQ(CheckedLater(0, 2, 0, 1), 1) << "both saturate constraint 1";
  Sat->p[0][0] = Bits({1});
  EXPECT_EQ(CheckedLater(0, 2, 0, 1), 0);
  EXPECT_EQ(CheckedLater(0, 3, 0, 1), 1) << "and constraint 2";
  EXPECT_EQ(CheckedLater(-1, 3, 0, 1), 0);
}

TEST(SolverOperations, NumbersWithoutRows) {
  IndexLR = ZeroMatrix(1, 1);
  NbIndexLR = 0;
  blockflag = 1;
  EXPECT_EQ(IndexAppend(7), 0u);
  EXPECT_EQ(IndexAppend(8), 1u);
  EXPECT_EQ(IndexLR->p[1][0], 8);
  FreeMat(IndexLR);
  IndexLR = nullptr;
}

TEST(SolverOperations, TooManyRaysFailTheSolve) {
  // |x| + |y| + |z| <= t: the start has room for five rays, the cone has six.
  Rows rows;
  for (int32_t signs = 0; signs < 8; ++signs) {
    const auto sign = [signs](int32_t bit) { return (signs >> bit & 1) != 0 ? 1 : -1; };
    rows.push_back({1, sign(0), sign(1), sign(2), 1, 0});
  }
  for (const uint32_t limit : {4U, 1000U}) {
    adjcounter = limit == 4 ? 0 : 499999;
    const OwnedMatrix system = MatrixOf(rows);
    Matrix* out = nullptr;
    testing::internal::CaptureStdout();
    const uint32_t count = SolveInequationSystem(&out, system.get(), limit);
    const std::string output = testing::internal::GetCapturedStdout();
    const OwnedMatrix rays(out);
    EXPECT_EQ(count, limit == 4 ? 0u : 6u);
    if (limit == 4) {
      EXPECT_EQ(output, "Error!an error occured\n");
    } else {
      ExpectRowsOfThisTest({{output, "", 0}});
    }
  }
}

TEST(Timers, IntervalsAddUpAndResetsLeaveTheStart) {
  EXPECT_EQ(time_passed(7), 0);
  start_timer(7);
  const int32_t start = timer[7].start;
  start_timer(7);
  EXPECT_EQ(timer[7].start, start) << "the first start wins";
  while (time_passed(7) < 0.02) {
  }
  reset_all_timer();
  EXPECT_EQ(timer[7].running, 1);
  stop_timer(7);
  EXPECT_GE(time_passed(7), 0.02) << "reset while it ran: the whole interval still counts";
  stop_timer(7);
  reset_timer(7);
  EXPECT_EQ(time_passed(7), 0);
}

}  // namespace
}  // namespace siphons
