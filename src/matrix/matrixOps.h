// Small operations on rows, columns and whole matrices. All arithmetic is 32-bit and wraps around. Operations
// that return a matrix leave their arguments as they are, and the caller owns the result.
#pragma once

#include <cstdint>

#include "matrix/matrix.h"

namespace siphons {

/// Exchanges the contents of rows i and j; returns m.
Matrix* SwapRows(uint32_t i, uint32_t j, Matrix* m);

/// Exchanges the contents of rows i and j through `scratch`, which holds at least NbColumns entries.
void RowExchange(Matrix* m, uint32_t i, uint32_t j, int32_t* scratch);

/// Copies row `source` over row `destination`.
void CopyRow(Matrix* m, uint32_t source, uint32_t destination);

/// Row `destination` = rows a and b united bit by bit; it may be one of them.
void RowOr(uint32_t a, uint32_t b, uint32_t destination, Matrix* m);

/// The product a b; a has as many columns as b has rows.
Matrix* MultMat(const Matrix* a, const Matrix* b);

/// The transpose.
Matrix* TransMat(const Matrix* a);

}  // namespace siphons
