// Removal of rows from an inequality system and from the table of siphon supports.
//
// Equal rows are found by hashing, in one pass. Multiples and non-minimal rows are found by comparing pairs,
// which is quadratic in the rows; supports are compared as bit rows, 64 columns at a time.
#include <algorithm>
#include <cassert>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "matrix/arithmetic.h"
#include "matrix/matrixProcs.h"

namespace siphons {

namespace {

using RowNumbers = std::vector<uint32_t>;

/// Replaces *m by the matrix of its rows `survivors`, given in ascending order.
void ReplaceByRows(Matrix** m, const RowNumbers& survivors) {
  Matrix* const old = *m;
  assert(std::is_sorted(survivors.begin(), survivors.end()));
  Matrix* const kept = BuildMat(static_cast<uint32_t>(survivors.size()), old->NbColumns);
  for (uint32_t r = 0; r < kept->NbRows; ++r) std::copy_n(old->p[survivors[r]], old->NbColumns, kept->p[r]);
  FreeMat(old);
  *m = kept;
}

std::string_view Bytes(const Matrix& m, uint32_t row) {
  return {reinterpret_cast<const char*>(m.p[row]), m.NbColumns * sizeof(int32_t)};
}

/// Whether row j is q times row i in the columns from 1 on, for some integer q >= 1, and of the same kind.
bool IsMultiple(const Matrix& m, uint32_t j, uint32_t i) {
  const int32_t* const multiple = m.p[j];
  const int32_t* const base = m.p[i];
  if (multiple[0] != base[0]) return false;
  uint32_t c = 1;
  while (c < m.NbColumns && base[c] == 0) ++c;
  if (c == m.NbColumns || multiple[c] == 0 || TruncRem(multiple[c], base[c]) != 0) return false;
  const int32_t q = TruncDiv(multiple[c], base[c]);
  if (q < 0) return false;
  for (uint32_t k = 1; k < m.NbColumns; ++k) {
    if (multiple[k] != WrapMul(q, base[k])) return false;
  }
  return true;
}

/// The supports of all rows as rows of 64-bit words.
class Supports {
 public:
  explicit Supports(const Matrix& m) : words_((size_t{m.NbColumns} + 63) / 64), bits_(words_ * m.NbRows) {
    for (uint32_t r = 0; r < m.NbRows; ++r) {
      for (uint32_t c = 0; c < m.NbColumns; ++c) {
        if (m.p[r][c] != 0) bits_[r * words_ + c / 64] |= uint64_t{1} << (c % 64);
      }
    }
  }

  bool Contains(uint32_t outer, uint32_t inner) const {
    const uint64_t* const o = bits_.data() + outer * words_;
    const uint64_t* const i = bits_.data() + inner * words_;
    for (size_t w = 0; w < words_; ++w) {
      if ((i[w] & ~o[w]) != 0) return false;
    }
    return true;
  }

 private:
  size_t words_;
  std::vector<uint64_t> bits_;
};

}  // namespace

void ElimEqualRows(Matrix** m) {
  const Matrix& rows = **m;
  RowNumbers survivors;
  std::unordered_set<std::string_view> seen;
  for (uint32_t r = 0; r < rows.NbRows; ++r) {
    if (seen.insert(Bytes(rows, r)).second) survivors.push_back(r);
  }
  seen.clear();
  ReplaceByRows(m, survivors);
}

void ElimSimpleConstraints(Matrix** m) {
  const Matrix& rows = **m;
  RowNumbers survivors;
  std::vector<bool> removed(rows.NbRows);
  for (uint32_t i = 0; i < rows.NbRows; ++i) {
    if (removed[i]) continue;
    survivors.push_back(i);
    for (uint32_t j = i + 1; j < rows.NbRows; ++j) {
      if (IsMultiple(rows, j, i)) removed[j] = true;
    }
  }
  ReplaceByRows(m, survivors);
}

void ElimNonMinimal(Matrix** m) {
  const Matrix& rows = **m;
  RowNumbers survivors;
  // A single row does not survive: it was never found minimal among others. A net whose solutions all have
  // one and the same support is reported as having no siphon on this account.
  if (rows.NbRows > 1) {
    const Supports supports(rows);
    for (uint32_t i = 0; i < rows.NbRows; ++i) {
      uint32_t j = 0;
      while (j < rows.NbRows && (j == i || !supports.Contains(i, j))) ++j;
      if (j == rows.NbRows) survivors.push_back(i);
    }
  }
  ReplaceByRows(m, survivors);
}

void RemoveZeroRows(Matrix** m) {
  const Matrix& rows = **m;
  RowNumbers survivors;
  for (uint32_t r = 0; r < rows.NbRows; ++r) {
    const int32_t* row = rows.p[r];
    if (std::any_of(row, row + rows.NbColumns, [](int32_t entry) { return entry != 0; }))
      survivors.push_back(r);
  }
  ReplaceByRows(m, survivors);
}

}  // namespace siphons
