// Life of a matrix. Rows that are made together stand one behind the other in one block of memory: the solver
// grows its tables a thousand rows at a time, to millions, and most rows have one to four entries, so that a
// block for each would be mostly the allocator's own, and take more time to get and to release than to fill.
// Truncating releases the blocks that hold dropped rows only, and growing begins with the rows that were
// dropped from the last block left. The array of row pointers has slots to spare, half as many again
// whenever it is full, so that a table of millions of rows is not copied thousands of times.
#include "matrix/matrix.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "base/out_of_memory.h"

namespace siphons {

namespace {

#ifdef NDEBUG
constexpr uint32_t kRowsPerBlock = 1000;  // larger blocks find no place in memory that was released in pieces
#else
constexpr uint32_t kRowsPerBlock = 1;  // the address sanitizer then sees a step beyond a row
#endif

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

/// Lets the pointers of rows first to end - 1 point into the block, of which the rows are a part.
void PointInto(const RowBlock& block, uint32_t first, uint32_t end, const Matrix& m) {
  int32_t* row = block.entries + size_t{first - block.first} * m.NbColumns;
  for (uint32_t r = first; r < end; ++r, row += m.NbColumns) m.p[r] = row;
}

/// Releases the blocks whose rows are all at or behind `keep`.
void ReleaseBlocks(Matrix* m, uint32_t keep) {
  while (m->blocks != nullptr && m->blocks->first >= keep) {
    RowBlock* const dropped = m->blocks;
    m->blocks = dropped->previous;
    std::free(dropped);
  }
}

/// Adds rows up to end - 1, for which there are slots; false when memory ran out, and then none is added.
bool TryRows(Matrix* m, uint32_t end) {
  const uint32_t kept = m->NbRows;
  if (m->blocks != nullptr) PointInto(*m->blocks, kept, std::min(end, m->blocks->end), *m);
  for (uint32_t first = m->blocks == nullptr ? 0 : m->blocks->end; first < end; first += kRowsPerBlock) {
    const uint32_t rows = std::min(end - first, kRowsPerBlock);
    const size_t entries = size_t{rows} * m->NbColumns;
    auto* const block = static_cast<RowBlock*>(std::malloc(sizeof(RowBlock) + entries * sizeof(int32_t)));
    if (block == nullptr) {
      ReleaseBlocks(m, kept);
      return false;
    }
    *block = {m->blocks, reinterpret_cast<int32_t*>(block + 1), first, first + rows};
    PointInto(*block, first, block->end, *m);
    m->blocks = block;
  }
  m->NbRows = end;
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
  *m = {0, columns, Block<int32_t*>(rows), rows, nullptr};
  if (!TryRows(m, rows)) OutOfMemory(uint64_t{rows} * columns * sizeof(int32_t));
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
  if (!HaveSlots(matrix, rows) || !TryRows(matrix, rows)) {
    std::puts("RESIZEROWS: no more memory available!");
    return 2;
  }
  return 0;
}

void FreeMat(Matrix* m) {
  if (m == nullptr) return;
  PartFreeMat(&m, 0);
  std::free(m->p);
  std::free(m);
}

void PartFreeMat(Matrix** m, uint32_t keep) {
  Matrix* const matrix = *m;
  if (matrix == nullptr) return;
  ReleaseBlocks(matrix, keep);
  matrix->NbRows = keep;
}

Matrix* CopyMat(const Matrix* m) {
  Matrix* copy = BuildMat(m->NbRows, m->NbColumns);
  for (uint32_t r = 0; r < m->NbRows; ++r) std::copy_n(m->p[r], m->NbColumns, copy->p[r]);
  return copy;
}

}  // namespace siphons
