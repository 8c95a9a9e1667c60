// Removal of equal rows by hashing: one pass, the first of equal rows stays where it is.
#include "matrix/equal_rows.h"

#include <string_view>
#include <unordered_set>

#include "matrix/replace_rows.h"

namespace siphons {

namespace {

std::string_view Bytes(const Matrix& m, uint32_t row) {
  return {reinterpret_cast<const char*>(m.p[row]), m.NbColumns * sizeof(int32_t)};
}

}  // namespace

void ElimEqualRows(Matrix** m) {
  const Matrix& rows = **m;
  RowNumbers survivors;
  std::unordered_set<std::string_view> seen;
  for (uint32_t r = 0; r < rows.NbRows; ++r) {
    if (seen.insert(Bytes(rows, r)).second) survivors.push_back(r);
  }
  ReplaceByRows(m, survivors);
}

}  // namespace siphons
