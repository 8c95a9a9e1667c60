// Removal of inequalities that others imply.
#pragma once

#include "matrix/matrix.h"

namespace siphons {

/// Removes every row that is a positive integer multiple of an earlier surviving row of the same kind. Column
/// 0 is the kind of a row, the columns from 1 on are the coefficients of an inequality. A row without
/// coefficients removes nothing.
void ElimSimpleConstraints(Matrix** m);

}  // namespace siphons
