// Eliminations and sorts of rows against the reference, on any matrix of at most 8 columns and 12
// rows.
#include <algorithm>

#include "fuzz/harness.h"
#include "matrix/matrixProcs.h"
#include "matrix/uncalled.h"
#include "tests/reference/reference.h"
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

void CheckEliminations(const Rows& rows, size_t columns) {
  const auto check = [&](void (*eliminate)(Matrix**), void (*define)(Rows&), const char* fault) {
    Rows expected = rows;
    define(expected);
    Require(After(eliminate, rows, columns) == expected, fault);
  };
  check(ElimEqualRows, reference::ElimEqualRows, "ElimEqualRows");
  check(ElimNonMinimal, reference::ElimNonMinimal, "ElimNonMinimal");
  check(ElimSimpleConstraints, reference::ElimSimpleConstraints, "ElimSimpleConstraints");
  Rows nonzero = rows;
  std::erase_if(nonzero, IsZero);
  Require(After(RemoveZeroRows, rows, columns) == nonzero, "RemoveZeroRows");
}

void CheckSorts(const Rows& rows, size_t columns) {
  Rows sorted = rows;
  reference::SortRows(sorted);
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
  std::sort(sorted.begin(), sorted.end());
  Require(byZeros == sorted, "_SortRows keeps the rows");

  if (rows.empty() || columns < 2) return;
  const OwnedMatrix quick = MatrixOf(rows);
  QuickSort(quick.get(), 0, quick->NbRows - 1, 0, 1);
  Rows expected = rows;
  reference::QuickSort(expected, 0, quick->NbRows - 1, 0, 1);
  Require(RowsOf(*quick) == expected, "QuickSort");
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
  } catch (const reference::ArithmeticFault&) {
  } catch (const ProcessEnd&) {
  }
  return 0;
}
