// Eliminations and sorts as they are defined: every row compared with every other, entry by entry.
#include <algorithm>
#include <utility>

#include "tests/reference/integers.h"

namespace reference {

namespace {

/// The rows that no surviving row before them removes.
template <typename Removes>
void ElimByEarlier(Rows& rows, Removes removes) {
  Rows survivors;
  std::vector<bool> removed(rows.size());
  for (size_t i = 0; i < rows.size(); ++i) {
    if (removed[i]) continue;
    survivors.push_back(rows[i]);
    for (size_t j = i + 1; j < rows.size(); ++j) removed[j] = removed[j] || removes(rows[i], rows[j]);
  }
  rows = survivors;
}

bool IsMultiple(const Row& base, const Row& row) {
  size_t c = 1;
  while (c < base.size() && base[c] == 0) ++c;
  if (c >= base.size() || row[0] != base[0] || row[c] == 0 || Rem(row[c], base[c]) != 0) return false;
  const int32_t q = Div(row[c], base[c]);
  for (size_t k = 1; k < row.size(); ++k) {
    if (row[k] != Mul(q, base[k])) return false;
  }
  return q >= 0;
}

bool SupportHolds(const Row& outer, const Row& inner) {
  for (size_t c = 0; c < outer.size(); ++c) {
    if (inner[c] != 0 && outer[c] == 0) return false;
  }
  return true;
}

}  // namespace

void ElimEqualRows(Rows& rows) {
  ElimByEarlier(rows, [](const Row& a, const Row& b) { return a == b; });
}

void ElimSimpleConstraints(Rows& rows) {
  ElimByEarlier(rows, IsMultiple);
}

void ElimNonMinimal(Rows& rows) {
  Rows survivors;
  for (size_t i = 0; i < rows.size() && rows.size() > 1; ++i) {
    size_t j = 0;
    while (j < rows.size() && (j == i || !SupportHolds(rows[i], rows[j]))) ++j;
    if (j == rows.size()) survivors.push_back(rows[i]);
  }
  rows = survivors;
}

void SortRows(Rows& rows) {
  std::sort(rows.begin(), rows.end());
}

void QuickSort(Rows& rows, uint32_t first, uint32_t last, uint32_t key, uint32_t payload) {
  if (first >= last) return;
  const int32_t pivot = rows[first][key];
  uint32_t i = first - 1, j = last + 1;
  while (true) {
    for (--j; rows[j][key] > pivot; --j) {
    }
    for (++i; rows[i][key] < pivot; ++i) {
    }
    if (j <= i) break;
    std::swap(rows[i][key], rows[j][key]);
    std::swap(rows[i][payload], rows[j][payload]);
  }
  QuickSort(rows, first, j, key, payload);
  QuickSort(rows, j + 1, last, key, payload);
}

Answer SolveNet(const Arcs& arcs) {
  const size_t places = arcs.output[0].size();
  Rows system;
  for (size_t t = 0; t < arcs.output.size(); ++t) {
    int32_t weight = 0;
    for (const int32_t multiplicity : arcs.output[t]) weight = Add(weight, multiplicity);
    Row row{1};
    for (size_t p = 0; p < places; ++p)
      row.push_back(arcs.input[t][p] != 0 ? weight : Mul(arcs.output[t][p], -1));
    row.push_back(0);
    system.push_back(row);
  }
  for (size_t p = 0; p < places; ++p) {
    system.emplace_back(places + 2);
    system.back()[0] = system.back()[1 + p] = 1;
  }
  ElimEqualRows(system);
  ElimSimpleConstraints(system);
  SortRows(system);
  Answer answer = Solve(system, 100000000);
  answer.supports = answer.rays;
  for (Row& row : answer.supports) {
    for (int32_t& entry : row) entry = entry != 0 ? 1 : 0;
  }
  ElimEqualRows(answer.supports);
  ElimNonMinimal(answer.supports);
  return answer;
}

}  // namespace reference
