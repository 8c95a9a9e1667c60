// Order of the rays. Between constraints the rays are grouped by the first constraint that they violate,
// since a pair combines at the violator's; inside a group those that saturate many constraints come first.
// Both orders use QuickSort on a (key, row) table, whose treatment of equal keys decides where rays end up
// and so the order of the report; the rays then follow the table.
#include "solver/ray_order.h"

#include <vector>

#include "matrix/matrixOps.h"
#include "matrix/matrixProcs.h"
#include "solver/bit_rows.h"
#include "solver/index.h"
#include "solver/sharedVars.h"

namespace siphons {

namespace {

constexpr uint32_t kKey = 0;
constexpr uint32_t kSourceRow = 1;

/// Moves the ray of row source[i] into row first + i, for all i, by exchanges. The sources are the rows from
/// `first` on in some order.
void MoveRays(uint32_t first, std::vector<uint32_t> source) {
  std::vector<uint32_t> target(source.size());  // where the ray that is now in row first + i belongs
  for (uint32_t i = 0; i < source.size(); ++i) target[source[i] - first] = i;
  for (uint32_t i = 0; i < source.size(); ++i) {
    const uint32_t from = source[i];
    if (from == first + i) continue;
    ExchangeRays(first + i, from);
    source[target[i]] = from;
    target[from - first] = target[i];
  }
}

std::vector<uint32_t> SourceColumn(const Matrix& table, uint32_t first, uint32_t end) {
  std::vector<uint32_t> source;
  source.reserve(end - first);
  for (uint32_t r = first; r < end; ++r) source.push_back(static_cast<uint32_t>(table.p[r][kSourceRow]));
  return source;
}

}  // namespace

void ExchangeRays(uint32_t r1, uint32_t r2) {
  RowExchange(Ray, r1, r2, raytemprow.data());
  RowExchange(Sat, r1, r2, sattemprow.data());
  IndexExchange(r1, r2);
}

void SortRaysMinF(uint32_t first, uint32_t end) {
  if (first >= end) return;
  for (uint32_t r = first; r < end; ++r) MinF->p[r][kSourceRow] = static_cast<int32_t>(r);
  QuickSort(MinF, first, end - 1, kKey, kSourceRow);
  MoveRays(first, SourceColumn(*MinF, first, end));
}

void SortGroupBySaturation(uint32_t first, uint32_t end) {
  const uint32_t rays = end - first;
  if (rays < 2) return;
  const OwnedMatrix table(BuildMat(rays, 2));
  for (uint32_t i = 0; i < rays; ++i) {
    const uint32_t* const bits = SatWords(first + i);
    uint32_t set = 0;
    for (uint32_t w = 0; w <= AdjWCount; ++w) set += 32 - ZeroBits(bits[w]);
    table->p[i][kKey] = static_cast<int32_t>(set);
    table->p[i][kSourceRow] = static_cast<int32_t>(first + i);
  }
  QuickSort(table.get(), 0, rays - 1, kKey, kSourceRow);
  MoveRays(first, SourceColumn(*table, 0, rays));
}

void BuildBorder(uint32_t first) {
  Border.assign(static_cast<size_t>(maxMinF) + 1, kNoRow);
  for (uint32_t r = first; r < NbRay; ++r) {
    const int32_t value = MinF->p[r][0];
    if (r == first || value != MinF->p[r - 1][0]) Border[static_cast<uint32_t>(value)] = r;
  }
}

int32_t GetBorder(int32_t m) {
  for (int32_t i = m + 1; i <= maxMinF; ++i) {
    const uint32_t row = Border[static_cast<uint32_t>(i)];
    if (row != kNoRow) return static_cast<int32_t>(row);
  }
  return -1;
}

}  // namespace siphons
