// Small operations on rows, columns and whole matrices. All arithmetic is 32-bit and wraps around. Operations
// that return a matrix leave their arguments as they are, and the caller owns the result.
#pragma once

#include <cstdint>

#include "matrix/matrix.h"

namespace siphons {

/// Exchanges columns i and j in every row; returns m.
Matrix* SwapCols(uint32_t i, uint32_t j, Matrix* m);

/// Exchanges the row pointers i and j; returns m.
Matrix* SwapRows(uint32_t i, uint32_t j, Matrix* m);

/// Exchanges the contents of rows i and j through `scratch`, which holds at least NbColumns entries.
void RowExchange(Matrix* m, uint32_t i, uint32_t j, int32_t* scratch);

/// Copies row `source` over row `destination`.
void CopyRow(Matrix* m, uint32_t source, uint32_t destination);

/// Copy of m in which column `destination` has `factor` times column `source` added.
Matrix* AddMultCol(uint32_t source, uint32_t destination, int32_t factor, const Matrix* m);

/// Row `destination` = rows a and b united bit by bit; it may be one of them.
void RowOr(uint32_t a, uint32_t b, uint32_t destination, Matrix* m);

/// Copy of m with one column multiplied by `factor`.
Matrix* ScalarCol(uint32_t column, int32_t factor, const Matrix* m);

/// First row from `first` on with a nonzero entry in columns 0 to `lastColumn`; NbRows when there is none,
/// and `first` itself when that is no row of m.
uint32_t RowSeek(const Matrix* m, uint32_t lastColumn, uint32_t first);

/// The product a b; a has as many columns as b has rows.
Matrix* MultMat(const Matrix* a, const Matrix* b);

/// The transpose.
Matrix* TransMat(const Matrix* a);

/// First row of n that equals row `row` of m, or -1; -1 too when the widths differ.
int32_t ISIN(uint32_t row, const Matrix* m, const Matrix* n);

}  // namespace siphons
