// Eliminations and sorts of rows against their plain definitions, on any matrix of at most 8 columns and 12
// rows.
#include <algorithm>
#include <numeric>

#include "fuzz/harness.h"
#include "matrix/matrixProcs.h"
#include "tests/rows.h"

namespace {

using namespace siphons;

Rows After(void (*eliminate)(Matrix**), const Rows& rows, size_t columns) {
  OwnedMatrix owner = MatrixOf(rows, static_cast<uint32_t>(columns));
  Matrix* m = owner.get();
  eliminate(&m);  // where a division faults, the matrix is as it was
  static_cast<void>(owner.release());
  owner.reset(m);
  return RowsOf(*owner);
}

Rows After(void (*sort)(Matrix*), const Rows& rows, size_t columns) {
  const OwnedMatrix m = MatrixOf(rows, static_cast<uint32_t>(columns));
  sort(m.get());
  return RowsOf(*m);
}

bool IsZero(const Row& row) {
  return std::all_of(row.begin(), row.end(), [](int32_t entry) { return entry == 0; });
}

/// Whether row = q * earlier for a whole q > 0, of the same kind, not counting rows without coefficients. q
/// is exact in the first coefficient; products wrap.
bool IsMultiple(const Row& row, const Row& earlier) {
  const auto first =
      std::find_if(earlier.begin() + 1, earlier.end(), [](int32_t entry) { return entry != 0; });
  if (first == earlier.end() || row[0] != earlier[0]) return false;
  const int64_t dividend = row[static_cast<size_t>(first - earlier.begin())];
  if (dividend % *first != 0 || dividend / *first <= 0) return false;
  const int64_t q = dividend / *first;
  return std::equal(row.begin() + 1, row.end(), earlier.begin() + 1, [q](int32_t entry, int32_t base) {
    return static_cast<uint32_t>(entry) == static_cast<uint32_t>(q * base);
  });
}

bool SupportWithin(const Row& inner, const Row& outer) {
  for (size_t c = 0; c < inner.size(); ++c) {
    if (inner[c] != 0 && outer[c] == 0) return false;
  }
  return true;
}

/// The rows that no row before them which survives itself removes.
template <typename Removes>
Rows WithoutRemovedByEarlier(const Rows& rows, Removes removes) {
  Rows survivors;
  for (const Row& row : rows) {
    if (std::none_of(survivors.begin(), survivors.end(),
                     [&](const Row& earlier) { return removes(earlier, row); })) {
      survivors.push_back(row);
    }
  }
  return survivors;
}

Rows Minimal(const Rows& rows) {
  Rows survivors;
  for (size_t i = 0; i < rows.size() && rows.size() > 1; ++i) {
    bool keep = true;
    for (size_t j = 0; j < rows.size(); ++j) keep = keep && (j == i || !SupportWithin(rows[j], rows[i]));
    if (keep) survivors.push_back(rows[i]);
  }
  return survivors;
}

void CheckEliminations(const Rows& rows, size_t columns) {
  Require(After(ElimEqualRows, rows, columns) == WithoutRemovedByEarlier(rows, std::equal_to<>()),
          "ElimEqualRows");
  Require(After(ElimNonMinimal, rows, columns) == Minimal(rows), "ElimNonMinimal");
  Rows nonzero = rows;
  std::erase_if(nonzero, IsZero);
  Require(After(RemoveZeroRows, rows, columns) == nonzero, "RemoveZeroRows");
  const auto removes = [](const Row& earlier, const Row& row) { return IsMultiple(row, earlier); };
  Require(After(ElimSimpleConstraints, rows, columns) == WithoutRemovedByEarlier(rows, removes),
          "ElimSimpleConstraints");
}

void CheckSorts(const Rows& rows, size_t columns) {
  Rows sorted = rows;
  std::sort(sorted.begin(), sorted.end());
  Require(After(SortRows, rows, columns) == sorted, "SortRows");

  Rows byZeros = After(_SortRows, rows, columns);
  const auto zeros = [](const Row& row) { return std::count(row.begin(), row.end(), 0); };
  const size_t pairs = static_cast<size_t>(std::count_if(rows.begin(), rows.end(), [&](const Row& row) {
    return zeros(row) + 2 == static_cast<std::ptrdiff_t>(row.size());
  }));
  // The first rows, one fewer than there are rows of two entries, are in an order of their own.
  const size_t reordered = pairs > 0 ? pairs - 1 : 0;
  const auto columnSum = [](const Row& row) {
    size_t sum = 0;
    for (size_t c = 0; c < row.size(); ++c) sum += row[c] != 0 ? c : 0;
    return sum;
  };
  for (size_t r = 1; r < byZeros.size(); ++r) {
    const Row &first = byZeros[r - 1], &second = byZeros[r];
    if (r < reordered) Require(columnSum(first) <= columnSum(second), "_SortRows orders by columns");
    if (r > reordered) Require(zeros(first) >= zeros(second), "_SortRows orders by zeros");
  }
  std::sort(byZeros.begin(), byZeros.end());
  Require(byZeros == sorted, "_SortRows keeps the rows");

  if (rows.empty() || columns < 2) return;
  const OwnedMatrix quick = MatrixOf(rows);
  QuickSort(quick.get(), 0, quick->NbRows - 1, 0, 1);
  std::vector<std::pair<int32_t, int32_t>> before, after;
  for (size_t r = 0; r < rows.size(); ++r) {
    before.emplace_back(rows[r][0], rows[r][1]);
    after.emplace_back(quick->p[r][0], quick->p[r][1]);
    Require(r == 0 || after[r - 1].first <= after[r].first, "QuickSort orders");
    Require(std::equal(rows[r].begin() + 2, rows[r].end(), quick->p[r] + 2), "QuickSort moves two columns");
  }
  std::sort(before.begin(), before.end());
  std::sort(after.begin(), after.end());
  Require(before == after, "QuickSort keeps the pairs");
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Bytes bytes(data, size);
  const size_t columns = static_cast<size_t>(bytes.Between(1, 8));
  const size_t rowCount = static_cast<size_t>(bytes.Between(0, 12));
  const int32_t magnitude = bytes.Between(0, 3);
  Rows rows(rowCount, Row(columns));
  for (Row& row : rows) {
    for (int32_t& entry : row) entry = bytes.Entry(magnitude);
  }
  try {
    CheckEliminations(rows, columns);
    CheckSorts(rows, columns);
  } catch (const ProcessEnd&) {
  }
  return 0;
}
