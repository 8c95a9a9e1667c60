// Matrices written as lists of rows, for the tests.
#pragma once

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include "matrix/matrix.h"

namespace siphons {

using Row = std::vector<int32_t>;
using Rows = std::vector<Row>;

/// `columns` is only needed for a matrix without rows.
inline OwnedMatrix MatrixOf(const Rows& rows, uint32_t columns = 0) {
  if (!rows.empty()) columns = static_cast<uint32_t>(rows[0].size());
  OwnedMatrix m(BuildMat(static_cast<uint32_t>(rows.size()), columns));
  for (size_t r = 0; r < rows.size(); ++r) std::copy(rows[r].begin(), rows[r].end(), m->p[r]);
  return m;
}

inline Rows RowsOf(const Matrix& m) {
  Rows rows;
  for (uint32_t r = 0; r < m.NbRows; ++r) rows.emplace_back(m.p[r], m.p[r] + m.NbColumns);
  return rows;
}

/// A random number below n, n at least 1.
inline uint32_t Below(std::mt19937& random, uint32_t n) {
  return static_cast<uint32_t>(random() % n);
}

/// Random entries from `low` to `high`.
inline Rows RandomRows(std::mt19937& random, size_t rows, size_t columns, int32_t low, int32_t high) {
  std::uniform_int_distribution<int32_t> entry(low, high);
  Rows result(rows, Row(columns));
  for (Row& row : result) std::generate(row.begin(), row.end(), [&] { return entry(random); });
  return result;
}

}  // namespace siphons
