// Removal of rows whose support is not minimal.
#pragma once

#include "matrix/matrix.h"

namespace siphons {

/// Removes every row whose support (its columns with a nonzero entry) contains the support of another row.
/// Rows of one support therefore remove each other, and a row of zeros removes all others. A matrix of a
/// single row loses that row, too.
void ElimNonMinimal(Matrix** m);

}  // namespace siphons
