// Orders of rows.
#pragma once

#include <cstdint>

#include "matrix/matrix.h"

namespace siphons {

/// Orders the rows by column 0, and lexicographically by the columns from 1 on where column 0 is equal.
void SortRows(Matrix* m);

/// Orders rows `first` to `last` (inclusive; nothing when first >= last) by column `key`, ascending. Only the
/// entries of columns `key` and `payload` move; the other columns stay in their rows. The sort is not stable,
/// and the order in which it leaves equal keys is part of what it promises.
void QuickSort(Matrix* m, uint32_t first, uint32_t last, uint32_t key, uint32_t payload);

/// One step of QuickSort on rows first < last: afterwards no key of the rows up to the returned one is
/// greater than a key of the rows behind it. The returned row is below `last`.
uint32_t Partition(Matrix* m, uint32_t first, uint32_t last, uint32_t key, uint32_t payload);

}  // namespace siphons
