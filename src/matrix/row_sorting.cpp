// Orders of rows. The system's order (SortRows) is total but for equal rows, so any sorting method gives the
// same result. QuickSort is different: it orders rays and constraints inside the solver, equal keys are
// common there, and the order in which Hoare's partition with the first key as pivot leaves them decides the
// order of the report. It is therefore written out and not left to a library.
#include "matrix/row_sorting.h"

#include <algorithm>
#include <utility>

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

}  // namespace siphons
