#include "matrix/replace_rows.h"

#include <algorithm>
#include <cassert>

namespace siphons {

void ReplaceByRows(Matrix** m, const RowNumbers& survivors) {
  Matrix* const old = *m;
  assert(std::is_sorted(survivors.begin(), survivors.end()));
  Matrix* const kept = BuildMat(static_cast<uint32_t>(survivors.size()), old->NbColumns);
  for (uint32_t r = 0; r < kept->NbRows; ++r) std::copy_n(old->p[survivors[r]], old->NbColumns, kept->p[r]);
  FreeMat(old);
  *m = kept;
}

}  // namespace siphons
