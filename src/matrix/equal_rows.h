// Removal of equal rows.
#pragma once

#include "matrix/matrix.h"

namespace siphons {

/// Removes every row that equals an earlier one.
void ElimEqualRows(Matrix** m);

}  // namespace siphons
