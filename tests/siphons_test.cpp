// Odd nets and odd cones, by hand. solver_test.cpp holds the solver against the reference, fuzz/solver.cpp
// siphons against brute force.
#include "siphons/siphons.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "matrix/matrixOps.h"
#include "solver/inequalities.h"
#include "tests/brute_force.h"
#include "tests/messages.h"
#include "tests/rows.h"

namespace siphons {
namespace {

struct Result {
  uint32_t count;
  std::vector<PlaceSet> sets;
  std::vector<int32_t> tokens;
};

Result Compute(const Rows& O, const Rows& I, const Row& marking) {
  Rows column;
  for (const int32_t tokens : marking) column.push_back({tokens});
  const OwnedMatrix M0 = MatrixOf(column), o = MatrixOf(O), i = MatrixOf(I);
  Result result{Siphons(M0.get(), o.get(), o.get(), i.get()), {}, {}};
  for (uint32_t r = 0; r < Siphon->NbRows; ++r) {
    PlaceSet set = 0;
    for (uint32_t p = 0; p < Siphon->NbColumns; ++p) set |= static_cast<PlaceSet>(Siphon->p[r][p]) << p;
    result.sets.push_back(set);
    result.tokens.push_back(SiphonMarking->p[r][0]);
  }
  return result;
}

TEST(Siphons, OddNets) {
  const Rows forth{{0, 1}, {1, 0}}, back{{1, 0}, {0, 1}};
  EXPECT_EQ(Compute(forth, back, {1, 1}).count, 0u) << "one cycle has one ray: reported as none";
  const Result two = Compute({{0, 1, 0, 0}, {1, 0, 0, 0}, {0, 0, 0, 1}, {0, 0, 1, 0}},
                             {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}, {1, 2, 4, 8});
  EXPECT_EQ(two.sets, (std::vector<PlaceSet>{12, 3}));
  EXPECT_EQ(Compute({{1, 1}}, {{0, 0}}, {1, 1}).count, 0u) << "a source fills every place";

  const OwnedMatrix noPlaces(ZeroMatrix(2, 0)), noTransitions(ZeroMatrix(0, 2)), M0(ZeroMatrix(2, 1));
  const Matrix* const before = Siphon;
  EXPECT_EQ(Siphons(M0.get(), noPlaces.get(), noPlaces.get(), noPlaces.get()), 0u);
  EXPECT_EQ(Siphons(M0.get(), noTransitions.get(), noTransitions.get(), noTransitions.get()), 1u);
  EXPECT_EQ(Siphon, before);
}

/// Solves c x >= 0 for the rows of coefficients; every row's last is that of the homogenising coordinate.
std::optional<Rows> Rays(const Rows& coefficients) {
  Rows rows = coefficients;
  for (Row& row : rows) row.insert(row.begin(), 1);
  const OwnedMatrix system = MatrixOf(rows);
  Matrix* out = nullptr;
  SolveInequationSystem(&out, system.get(), 1000);
  const OwnedMatrix columns(out);
  if (out == nullptr) return std::nullopt;
  return out->NbColumns == 0 ? Rows{} : RowsOf(*OwnedMatrix(TransMat(out)));
}

TEST(Solver, FindsRaysOfCones) {
  EXPECT_EQ(Rays({{1, 0, 0}, {0, 1, 0}}), (Rows{{0, 1}, {1, 0}}));
  // A cone over a square: four rays, two constraints more than the basis needs.
  const Rows square = *Rays({{1, 0, 1, 0}, {-1, 0, 1, 0}, {0, 1, 1, 0}, {0, -1, 1, 0}});
  EXPECT_EQ(std::set<Row>(square.begin(), square.end()),
            (std::set<Row>{{1, 1, 1}, {1, -1, 1}, {-1, 1, 1}, {-1, -1, 1}}));
  EXPECT_EQ(Rays({{1, 0, 0}, {0, 1, 0}, {-1, -1, 0}}), Rows{}) << "empty after the last constraint";
}

TEST(Solver, TellsWhatItCannotDo) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(Rays({{1, 0, 0}, {0, 1, 0}, {-1, -1, 0}, {1, 1, 0}}), std::nullopt)
      << "empty before the last constraint";
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Error!an error occured\n");
  testing::internal::CaptureStdout();
  EXPECT_TRUE(Rays({{1, 0, 0}}).has_value());
  ExpectRowsOfThisTest({{testing::internal::GetCapturedStdout(), "", 0}});
}

}  // namespace
}  // namespace siphons
