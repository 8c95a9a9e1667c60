// Operations that belong to the matrix modules and that no run of the program calls. Arithmetic is 32-bit and
// wraps around. Operations that return a new matrix leave their arguments as they are, and the caller owns
// the result.
#pragma once

#include <cstdint>

#include "matrix/matrix.h"

namespace siphons {

/// New n x n matrix with 1 on the diagonal, n at least 1. The caller owns it.
Matrix* IdentityMat(uint32_t n);

/// Prints and returns the bytes that the matrix occupies by the formula (4 columns + 8) rows + 16; 0 for
/// null.
int32_t SIZEOFMATI(const Matrix* m);

/// Exchanges columns i and j in every row; returns m.
Matrix* SwapCols(uint32_t i, uint32_t j, Matrix* m);

/// Copy of m in which column `destination` has `factor` times column `source` added.
Matrix* AddMultCol(uint32_t source, uint32_t destination, int32_t factor, const Matrix* m);

/// Copy of m with one column multiplied by `factor`.
Matrix* ScalarCol(uint32_t column, int32_t factor, const Matrix* m);

/// First row from `first` on with a nonzero entry in columns 0 to `lastColumn`; NbRows when there is none,
/// and `first` itself when that is no row of m.
uint32_t RowSeek(const Matrix* m, uint32_t lastColumn, uint32_t first);

/// First row of n that equals row `row` of m, or -1; -1 too when the widths differ.
int32_t ISIN(uint32_t row, const Matrix* m, const Matrix* n);

/// Removes every row of zeros; the matrix is replaced as by the eliminations of matrixProcs.h.
void RemoveZeroRows(Matrix** m);

/// 1 when row i comes before row j in the lexicographic order of the columns from 1 on, else 0. At least one
/// column.
int32_t LexSmaller(const Matrix* m, int32_t i, int32_t j);

/// Orders the rows by descending number of zeros. With t rows that have exactly two nonzero entries, the
/// first t - 1 rows, whichever they are, are then ordered by the sum of their nonzero entries' column
/// numbers.
void _SortRows(Matrix* m);

}  // namespace siphons
