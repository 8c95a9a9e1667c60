// The rows of minimal support, out of many: the supports of a solver's rays can be ten thousands.
//
// Rows are taken by growing support. Whatever a row's support contains has then been seen, and if it contains
// any other support it contains a minimal one; so it is compared with the minimal ones found so far, and of
// these only with those filed under one of its own columns. Each is filed under the rarest of its columns, so
// the lists stay short (Bayardo and Panda 2011). Supports are compared as bit rows, 64 columns at a time. The
// result keeps the rows' order.
#include "matrix/minimal_rows.h"

#include <algorithm>
#include <bit>
#include <numeric>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "matrix/replace_rows.h"

namespace siphons {

namespace {

/// The supports of all rows as rows of 64-bit words.
class Supports {
 public:
  explicit Supports(const Matrix& m)
      : words_((size_t{m.NbColumns} + 63) / 64), bits_(words_ * m.NbRows), frequency_(m.NbColumns) {
    for (uint32_t r = 0; r < m.NbRows; ++r) {
      for (uint32_t c = 0; c < m.NbColumns; ++c) {
        if (m.p[r][c] == 0) continue;
        bits_[r * words_ + c / 64] |= uint64_t{1} << (c % 64);
        ++frequency_[c];
      }
    }
  }

  bool Contains(uint32_t outer, uint32_t inner) const {
    const uint64_t* const o = Words(outer);
    const uint64_t* const i = Words(inner);
    for (size_t w = 0; w < words_; ++w) {
      if ((i[w] & ~o[w]) != 0) return false;
    }
    return true;
  }

  uint32_t Size(uint32_t row) const {
    const auto add = [](uint32_t sum, uint64_t word) {
      return sum + static_cast<uint32_t>(std::popcount(word));
    };
    return std::accumulate(Words(row), Words(row) + words_, uint32_t{0}, add);
  }

  /// Calls visit(column) for the columns of a row's support until it returns true; whether it did.
  template <typename Visit>
  bool AnyColumn(uint32_t row, Visit visit) const {
    for (size_t w = 0; w < words_; ++w) {
      for (uint64_t word = Words(row)[w]; word != 0; word &= word - 1) {
        if (visit(static_cast<uint32_t>(64 * w) + static_cast<uint32_t>(std::countr_zero(word)))) return true;
      }
    }
    return false;
  }

  /// The column of a non-empty support that the fewest rows have.
  uint32_t RarestColumn(uint32_t row) const {
    uint32_t rarest = 0;
    uint32_t rows = 0;
    AnyColumn(row, [&](uint32_t column) {
      if (rows == 0 || frequency_[column] < rows) {
        rarest = column;
        rows = frequency_[column];
      }
      return false;
    });
    return rarest;
  }

  std::string_view Bytes(uint32_t row) const {
    return {reinterpret_cast<const char*>(Words(row)), words_ * sizeof(uint64_t)};
  }

 private:
  const uint64_t* Words(uint32_t row) const { return bits_.data() + row * words_; }

  size_t words_;
  std::vector<uint64_t> bits_;
  std::vector<uint32_t> frequency_;  ///< rows that have the column
};

/// All row numbers, by growing support.
RowNumbers BySize(const Supports& supports, uint32_t rows) {
  std::vector<uint32_t> sizes(rows);
  for (uint32_t r = 0; r < rows; ++r) sizes[r] = supports.Size(r);
  RowNumbers order(rows);
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(),
                   [&sizes](uint32_t a, uint32_t b) { return sizes[a] < sizes[b]; });
  return order;
}

/// The rows whose support is minimal and which share it with no other row, ascending.
RowNumbers MinimalRows(const Matrix& m) {
  const Supports supports(m);
  std::unordered_map<std::string_view, uint32_t> rowsOfSupport;
  for (uint32_t r = 0; r < m.NbRows; ++r) ++rowsOfSupport[supports.Bytes(r)];

  RowNumbers survivors;
  std::vector<RowNumbers> filed(m.NbColumns);
  for (const uint32_t row : BySize(supports, m.NbRows)) {
    const bool holdsOne = supports.AnyColumn(row, [&](uint32_t column) {
      return std::any_of(filed[column].begin(), filed[column].end(),
                         [&](uint32_t minimal) { return supports.Contains(row, minimal); });
    });
    if (holdsOne) continue;
    // Rows of one support remove each other, but they still remove what contains them.
    if (rowsOfSupport.at(supports.Bytes(row)) == 1) survivors.push_back(row);
    if (supports.Size(row) == 0) break;  // the empty support is contained in all others
    filed[supports.RarestColumn(row)].push_back(row);
  }
  std::sort(survivors.begin(), survivors.end());
  return survivors;
}

}  // namespace

void ElimNonMinimal(Matrix** m) {
  // A single row does not survive: it was never found minimal among others. A net whose solutions all have
  // one and the same support is reported as having no siphon on this account.
  ReplaceByRows(m, (*m)->NbRows > 1 ? MinimalRows(**m) : RowNumbers{});
}

}  // namespace siphons
