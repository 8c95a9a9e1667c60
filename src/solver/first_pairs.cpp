// The first search for adjacent pairs, over the rays that the basis leaves: as many as the rays have
// coordinates, so the plain tests over all constraints will do.
//
// The homogenising coordinate counts as one more constraint among rays at infinity: a pair of them saturates
// it, and only a third ray at infinity can stand between the two.
#include "solver/adjacency.h"
#include "solver/index.h"
#include "solver/lists.h"
#include "solver/sharedOps.h"
#include "solver/sharedVars.h"

namespace siphons {

namespace {

/// Whether row t saturates everything that BitRow leaves clear.
bool SaturatesAllCommon(uint32_t t) {
  const uint32_t* const bits = SatWords(t);
  for (uint32_t w = 0; w < nc; ++w) {
    if ((bits[w] & ~BitRow[w]) != 0) return false;
  }
  return true;
}

/// BitRow = what x or y does not saturate, the bits behind the last constraint set. Returns the number of
/// constraints that both saturate.
uint32_t CommonOfAllConstraints(uint32_t x, uint32_t y) {
  uint32_t saturated = 0;
  for (uint32_t w = 0; w < nc; ++w) {
    BitRow[w] = SatWords(x)[w] | SatWords(y)[w];
    if (w == WordOf(NbConstraints)) BitRow[w] |= BitsFrom(NbConstraints);
    saturated += ZeroBits(BitRow[w]);
  }
  return saturated;
}

bool AtInfinity(uint32_t row) {
  return Ray->p[row][Dimension] == 0;
}

bool AdjacentAtStart(uint32_t x, uint32_t y) {
  const bool bothAtInfinity = AtInfinity(x) && AtInfinity(y);
  const uint32_t common = CommonOfAllConstraints(x, y) + (bothAtInfinity ? 1 : 0);
  if (common < Dimension - 2) return false;
  for (uint32_t t = 0; t < NbRay; ++t) {
    if (t == x || t == y || (bothAtInfinity && !AtInfinity(t))) continue;
    if (SaturatesAllCommon(t)) return false;
  }
  return true;
}

}  // namespace

void (*pairObserver)(int32_t constraint, uint32_t violator, uint32_t satisfier) = nullptr;

int32_t FilePair(int32_t constraint, uint32_t violator, uint32_t satisfier) {
  LiList* const list = LiListArray[static_cast<uint32_t>(constraint)];
  if (list == nullptr) return 1;
  ++solveCounts.pairs;
  const uint32_t key = StoreIndex(violator);
  const uint32_t companion = StoreIndex(satisfier);
  if (pairObserver != nullptr) pairObserver(constraint, key, companion);
  return StorePair(list, key, companion);
}

int32_t FileFirstPairs(int32_t lastBasis) {
  for (uint32_t i = 0; i < NbRay; ++i) {
    for (uint32_t j = i + 1; j < NbRay; ++j) {
      if (FirstViolated(i) == FirstViolated(j)) continue;
      const bool firstViolates = FirstViolated(i) < FirstViolated(j);
      const uint32_t violator = firstViolates ? i : j;
      const uint32_t satisfier = firstViolates ? j : i;
      const int32_t due = FirstViolated(violator);
      if (!IsUnsaturated(satisfier, static_cast<uint32_t>(due)) || !AdjacentAtStart(i, j)) continue;
      if (CheckedLater(lastBasis, due, violator, satisfier) != 0) continue;
      if (FilePair(due, violator, satisfier) != 0) return 1;
    }
  }
  return 0;
}

}  // namespace siphons
