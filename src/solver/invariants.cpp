// The checks recompute everything from the coordinates and the constraints, in 64 bits where the solver
// uses 32.
#include "solver/invariants.h"

#ifndef NDEBUG

#include <cassert>

#include "solver/sharedVars.h"

namespace siphons {

namespace {

/// The pair lists may name the ray of the starting cone by the row that it had, although it has left the
/// solve.
bool IsStartingRow(uint32_t row) {
  return row == Dimension - 1;
}

void CheckIndexTables() {
  assert(NbIndexRL >= NbRay);
  for (uint32_t row = 0; row < NbRay; ++row) {
    const int32_t number = IndexRL->p[row][0];
    if (number == kNoNumber) continue;
    assert(static_cast<uint32_t>(number) < NbIndexLR);
    assert(IndexLR->p[number][0] == static_cast<int32_t>(row));
  }
  for (uint32_t number = 0; number < NbIndexLR; ++number) {
    const int32_t row = IndexLR->p[number][0];
    if (row == kNoNumber || IsStartingRow(static_cast<uint32_t>(row))) continue;
    assert(static_cast<uint32_t>(row) < NbRay);
    assert(IndexRL->p[row][0] == static_cast<int32_t>(number));
  }
}

void CheckLive(uint32_t number) {
  assert(number < NbIndexLR);
  const int32_t row = IndexLR->p[number][0];
  assert(row != kNoNumber);
  assert(static_cast<uint32_t>(row) < NbRay || IsStartingRow(static_cast<uint32_t>(row)));
}

void CheckPairLists(uint32_t k) {
  for (uint32_t m = 0; m < NbConstraints; ++m) {
    if (m <= k) continue;
    ForEachPair(LiListArray[m], [](uint32_t key, uint32_t companion) {
      CheckLive(key);
      CheckLive(companion);
      return 0;
    });
  }
}

/// The value of constraint c on a ray; false when 64 bits may not hold it or 32 bits do not.
bool ExactValue(const int32_t* ray, uint32_t c, int64_t* value) {
  *value = 0;
  for (uint32_t j = 1; j <= Dimension; ++j) {
    if (__builtin_add_overflow(*value, int64_t{ray[j]} * Constraints->p[c][j], value)) return false;
  }
  return *value == static_cast<int32_t>(*value);
}

void CheckSaturation(uint32_t k) {
  for (uint32_t row = 0; row < NbRay; ++row) {
    int32_t violated = maxMinF;
    for (uint32_t c = 0; c < NbConstraints && violated == maxMinF; ++c) {
      int64_t value = 0;
      if (!ExactValue(Ray->p[row], c, &value)) return;
      assert(IsUnsaturated(row, c) == (value != 0));
      if (value < 0) violated = static_cast<int32_t>(c);
    }
    assert(violated > static_cast<int32_t>(k));
    assert(MinF->p[row][0] == violated);
  }
}

}  // namespace

void CheckInvariants(uint32_t k) {
  CheckIndexTables();
  if (!RaysAreCertain()) return;
  CheckPairLists(k);
  CheckSaturation(k);
}

}  // namespace siphons

#endif
