// Removal of multiples by comparing pairs. That is quadratic in the rows, which are those of one inequality
// system.
#include "matrix/row_elimination.h"

#include <vector>

#include "base/arithmetic.h"
#include "matrix/replace_rows.h"

namespace siphons {

namespace {

/// The first column from 1 on with a nonzero entry, or `columns`.
uint32_t LeadingColumn(const int32_t* row, uint32_t columns) {
  uint32_t c = 1;
  while (c < columns && row[c] == 0) ++c;
  return c;
}

/// Whether a row is q times `base` in the columns from 1 on, for some integer q >= 1, and of the same kind;
/// `leading` is the leading column of the base.
bool IsMultiple(const int32_t* row, const int32_t* base, uint32_t leading, uint32_t columns) {
  if (leading >= columns || row[0] != base[0] || row[leading] == 0) return false;
  if (TruncRem(row[leading], base[leading]) != 0) return false;
  const int32_t q = TruncDiv(row[leading], base[leading]);
  if (q < 0) return false;
  for (uint32_t k = 1; k < columns; ++k) {
    if (row[k] != WrapMul(q, base[k])) return false;
  }
  return true;
}

}  // namespace

void ElimSimpleConstraints(Matrix** m) {
  const Matrix& rows = **m;
  RowNumbers survivors;
  std::vector<bool> removed(rows.NbRows);
  for (uint32_t i = 0; i < rows.NbRows; ++i) {
    if (removed[i]) continue;
    survivors.push_back(i);
    const uint32_t leading = LeadingColumn(rows.p[i], rows.NbColumns);
    for (uint32_t j = i + 1; j < rows.NbRows; ++j) {
      if (IsMultiple(rows.p[j], rows.p[i], leading, rows.NbColumns)) removed[j] = true;
    }
  }
  ReplaceByRows(m, survivors);
}

}  // namespace siphons
