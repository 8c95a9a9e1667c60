#include "matrix/matrixOps.h"

#include <algorithm>

#include "base/arithmetic.h"

namespace siphons {

Matrix* SwapRows(uint32_t i, uint32_t j, Matrix* m) {
  std::swap_ranges(m->p[i], m->p[i] + m->NbColumns, m->p[j]);
  return m;
}

void RowExchange(Matrix* m, uint32_t i, uint32_t j, int32_t* scratch) {
  if (i == j) return;
  std::copy_n(m->p[i], m->NbColumns, scratch);
  CopyRow(m, j, i);
  std::copy_n(scratch, m->NbColumns, m->p[j]);
}

void CopyRow(Matrix* m, uint32_t source, uint32_t destination) {
  if (source != destination) std::copy_n(m->p[source], m->NbColumns, m->p[destination]);
}

void RowOr(uint32_t a, uint32_t b, uint32_t destination, Matrix* m) {
  for (uint32_t k = 0; k < m->NbColumns; ++k) m->p[destination][k] = m->p[a][k] | m->p[b][k];
}

Matrix* MultMat(const Matrix* a, const Matrix* b) {
  Matrix* product = BuildMat(a->NbRows, b->NbColumns);
  for (uint32_t i = 0; i < a->NbRows; ++i) {
    for (uint32_t j = 0; j < b->NbColumns; ++j) {
      int32_t sum = 0;
      for (uint32_t k = 0; k < a->NbColumns; ++k) sum = WrapAdd(sum, WrapMul(b->p[k][j], a->p[i][k]));
      product->p[i][j] = sum;
    }
  }
  return product;
}

Matrix* TransMat(const Matrix* a) {
  Matrix* transpose = BuildMat(a->NbColumns, a->NbRows);
  // Long rows may start at the same place of a page each, so what goes into one row is written a cache line
  // at a time.
  constexpr uint32_t kLine = 16;
  for (uint32_t first = 0; first < a->NbRows; first += kLine) {
    const uint32_t end = std::min(first + kLine, a->NbRows);
    for (uint32_t j = 0; j < a->NbColumns; ++j) {
      for (uint32_t i = first; i < end; ++i) transpose->p[j][i] = a->p[i][j];
    }
  }
  return transpose;
}

}  // namespace siphons
