// Access to single elements of sparse matrices and to single sets of a definition info file. Neither program
// calls these operations: they complete the module for other analyses that are built on it.
#pragma once

#include <cstdint>
#include <istream>

#include "structure/struct_vars.h"

namespace siphons {

/// The first value at (row, column), or 0.
int32_t sp_access(sp_matrix m, int32_t row, int32_t column);

/// Sets every element at (row, column) to the value; inserts none.
void sp_input(sp_matrix m, int32_t row, int32_t column, int32_t value);

/// Reads one place set (label, count, place numbers) into a new table of no_places flags, which the caller
/// owns.
void deter_in(std::istream& stream, int32_t** set);

}  // namespace siphons
