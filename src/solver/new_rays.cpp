// Elimination of lines, and new rays from pairs of old ones (Motzkin et al. 1953): of a ray that violates the
// current constraint and one that satisfies it strictly, the positive combination that saturates it. What the
// new ray does not saturate among the earlier constraints is what either parent does not saturate, so its
// saturation row needs no evaluation there; that holds as long as the arithmetic is exact.
#include "solver/new_rays.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "base/arithmetic.h"
#include "matrix/matrixOps.h"
#include "solver/index.h"
#include "solver/intOps.h"
#include "solver/matrixCombine.h"
#include "solver/sharedVars.h"

namespace siphons {

namespace {

/// Whether memory for more rays was ever refused. It is never reset: a process that was once out of memory
/// fails every later solve that needs more rows, instead of coming to its limit again and again.
bool growthFailed = false;

bool GrowRays() {
  constexpr int32_t kGrowth = 1000;
  for (Matrix** m : {&Ray, &Sat, &MinF}) growthFailed = ResizeRows(m, kGrowth) != 0 || growthFailed;
  return !growthFailed;
}

}  // namespace

int32_t ConstrainL(uint32_t) {
  if (NbLines == 0) return -1;
  uint32_t found = 0;
  while (found < NbLines && Ray->p[found][0] == 0) ++found;
  if (found == NbLines) return -1;
  --NbLines;
  const uint32_t pivot = NbLines;
  RowExchange(Ray, found, pivot, raytemprow.data());
  for (uint32_t line = 0; line < NbLines; ++line) {
    if (Ray->p[line][0] != 0) SimpleCombine(line, pivot, line, Ray);
  }
  int32_t* const row = Ray->p[pivot];
  if (row[0] < 0) std::transform(row, row + Ray->NbColumns, row, WrapNeg);
  return static_cast<int32_t>(pivot);
}

int32_t SimpleCombine(uint32_t r1, uint32_t r2, uint32_t dest, Matrix* m) {
  const int32_t s1 = m->p[r1][0];
  const int32_t s2 = m->p[r2][0];
  constexpr int32_t kLowest = std::numeric_limits<int32_t>::min();
  if (s1 == kLowest || s2 == kLowest) ArithmeticWrapped = true;
  const int32_t g = Gcd(WrapAbs(s1), WrapAbs(s2));
  return CombineRow(r1, r2, dest, TruncDiv(s2, g), WrapNeg(TruncDiv(s1, g)), m);
}

int32_t Combine(uint32_t r1, uint32_t r2, uint32_t dest, Matrix* m) {
  if (SimpleCombine(r1, r2, dest, m) != 0) return kCombinationFailed;
  // A pair with the row behind the last ray (see pair_test.cpp) combines into this very row, and what the
  // parent there did not saturate is then forgotten.
  std::fill_n(Sat->p[dest], Sat->NbColumns, 0);
  RowOr(r1, r2, dest, Sat);
  uint32_t* const bits = SatWords(dest);
  bits[WCount] &= ~(2 * BCount - 1);
  std::fill(bits + WCount + 1, bits + nc, 0U);
  return kNewRaysMade;
}

int32_t CombineNewRays(const LLElement* chain, uint32_t keyRow) {
  constexpr int64_t kProgress = 1000;
  for (; chain != nullptr; chain = chain->next) {
    for (const uint32_t number : chain->values) {
      if (std::abs(int64_t{NbRay} - int64_t{OldRays}) > kProgress) OldRays = NbRay;
      if (NbRay >= Ray->NbRows && (NbRay >= NbMaxRays || !GrowRays())) return kNoRoomForRay;
      const int32_t companionRow = IndexLR->p[number][0];
      if (companionRow == kNoNumber) return kCombinationFailed;
      const uint32_t companion = static_cast<uint32_t>(companionRow);
      if (Combine(keyRow, companion, NbRay, Ray) != 0) return kCombinationFailed;
      if (StorePair(GenList, companion, NbRay) != 0) return kNoRoomForRay;
      ++NbRay;
    }
  }
  return kNewRaysMade;
}

int32_t ObtainNewRays(const LiList* list) {
  for (; list != nullptr; list = list->next) {
    for (uint32_t i = 0; i < list->nbKeys; ++i) {
      const int32_t keyRow = IndexLR->p[list->keys[i]][0];
      if (keyRow == kNoNumber) return kCombinationFailed;
      const int32_t status = CombineNewRays(list->chains[i], static_cast<uint32_t>(keyRow));
      if (status != kNewRaysMade) return status;
    }
  }
  return kNewRaysMade;
}

}  // namespace siphons
