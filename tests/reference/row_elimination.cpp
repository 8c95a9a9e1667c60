// Equal and non-minimal rows as they are defined: every row compared with every other, entry by entry.
#include <vector>

#include "matrix/matrixProcs.h"
#include "matrix/replace_rows.h"

namespace siphons {

namespace {

bool Equal(const Matrix& m, uint32_t i, uint32_t j) {
  for (uint32_t c = 0; c < m.NbColumns; ++c) {
    if (m.p[i][c] != m.p[j][c]) return false;
  }
  return true;
}

/// Whether the support of row i holds that of row j.
bool SupportHolds(const Matrix& m, uint32_t i, uint32_t j) {
  for (uint32_t c = 0; c < m.NbColumns; ++c) {
    if (m.p[j][c] != 0 && m.p[i][c] == 0) return false;
  }
  return true;
}

}  // namespace

void ElimEqualRows(Matrix** m) {
  const Matrix& rows = **m;
  RowNumbers survivors;
  std::vector<bool> removed(rows.NbRows);
  for (uint32_t i = 0; i < rows.NbRows; ++i) {
    if (removed[i]) continue;
    survivors.push_back(i);
    for (uint32_t j = i + 1; j < rows.NbRows; ++j) {
      if (Equal(rows, i, j)) removed[j] = true;
    }
  }
  ReplaceByRows(m, survivors);
}

void ElimNonMinimal(Matrix** m) {
  const Matrix& rows = **m;
  RowNumbers survivors;
  for (uint32_t i = 0; i < rows.NbRows && rows.NbRows > 1; ++i) {
    uint32_t j = 0;
    while (j < rows.NbRows && (j == i || !SupportHolds(rows, i, j))) ++j;
    if (j == rows.NbRows) survivors.push_back(i);
  }
  ReplaceByRows(m, survivors);
}

}  // namespace siphons
