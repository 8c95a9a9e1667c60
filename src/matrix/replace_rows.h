// What the elimination procedures share: replacing a matrix by some of its rows.
#pragma once

#include <cstdint>
#include <vector>

#include "matrix/matrix.h"

namespace siphons {

using RowNumbers = std::vector<uint32_t>;

/// Replaces *m by the matrix of its rows `survivors`, given in ascending order; the old matrix is released.
void ReplaceByRows(Matrix** m, const RowNumbers& survivors);

}  // namespace siphons
