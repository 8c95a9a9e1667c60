// Life of a matrix: rows are blocks of their own, so growing costs the new rows and truncating the dropped
// ones. The solver grows its tables a thousand rows at a time on this account. The array of row pointers has
// slots to spare, half as many again whenever it is full, so that a table of millions of rows is not copied
// thousands of times.
#include "matrix/matrix.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "base/out_of_memory.h"

namespace siphons {

namespace {

/// Space for `count` entries, or null. An empty block is a block too: null only ever means that memory ran
/// out.
template <typename T>
T* TryBlock(uint32_t count) {
  return static_cast<T*>(std::malloc(std::max<size_t>(1, size_t{count} * sizeof(T))));
}

template <typename T>
T* Block(uint32_t count) {
  T* block = TryBlock<T>(count);
  if (block == nullptr) OutOfMemory(uint64_t{count} * sizeof(T));
  return block;
}

/// Rows first to end - 1 of `rows`; false when memory ran out, and then none of them exists.
bool TryRows(int32_t** rows, uint32_t first, uint32_t end, uint32_t columns) {
  for (uint32_t r = first; r < end; ++r) {
    rows[r] = TryBlock<int32_t>(columns);
    if (rows[r] == nullptr) {
      std::for_each(rows + first, rows + r, std::free);
      return false;
    }
  }
  return true;
}

/// Makes room for the pointers of `rows` rows; false when memory ran out.
bool HaveSlots(Matrix* m, uint32_t rows) {
  if (rows <= m->slots) return true;
  const uint32_t slots = std::max(rows, m->slots + m->slots / 2);
  int32_t** const grown = TryBlock<int32_t*>(slots);
  if (grown == nullptr) return false;
  std::copy_n(m->p, m->NbRows, grown);
  std::free(m->p);
  m->p = grown;
  m->slots = slots;
  return true;
}

}  // namespace

Matrix* BuildMat(uint32_t rows, uint32_t columns) {
  Matrix* m = Block<Matrix>(1);
  *m = {rows, columns, Block<int32_t*>(rows), rows};
  if (!TryRows(m->p, 0, rows, columns)) OutOfMemory(uint64_t{columns} * sizeof(int32_t));
  return m;
}

Matrix* ZeroMatrix(uint32_t rows, uint32_t columns) {
  Matrix* m = BuildMat(rows, columns);
  for (uint32_t r = 0; r < rows; ++r) std::fill_n(m->p[r], columns, 0);
  return m;
}

int32_t ResizeRows(Matrix** m, int32_t extra) {
  Matrix* const matrix = *m;
  const uint32_t rows = matrix->NbRows + static_cast<uint32_t>(extra);
  if (!HaveSlots(matrix, rows) || !TryRows(matrix->p, matrix->NbRows, rows, matrix->NbColumns)) {
    std::puts("RESIZEROWS: no more memory available!");
    return 2;
  }
  matrix->NbRows = rows;
  return 0;
}

void FreeMat(Matrix* m) {
  if (m == nullptr) return;
  std::for_each(m->p, m->p + m->NbRows, std::free);
  std::free(m->p);
  std::free(m);
}

void PartFreeMat(Matrix** m, uint32_t keep) {
  Matrix* const matrix = *m;
  if (matrix == nullptr) return;
  for (uint32_t r = keep; r < matrix->NbRows; ++r) std::free(matrix->p[r]);
  matrix->NbRows = keep;
}

Matrix* CopyMat(const Matrix* m) {
  Matrix* copy = BuildMat(m->NbRows, m->NbColumns);
  for (uint32_t r = 0; r < m->NbRows; ++r) std::copy_n(m->p[r], m->NbColumns, copy->p[r]);
  return copy;
}

}  // namespace siphons
