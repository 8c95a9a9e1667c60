// The numbers of docs/tour.md: its system has the rays that it shows, and they give the report.
#include <gtest/gtest.h>

#include <numeric>

#include "matrix/matrixOps.h"
#include "matrix/matrixProcs.h"
#include "solver/inequalities.h"
#include "tests/files.h"
#include "tests/rows.h"

namespace siphons {
namespace {

/// The blocks of a document that are rows of numbers, each row perhaps with a name behind it.
std::vector<Rows> NumberBlocks(const std::string& document) {
  std::vector<Rows> blocks;
  bool inside = false;
  for (const std::string& line : Split(document)) {
    if (line.starts_with("```")) inside = line == "```text";
    if (line == "```text") blocks.emplace_back();
    Row row;
    std::istringstream numbers(line);
    for (int32_t number; inside && numbers >> number;) row.push_back(number);
    if (row.size() >= 8) blocks.back().push_back(row);
  }
  std::erase_if(blocks, [](const Rows& rows) { return rows.empty(); });
  return blocks;
}

TEST(Tour, ShowsTheSystemAndItsRays) {
  const std::vector<Rows> blocks = NumberBlocks(ReadFile(TOUR_FILE).value());
  ASSERT_EQ(blocks.size(), 4u);
  const Rows &system = blocks[0], &start = blocks[1], &first = blocks[2], &support = blocks[3];
  ASSERT_EQ(system.size(), 14u);
  ASSERT_EQ(start.size(), 8u);
  for (const Row& ray : start) {
    size_t saturated = 0;
    for (size_t k = 0; k < start.size(); ++k) {
      const int32_t value = std::inner_product(system[k].begin() + 1, system[k].begin() + 9, ray.begin(), 0);
      EXPECT_GE(value, 0);
      saturated += value == 0 ? 1 : 0;
    }
    EXPECT_EQ(saturated, start.size() - 1);
  }
  const OwnedMatrix constraints = MatrixOf(system);
  Matrix* solution = nullptr;
  ASSERT_EQ(SolveInequationSystem(&solution, constraints.get(), 1000), 34u);
  Matrix* rays = TransMat(solution);
  FreeMat(solution);
  EXPECT_EQ(RowsOf(*constraints), system) << "the basis comes first already";
  const Rows all = RowsOf(*rays);
  EXPECT_TRUE(std::equal(first.begin(), first.end(), all.begin()));
  for (uint32_t r = 0; r < rays->NbRows; ++r) {
    for (uint32_t p = 0; p < rays->NbColumns; ++p) rays->p[r][p] = rays->p[r][p] != 0 ? 1 : 0;
  }
  ElimEqualRows(&rays);
  EXPECT_EQ(rays->NbRows, 15u);
  ElimNonMinimal(&rays);
  EXPECT_EQ(RowsOf(*rays), (Rows{support[0],
                                 {1, 0, 0, 1, 0, 0, 0, 1},
                                 {0, 0, 0, 0, 0, 1, 1, 1},
                                 {0, 1, 0, 0, 1, 0, 1, 0},
                                 {0, 0, 1, 1, 1, 0, 0, 0}}));
  FreeMat(rays);
}

}  // namespace
}  // namespace siphons
