// What stands here is part of the modules matrix, matrixOps and matrixProcs, complete and tested, but no run
// needs it.
#include "matrix/uncalled.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "base/arithmetic.h"
#include "matrix/replace_rows.h"

namespace siphons {

Matrix* IdentityMat(uint32_t n) {
  Matrix* m = ZeroMatrix(n, n);
  for (uint32_t i = 0; i < n; ++i) m->p[i][i] = 1;
  return m;
}

int32_t SIZEOFMATI(const Matrix* m) {
  if (m == nullptr) {
    std::puts("size of matrix: NULL-pointer???");
    return 0;
  }
  const int64_t row = 4 * int64_t{m->NbColumns} + 8;
  const int32_t size = WrapAdd(WrapMul(WrapToInt32(row), WrapToInt32(m->NbRows)), 16);
  std::printf("size of matrix: %i bytes\n", size);
  return size;
}

Matrix* SwapCols(uint32_t i, uint32_t j, Matrix* m) {
  for (uint32_t r = 0; r < m->NbRows; ++r) std::swap(m->p[r][i], m->p[r][j]);
  return m;
}

Matrix* AddMultCol(uint32_t source, uint32_t destination, int32_t factor, const Matrix* m) {
  Matrix* result = CopyMat(m);
  for (uint32_t r = 0; r < result->NbRows; ++r) {
    int32_t* row = result->p[r];
    row[destination] = WrapAdd(row[destination], WrapMul(row[source], factor));
  }
  return result;
}

Matrix* ScalarCol(uint32_t column, int32_t factor, const Matrix* m) {
  Matrix* result = CopyMat(m);
  for (uint32_t r = 0; r < result->NbRows; ++r) {
    result->p[r][column] = WrapMul(result->p[r][column], factor);
  }
  return result;
}

uint32_t RowSeek(const Matrix* m, uint32_t lastColumn, uint32_t first) {
  for (uint32_t r = first; r < m->NbRows; ++r) {
    const int32_t* row = m->p[r];
    if (std::any_of(row, row + lastColumn + 1, [](int32_t entry) { return entry != 0; })) return r;
  }
  return std::max(first, m->NbRows);
}

int32_t ISIN(uint32_t row, const Matrix* m, const Matrix* n) {
  if (m->NbColumns != n->NbColumns) return -1;
  for (uint32_t i = 0; i < n->NbRows; ++i) {
    if (std::equal(n->p[i], n->p[i] + n->NbColumns, m->p[row])) return static_cast<int32_t>(i);
  }
  return -1;
}

void RemoveZeroRows(Matrix** m) {
  const Matrix& rows = **m;
  RowNumbers survivors;
  for (uint32_t r = 0; r < rows.NbRows; ++r) {
    const int32_t* row = rows.p[r];
    if (std::any_of(row, row + rows.NbColumns, [](int32_t entry) { return entry != 0; }))
      survivors.push_back(r);
  }
  ReplaceByRows(m, survivors);
}

int32_t LexSmaller(const Matrix* m, int32_t i, int32_t j) {
  const int32_t* const a = m->p[i];
  const int32_t* const b = m->p[j];
  return std::lexicographical_compare(a + 1, a + m->NbColumns, b + 1, b + m->NbColumns) ? 1 : 0;
}

void _SortRows(Matrix* m) {
  struct Keyed {
    int32_t* row;
    uint32_t zeros;
    uint64_t columnSum;
  };
  std::vector<Keyed> rows;
  rows.reserve(m->NbRows);
  for (uint32_t r = 0; r < m->NbRows; ++r) {
    Keyed keyed{m->p[r], 0, 0};
    for (uint32_t c = 0; c < m->NbColumns; ++c) {
      if (m->p[r][c] == 0) {
        ++keyed.zeros;
      } else {
        keyed.columnSum += c;
      }
    }
    rows.push_back(keyed);
  }
  const auto pairs = std::count_if(rows.begin(), rows.end(),
                                   [&](const Keyed& keyed) { return m->NbColumns - keyed.zeros == 2; });
  std::stable_sort(rows.begin(), rows.end(),
                   [](const Keyed& a, const Keyed& b) { return a.zeros > b.zeros; });
  if (pairs > 1) {
    // One row short of the pairs on purpose.
    std::stable_sort(rows.begin(), rows.begin() + (pairs - 1),
                     [](const Keyed& a, const Keyed& b) { return a.columnSum < b.columnSum; });
  }
  std::transform(rows.begin(), rows.end(), m->p, [](const Keyed& keyed) { return keyed.row; });
}

}  // namespace siphons
