// Sparse matrices of one row per transition and one column per place (sp_entry in struct_vars.h): insertion,
// combination element by element, and the dense form. Elements are owned by their rows
// and never released.
#pragma once

#include <cstdint>
#include <span>

#include "matrix/matrix.h"
#include "structure/struct_vars.h"

namespace siphons {

/// Combines an element of each row into `out` (value, mark and md_func); one of the two may be null. Returns
/// the new value.
using sp_function = int32_t (*)(const sp_entry* a, const sp_entry* b, sp_entry* out);

/// New matrix whose row r combines rows r of a and b.
sp_matrix sparse_function(sp_matrix a, sp_matrix b, int32_t rows, sp_function f);

/// New row: f over the merged columns of both rows, without elements that have neither value nor identifiers.
sp_entry* sparse_function_row(const sp_entry* a, const sp_entry* b, sp_function f);

/// a - b, with the identifiers of both kept apart. Both must be arc rows: an element that is itself a
/// difference ends the process with status 1 after "Error in minus.\n" on standard output.
int32_t minus(const sp_entry* a, const sp_entry* b, sp_entry* out);

/// Inserts an element into a row in ascending order of index: behind the head when that has the same index,
/// before other elements of the same index.
void sp_insert(sp_entry** row, sp_entry* element);

/// sp_insert of one element after the other, in time k log k for k elements in all.
void sp_insert_all(sp_entry** row, std::span<sp_entry* const> elements);

/// New dense matrix of no_trans rows and no_places columns; the first element of a column counts. The caller
/// owns it.
Matrix* conv_matrix(sp_matrix m);

}  // namespace siphons
