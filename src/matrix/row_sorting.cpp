// Orders of rows. The system's order (SortRows) is total but for equal rows, so any sorting method gives the
// same result. QuickSort is different: it orders rays and constraints inside the solver, equal keys are
// common there, and the order in which Hoare's partition with the first key as pivot leaves them decides the
// order of the report. It is therefore written out and not left to a library.
#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "matrix/matrixProcs.h"

namespace siphons {

void SortRows(Matrix* m) {
  std::sort(m->p, m->p + m->NbRows, [columns = m->NbColumns](const int32_t* a, const int32_t* b) {
    return std::lexicographical_compare(a, a + columns, b, b + columns);
  });
}

uint32_t Partition(Matrix* m, uint32_t first, uint32_t last, uint32_t key, uint32_t payload) {
  const int32_t pivot = m->p[first][key];
  uint32_t i = first - 1;
  uint32_t j = last + 1;
  for (;;) {
    do {
      --j;
    } while (m->p[j][key] > pivot);
    do {
      ++i;
    } while (m->p[i][key] < pivot);
    if (j <= i) return j;
    std::swap(m->p[i][key], m->p[j][key]);
    std::swap(m->p[i][payload], m->p[j][payload]);
  }
}

void QuickSort(Matrix* m, uint32_t first, uint32_t last, uint32_t key, uint32_t payload) {
  // The two halves do not touch each other, so their order is free: recursing into the smaller keeps the
  // stack shallow.
  while (first < last) {
    const uint32_t split = Partition(m, first, last, key, payload);
    if (split - first < last - split) {
      QuickSort(m, first, split, key, payload);
      first = split + 1;
    } else {
      QuickSort(m, split + 1, last, key, payload);
      last = split;
    }
  }
}

int32_t LexSmaller(const Matrix* m, int32_t i, int32_t j) {
  const int32_t* const a = m->p[i];
  const int32_t* const b = m->p[j];
  return std::lexicographical_compare(a + 1, a + m->NbColumns, b + 1, b + m->NbColumns) ? 1 : 0;
}

void _SortRows(Matrix* m) {
  struct Keyed {
    int32_t* row;
    uint32_t zeros;
    uint64_t columnSum;
  };
  std::vector<Keyed> rows;
  rows.reserve(m->NbRows);
  for (uint32_t r = 0; r < m->NbRows; ++r) {
    Keyed keyed{m->p[r], 0, 0};
    for (uint32_t c = 0; c < m->NbColumns; ++c) {
      if (m->p[r][c] == 0) {
        ++keyed.zeros;
      } else {
        keyed.columnSum += c;
      }
    }
    rows.push_back(keyed);
  }
  const auto pairs = std::count_if(rows.begin(), rows.end(),
                                   [&](const Keyed& keyed) { return m->NbColumns - keyed.zeros == 2; });
  std::stable_sort(rows.begin(), rows.end(),
                   [](const Keyed& a, const Keyed& b) { return a.zeros > b.zeros; });
  if (pairs > 1) {
    // One row short of the pairs on purpose.
    std::stable_sort(rows.begin(), rows.begin() + (pairs - 1),
                     [](const Keyed& a, const Keyed& b) { return a.columnSum < b.columnSum; });
  }
  std::transform(rows.begin(), rows.end(), m->p, [](const Keyed& keyed) { return keyed.row; });
}

}  // namespace siphons
