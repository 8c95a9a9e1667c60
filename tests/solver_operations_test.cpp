// The solver at its limit of rays, and the timers.
#include <gtest/gtest.h>

#include "base/timer.h"
#include "solver/inequalities.h"
#include "solver/sharedVars.h"
#include "tests/messages.h"
#include "tests/rows.h"

namespace siphons {
namespace {

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
  const double first = time_passed(7);
  start_timer(7);
  stop_timer(7);
  stop_timer(7);
  EXPECT_GE(time_passed(7), first) << "intervals add up";
  reset_timer(7);
  EXPECT_EQ(time_passed(7), 0);
}

}  // namespace
}  // namespace siphons
