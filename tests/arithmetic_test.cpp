// Greatest common divisors, and row combinations against exact arithmetic in 128 bits.
#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <numeric>
#include <optional>

#include "solver/intOps.h"
#include "solver/matrixCombine.h"
#include "tests/rows.h"

namespace siphons {
namespace {

__extension__ using Wide = __int128;

constexpr int32_t kMin = INT32_MIN;

TEST(IntOps, GreatestCommonDivisors) {
  EXPECT_EQ(Gcd(12, -18), 6);
  EXPECT_EQ(Gcd(0, -5), 5);
  EXPECT_EQ(Gcd(7, 0), 7);
  EXPECT_EQ(Gcd(0, 0), 0);
  EXPECT_EQ(Gcd(kMin, 12), 4);
  EXPECT_EQ(Gcd(0, kMin), kMin) << "its absolute value does not fit";
  const Row vector{99, 4, -6, 0, 10};
  EXPECT_EQ(VectorGcd(vector.data(), 5), 2);
  EXPECT_EQ(VectorGcd(vector.data(), 1), 0);
}

TEST(IntOps, NormalisingKeepsSignsAndTheStatus) {
  const auto normalised = [](Row row) {
    Vector_Normalize(row.data(), static_cast<uint32_t>(row.size()));
    return row;
  };
  EXPECT_EQ(normalised({99, 4, -6, 0, 10}), (Row{99, 2, -3, 0, 5}));
  EXPECT_EQ(normalised({5, 0, 0, 0}), (Row{5, 0, 0, 0}));
  EXPECT_EQ(normalised({8}), (Row{8}));
  EXPECT_EQ(normalised({0, 3, 5}), (Row{0, 3, 5}));
  EXPECT_EQ(normalised({0, kMin, 0}), (Row{0, 1, 0})) << "divided by itself, sign and all";
}

TEST(IntOps, RoundingAndMagnitudes) {
  EXPECT_EQ(INT(-7, 2), -4);
  EXPECT_EQ(INT(-8, 2), -4);
  EXPECT_EQ(INT(-1, 4), -1);
  EXPECT_EQ(INT(-65536 * 8, 65536), -8);
  EXPECT_EQ(NEAREST_INT(3, 2), 1);
  EXPECT_EQ(NEAREST_INT(-3, 2), -2);
  EXPECT_EQ(NEAREST_INT(7, 4), 2);
  EXPECT_EQ(NEAREST_INT(-1, 4), 0);
  EXPECT_EQ(NEAREST_INT(3, -2), -2);
  EXPECT_EQ(RSV(-3, 2), 1);
  EXPECT_EQ(RSV(-3, 3), 0);
  EXPECT_EQ(RSV(kMin, 0), -1) << "the absolute value stays negative";
}

TEST(IntOps, ExtendedPrecision) {
  EXPECT_EQ(GGcd(12, -18), 6);
  long double vector[] = {5, 4e9L, 6, 8};
  EXPECT_EQ(VGcd(vector, 4), 2) << "4e9 enters as 2^31";
  VNormalize(vector, 4);
  EXPECT_EQ(vector[1], 2e9L);
  EXPECT_EQ(vector[0], 5);
  long double zeros[] = {1, 0, 0};
  VNormalize(zeros, 3);
  EXPECT_TRUE(std::isnan(zeros[1]) && std::isnan(zeros[2]) && zeros[0] == 1);
}

/// What the extended-precision pass must make of exact sums: nothing when they do not fit after the division.
std::optional<Row> Reduced(const std::vector<Wide>& sums) {
  int64_t g = 0;
  for (const Wide sum : sums) {
    const bool fits = sum >= kMin && sum <= INT32_MAX;
    g = std::gcd(g, fits ? static_cast<int64_t>(sum) : int64_t{kMin});
  }
  if (g == 0) return std::nullopt;
  Row row{0};
  for (const Wide sum : sums) {
    const Wide entry = sum / g;
    if (sum % g != 0 || entry < kMin || entry > INT32_MAX) return std::nullopt;
    row.push_back(static_cast<int32_t>(entry));
  }
  return row;
}

TEST(CombineRow, EqualsExactArithmetic) {
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
    std::vector<Wide> sums;
    bool productsFit = true, sumsFit = true;
    for (size_t k = 1; k < rows[0].size(); ++k) {
      const Wide x = Wide{rows[0][k]} * fa, y = Wide{rows[1][k]} * fb;
      for (const Wide v : {x, y}) productsFit = productsFit && v >= kMin && v <= INT32_MAX;
      sumsFit = sumsFit && x + y >= kMin && x + y <= INT32_MAX;
      sums.push_back(x + y);
    }
    const OwnedMatrix m = MatrixOf(rows);
    testing::internal::CaptureStdout();
    const int32_t status = CombineRow(0, 1, 2, fa, fb, m.get());
    const std::string output = testing::internal::GetCapturedStdout();
    EXPECT_EQ(output.empty(), productsFit);
    if (productsFit && !sumsFit) {
      ++wrapped;
      EXPECT_EQ(status, 0);
      continue;
    }
    const std::optional<Row> expected = Reduced(sums);
    const bool zero = std::all_of(sums.begin(), sums.end(), [](Wide sum) { return sum == 0; });
    if (productsFit && zero) continue;
    EXPECT_EQ(status, expected ? 0 : 1);
    if (expected) {
      EXPECT_EQ(RowsOf(*m)[2], *expected);
    }
    if (!productsFit) ++(expected ? repaired : failed);
  }
  EXPECT_GT(repaired, 20);
  EXPECT_GT(failed, 20);
  EXPECT_GT(wrapped, 20);
}

TEST(CombineRow, SumsWrapSilentlyAndProductsAreTold) {
  const OwnedMatrix sum = MatrixOf({{1, 1 << 30, 3}, {1, 1 << 30, 0}, {0, 0, 0}});
  EXPECT_EQ(CombineRow(0, 1, 2, 1, 1, sum.get()), 0);
  EXPECT_EQ(RowsOf(*sum)[2], (Row{0, kMin, 3}));

  const OwnedMatrix product = MatrixOf({{1, 65536, 0}, {1, 0, 3}});
  testing::internal::CaptureStdout();
  EXPECT_EQ(CombineRow(0, 1, 0, 65536, 1, product.get()), 1);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "? Vector_Combine: multiplication overflow\nretrying with float\nX, Y 0 0\n"
            "? Vector_Combine: overflow, number too big\n");
}

TEST(CombineRow, RepeatsFromThePartlyUpdatedRowInPlace) {
  // Column 2 overflows after column 1 of the destination, a source too, has become 2 * 2 + 0.
  const OwnedMatrix m = MatrixOf({{0, 2, 1 << 30}, {0, 0, 0}});
  testing::internal::CaptureStdout();
  EXPECT_EQ(CombineRow(0, 1, 0, 2, 1, m.get()), 0);
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(RowsOf(*m)[0],
            (Row{0, 1, 1 << 28}));  // 8 and 2^31, where the row as it was would give 4 and 2^31
  const OwnedMatrix narrow = MatrixOf({{7}, {8}});
  EXPECT_EQ(CombineRow(0, 1, 0, 2, 3, narrow.get()), 0);
  EXPECT_EQ(RowsOf(*narrow)[0], (Row{0}));
}

TEST(CombineRowDeathTest, TheDivisionOfTheTestFaults) {
  const OwnedMatrix m = MatrixOf({{0, -1}, {0, 0}});
  EXPECT_EXIT(CombineRow(0, 1, 0, kMin, 1, m.get()), testing::KilledBySignal(SIGFPE), "");
}

}  // namespace
}  // namespace siphons
