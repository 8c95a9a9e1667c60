// The dense matrix of signed 32-bit integers that carries the net's incidence matrices, the inequality
// system, the solver's rays, bit rows and index tables, and the siphons.
//
// A matrix is handled through a pointer and owns its row-pointer array and every row. Rows can be added and
// dropped at the end without moving the others, and no row belongs to two matrices; a row pointer never
// changes while its row exists. Rows and columns are numbered from 0; no operation checks an index or a
// shape. Memory that cannot be had ends the process (out_of_memory.h), except in ResizeRows.
#pragma once

#include <cstdint>
#include <memory>

namespace siphons {

/// Rows that were made together.
struct RowBlock {
  RowBlock* previous;  ///< the block of the rows before these, or null
  int32_t* entries;    ///< row after row, behind this record
  uint32_t first;      ///< the first row
  uint32_t end;        ///< behind the last row; in the last block, rows from NbRows on are free
};

struct Matrix {
  uint32_t NbRows;     ///< below 2^31
  uint32_t NbColumns;  ///< length of every row
  int32_t** p;         ///< p[r] is row r; slots from NbRows on are stale
  uint32_t slots;      ///< of p, at least NbRows
  RowBlock* blocks;    ///< the last one
};

/// New matrix, entries not initialised. The caller owns it.
Matrix* BuildMat(uint32_t rows, uint32_t columns);

/// New matrix, every entry 0. The caller owns it.
Matrix* ZeroMatrix(uint32_t rows, uint32_t columns);

/// Adds `extra` rows (not negative, entries not initialised) at the end; the record and the existing rows
/// stay where they are. Returns 0, or 2 after "RESIZEROWS: no more memory available!" on standard output, the
/// matrix unchanged.
int32_t ResizeRows(Matrix** m, int32_t extra);

/// Releases the matrix; null is ignored.
void FreeMat(Matrix* m);

/// Keeps the first `keep` rows and releases the rest; `keep` is at most NbRows. A null matrix is ignored.
void PartFreeMat(Matrix** m, uint32_t keep);

/// New matrix with the same entries. The caller owns it.
Matrix* CopyMat(const Matrix* m);

struct MatrixDeleter {
  void operator()(Matrix* m) const { FreeMat(m); }
};

/// A matrix that one function holds for itself.
using OwnedMatrix = std::unique_ptr<Matrix, MatrixDeleter>;

}  // namespace siphons
