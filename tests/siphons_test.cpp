// Odd nets and solves, by hand. solver_test.cpp holds the solver against the reference.
#include "siphons/siphons.h"

#include <gtest/gtest.h>

#include <utility>

#include "solver/inequalities.h"
#include "tests/messages.h"
#include "tests/rows.h"

namespace siphons {
namespace {

// Nets with places and transitions are for golden/ and fuzz/solver.cpp to show.
TEST(Siphons, NetsWithoutPlacesOrTransitions) {
  const OwnedMatrix noPlaces(ZeroMatrix(2, 0)), noTransitions(ZeroMatrix(0, 2)), M0(ZeroMatrix(2, 1));
  const Matrix* const before = Siphon;
  EXPECT_EQ(Siphons(M0.get(), noPlaces.get(), noPlaces.get(), noPlaces.get()), 0u);
  EXPECT_EQ(Siphons(M0.get(), noTransitions.get(), noTransitions.get(), noTransitions.get()), 1u);
  EXPECT_EQ(Siphon, before);
}

/// What a solve of c x >= 0 for these rows prints; whether it gave rays.
std::pair<std::string, bool> Solved(const Rows& rows) {
  const OwnedMatrix system = MatrixOf(rows);
  Matrix* out = nullptr;
  testing::internal::CaptureStdout();
  SolveInequationSystem(&out, system.get(), 1000);
  const OwnedMatrix columns(out);
  return {testing::internal::GetCapturedStdout(), out != nullptr};
}

TEST(Solver, TellsWhatItCannotDo) {
  const auto [empty, hasRays] = Solved({{1, 1, 0, 0}, {1, 0, 1, 0}, {1, -1, -1, 0}, {1, 1, 1, 0}});
  EXPECT_FALSE(hasRays) << "empty before the last constraint";
  EXPECT_EQ(empty, "Error!an error occured\n");
  const auto [withLines, hasSome] = Solved({{1, 1, 0, 0}});
  EXPECT_TRUE(hasSome);
  ExpectRowsOfThisTest({{withLines, "", 0}});
}

}  // namespace
}  // namespace siphons
