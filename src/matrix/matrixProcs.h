// Procedures on the rows of a matrix as a whole: those that remove rows (equal_rows.cpp, minimal_rows.cpp,
// row_elimination.cpp) and those that order them (row_sorting.cpp).
#pragma once

#include <cstdint>

#include "matrix/matrix.h"

namespace siphons {

// Each elimination takes the address of the caller's matrix and replaces it by a new one that holds the
// surviving rows in their order; the old matrix is released, also when nothing was removed.

/// Removes every row that equals an earlier one.
void ElimEqualRows(Matrix** m);

/// Removes every row that is a positive integer multiple of an earlier surviving row of the same kind. Column
/// 0 is the kind of a row, the columns from 1 on are the coefficients of an inequality.
void ElimSimpleConstraints(Matrix** m);

/// Removes every row whose support (its columns with a nonzero entry) contains the support of another row.
/// Rows of one support therefore remove each other, and a row of zeros removes all others.
void ElimNonMinimal(Matrix** m);

/// Removes every row of zeros.
void RemoveZeroRows(Matrix** m);

/// Orders the rows by column 0, and lexicographically by the columns from 1 on where column 0 is equal.
void SortRows(Matrix* m);

/// Orders rows `first` to `last` (inclusive; nothing when first >= last) by column `key`, ascending. Only the
/// entries of columns `key` and `payload` move; the other columns stay in their rows. The sort is not stable,
/// and the order in which it leaves equal keys is part of what it promises.
void QuickSort(Matrix* m, uint32_t first, uint32_t last, uint32_t key, uint32_t payload);

/// One step of QuickSort on rows first < last: afterwards no key of the rows up to the returned one is
/// greater than a key of the rows behind it. The returned row is below `last`.
uint32_t Partition(Matrix* m, uint32_t first, uint32_t last, uint32_t key, uint32_t payload);

/// 1 when row i comes before row j in the lexicographic order of the columns from 1 on, else 0. At least one
/// column.
int32_t LexSmaller(const Matrix* m, int32_t i, int32_t j);

/// Orders the rows by descending number of zeros. With t rows that have exactly two nonzero entries, the
/// first t - 1 rows, whichever they are, are then ordered by the sum of their nonzero entries' column
/// numbers.
void _SortRows(Matrix* m);

}  // namespace siphons
