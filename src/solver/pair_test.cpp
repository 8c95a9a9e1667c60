// The test as it is defined: count the constraints that both rays saturate, then look for a row that
// saturates them all. For the scan the two rows are moved to its front, and back afterwards.
//
// Only pairs with a row behind the last ray need this form. Such a pair arises in systems with a constant
// term: the ray of the starting cone takes no part in the iteration, but pairs that were filed with it are
// combined all the same, and their new rays have that row as parent. When the row is moved to the front, the
// ray that stood there lands behind the last ray, where the scan does not see it. The rays of such a system
// depend on this.
#include "solver/pair_test.h"

#include "matrix/matrixOps.h"
#include "solver/sharedOps.h"
#include "solver/sharedVars.h"

namespace siphons {

namespace {

/// AdjBitRow = what x or y does not saturate, of the constraints up to the current one. Returns the number of
/// constraints that both saturate.
uint32_t CommonOfPair(uint32_t x, uint32_t y) {
  uint32_t common = 0;
  for (uint32_t w = 0; w <= AdjWCount; ++w) {
    AdjBitRow[w] = SatWords(x)[w] | SatWords(y)[w];
    if (w == AdjWCount) AdjBitRow[w] |= AdjBitmask;
    common += ZeroBits(AdjBitRow[w]);
  }
  return common;
}

/// Whether row t saturates all constraints that AdjBitRow leaves clear.
bool SaturatesAllCommon(uint32_t t) {
  const uint32_t* const bits = SatWords(t);
  for (uint32_t w = 0; w <= AdjWCount; ++w) {
    if ((bits[w] & ~AdjBitRow[w]) != 0) return false;
  }
  return true;
}

bool AnySeparates() {
  for (uint32_t t = TTEST + 2; t < NbRay; ++t) {
    if (SaturatesAllCommon(t)) return true;
  }
  return false;
}

}  // namespace

Adjacency TestPair(uint32_t violator, uint32_t satisfier) {
  // The constraint being processed counts once more: the face that the two rays span has one dimension more
  // than the edge that is looked for.
  if (CommonOfPair(violator, satisfier) + 1 < Dimension - 2) return Adjacency::kShareTooFew;
  const bool inPlace = violator == TTEST;
  const uint32_t satisfierFront = inPlace ? TTEST + 1 : TTEST;
  const uint32_t violatorFront = inPlace ? TTEST : TTEST + 1;
  SwapRows(satisfier, satisfierFront, Sat);
  SwapRows(violator, violatorFront, Sat);
  const bool separated = AnySeparates();
  SwapRows(violator, violatorFront, Sat);
  SwapRows(satisfier, satisfierFront, Sat);
  return separated ? Adjacency::kSeparated : Adjacency::kAdjacent;
}

}  // namespace siphons
