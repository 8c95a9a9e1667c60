// Greatest common divisors, row combinations against the reference, and where the arithmetic counts as
// wrapped.
#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <utility>

#include "solver/evaluation.h"
#include "solver/intOps.h"
#include "solver/matrixCombine.h"
#include "solver/new_rays.h"
#include "solver/sharedVars.h"
#include "tests/reference/reference.h"
#include "tests/rows.h"

namespace siphons {
namespace {

constexpr int32_t kMin = INT32_MIN;

// What the reference's row combinations do not reach: numbers without an absolute value, all zeros, one
// entry.
TEST(IntOps, DivisorsAtTheEdges) {
  EXPECT_EQ(Gcd(0, 0), 0);
  EXPECT_EQ(Gcd(kMin, 12), 4);
  EXPECT_EQ(Gcd(0, kMin), kMin) << "its absolute value does not fit";
  const auto normalised = [](Row row) {
    Vector_Normalize(row.data(), static_cast<uint32_t>(row.size()));
    return row;
  };
  EXPECT_EQ(normalised({5, 0, 0, 0}), (Row{5, 0, 0, 0}));
  EXPECT_EQ(normalised({8}), (Row{8}));
  EXPECT_EQ(normalised({0, kMin, 0}), (Row{0, 1, 0})) << "divided by itself, sign and all";
  EXPECT_EQ(GGcd(12, -18), 6);
  long double vector[] = {5, 4e9L, 6, 8};
  VNormalize(vector, 4);
  EXPECT_TRUE(vector[0] == 5 && vector[1] == 2e9L) << "4e9 enters as 2^31";
  long double zeros[] = {1, 0, 0};
  VNormalize(zeros, 3);
  EXPECT_TRUE(std::isnan(zeros[1]) && std::isnan(zeros[2]) && zeros[0] == 1);
}

TEST(CombineRow, EqualsTheReference) {
  int repaired = 0, failed = 0, wrapped = 0;
  for (uint32_t seed = 0; seed < 4000; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const int32_t range = seed % 4 == 0 ? INT32_MAX : 1 << (4 + seed % 12);
    Rows rows = RandomRows(random, 3, 2 + seed % 4, -range, range);
    const bool small = seed % 8 == 0;  // small factors on large entries: sums wrap, products fit
    const int32_t fa = small ? 1 : rows[2][0], fb = small ? -1 : rows[2][1];
    if (seed % 4 == 1) {  // a common factor that the division takes out again
      for (const size_t r : {0U, 1U}) {
        for (int32_t& entry : rows[r]) entry *= 1 << 14;
      }
    }
    const uint32_t destination = seed % 3;  // one of the sources, too
    const OwnedMatrix m = MatrixOf(rows);
    ArithmeticWrapped = false;
    testing::internal::CaptureStdout();
    const int32_t status = CombineRow(0, 1, destination, fa, fb, m.get());
    const std::string output = testing::internal::GetCapturedStdout();
    std::string expectedOutput;
    ASSERT_EQ(status, reference::CombineRow(0, 1, destination, fa, fb, rows, expectedOutput));
    ASSERT_EQ(output, expectedOutput);
    ASSERT_EQ(RowsOf(*m), rows);
    ASSERT_TRUE(output.empty() || ArithmeticWrapped);
    if (!output.empty()) {
      ++(status == 0 ? repaired : failed);
    } else {
      wrapped += ArithmeticWrapped ? 1 : 0;
    }
  }
  EXPECT_GT(repaired, 20);
  EXPECT_GT(failed, 20);
  EXPECT_GT(wrapped, 20);
}

/// Whether an operation on the matrix of these rows sets ArithmeticWrapped.
template <typename Operation>
bool Wraps(const Rows& rows, Operation operation) {
  const OwnedMatrix m = MatrixOf(rows);
  ArithmeticWrapped = false;
  testing::internal::CaptureStdout();
  operation(m.get());
  testing::internal::GetCapturedStdout();
  return std::exchange(ArithmeticWrapped, false);
}

// Every guard just inside 32 bits and just outside. What the solver leaves out because of its mathematics, it
// leaves out only while none of them was met.
TEST(ArithmeticWrapped, IsSetOutside32Bits) {
  const auto sum = [](Matrix* m) { CombineRow(0, 1, 2, 1, 1, m); };
  EXPECT_FALSE(Wraps({{0, INT32_MAX, 2}, {0, 0, 1}, {0, 0, 0}}, sum));
  EXPECT_TRUE(Wraps({{0, INT32_MAX, 2}, {0, 1, 1}, {0, 0, 0}}, sum));
  EXPECT_FALSE(Wraps({{0, kMin + 1, 2}, {0, 0, 1}, {0, 0, 0}}, sum));
  EXPECT_TRUE(Wraps({{0, kMin, 2}, {0, 0, 1}, {0, 0, 0}}, sum)) << "it has no absolute value";
  EXPECT_TRUE(Wraps({{0, kMin, 2}, {0, -1, 1}, {0, 0, 0}}, sum));
  const auto product = [](Matrix* m) { CombineRow(0, 1, 2, 1 << 16, 0, m); };
  EXPECT_FALSE(Wraps({{0, (1 << 15) - 1, 0}, {0, 0, 0}, {0, 0, 0}}, product));
  EXPECT_TRUE(Wraps({{0, 1 << 16, 0}, {0, 0, 0}, {0, 0, 0}}, product)) << "repaired by division";
  const auto status = [](Matrix* m) { SimpleCombine(0, 1, 2, m); };
  EXPECT_FALSE(Wraps({{kMin + 1, 0}, {1, 0}, {0, 0}}, status));
  EXPECT_TRUE(Wraps({{kMin, 0}, {1, 0}, {0, 0}}, status));
  EXPECT_TRUE(Wraps({{1, 0}, {kMin, 0}, {0, 0}}, status));

  Dimension = 4;
  NbRay = 1;
  const auto value = [](const Row& constraint) {
    return [&constraint](Matrix* m) {
      Ray = m;
      EvalConstraint(constraint.data());
      Ray = nullptr;
    };
  };
  EXPECT_FALSE(Wraps({{0, INT32_MAX, 0, 0, 0}}, value({0, 1, 0, 0, 0})));
  EXPECT_TRUE(Wraps({{0, INT32_MAX, 1, 0, 0}}, value({0, 1, 1, 0, 0})));
  EXPECT_TRUE(Wraps({{0, kMin, -1, 0, 0}}, value({0, 1, 1, 0, 0})));
  EXPECT_FALSE(Wraps({{0, 0, 0, 0, 0}}, value({0, kMin, 0, 0, 0})));
  EXPECT_TRUE(Wraps({{0, kMin, kMin, kMin, kMin}}, value({0, kMin, kMin, kMin, kMin})))
      << "a sum of 2^64 is 0 in 64 bits";
  NbRay = 0;
}

TEST(CombineRowDeathTest, TheDivisionOfTheTestFaults) {
  const OwnedMatrix m = MatrixOf({{0, -1}, {0, 0}});
  EXPECT_EXIT(CombineRow(0, 1, 0, kMin, 1, m.get()), testing::KilledBySignal(SIGFPE), "");
}

}  // namespace
}  // namespace siphons
