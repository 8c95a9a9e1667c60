// The adjacency tests. A pair first passes a count: two adjacent rays saturate at least Dimension - 2
// constraints in common, the one being counted double included. What is left is compared with every other
// ray; that comparison is where a solve spends its time, since it is cubic in the rays of a facet.
//
// Two rays are excluded from their own test by row number, never by value: rows may repeat.
#include "solver/adjacency.h"

#include <cstdio>

#include "solver/index.h"
#include "solver/lists.h"
#include "solver/sharedOps.h"
#include "solver/sharedVars.h"

namespace siphons {

namespace {

int32_t FirstViolated(uint32_t row) {
  return MinF->p[row][0];
}

int32_t FilePair(int32_t constraint, uint32_t violator, uint32_t satisfier) {
  LiList* const list = LiListArray[static_cast<uint32_t>(constraint)];
  if (list == nullptr) return 1;
  const uint32_t key = StoreIndex(violator);
  return StorePair(list, key, StoreIndex(satisfier));
}

/// Whether row t saturates everything that `common` leaves clear, in words 0 to lastWord.
bool SaturatesAllOf(uint32_t t, const std::vector<uint32_t>& common, uint32_t lastWord) {
  const uint32_t* const bits = SatWords(t);
  for (uint32_t w = 0; w <= lastWord; ++w) {
    if ((bits[w] & ~common[w]) != 0) return false;
  }
  return true;
}

// --- the first sweep, over all constraints

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
    if (SaturatesAllOf(t, BitRow, nc - 1)) return false;
  }
  return true;
}

// --- the tests while constraint k is processed

/// AdjBitRow = what x or y does not saturate of the constraints up to k. False when the pair saturates too
/// few.
bool QuickTest(uint32_t x, uint32_t y) {
  const uint32_t* const a = SatWords(x);
  const uint32_t* const b = SatWords(y);
  uint32_t count = 1;
  for (uint32_t w = 0; w <= AdjWCount; ++w) {
    AdjBitRow[w] = a[w] | b[w];
    if (w == AdjWCount) AdjBitRow[w] |= AdjBitmask;
    count += ZeroBits(AdjBitRow[w]);
  }
  return count >= Dimension - 2;
}

/// Whether no row from TTEST on but x and y saturates all that both saturate, as QuickTest left it in
/// AdjBitRow.
bool FullTest(uint32_t x, uint32_t y) {
  for (uint32_t t = TTEST; t < NbRay; ++t) {
    if (t != x && t != y && SaturatesAllOf(t, AdjBitRow, AdjWCount)) return false;
  }
  return true;
}

void TellProgress() {
  constexpr int32_t kInterval = 500000;
  if (adjcounter % kInterval != 0) return;
  std::printf("Adjacency test called %i times, nb of adj pairs %i, no. quick tests: %i\n", adjcounter,
              adjcounter - redcounter, quickcounter);
}

/// Both tests, counted.
bool CountedTest(uint32_t violator, uint32_t satisfier) {
  ++adjcounter;
  TellProgress();
  if (!QuickTest(violator, satisfier)) {
    ++quickcounter;
    ++redcounter;
    return false;
  }
  if (!FullTest(violator, satisfier)) {
    ++redcounter;
    return false;
  }
  return true;
}

/// The pair of a new ray and its positive parent, at constraint k.
int32_t FileNewPair(uint32_t k, uint32_t parent, uint32_t newRay) {
  const int32_t a = FirstViolated(parent);
  const int32_t b = FirstViolated(newRay);
  if (a == b) return 0;
  const uint32_t violator = a < b ? parent : newRay;
  const uint32_t satisfier = a < b ? newRay : parent;
  const int32_t due = a < b ? a : b;
  if (!SatBit(satisfier, static_cast<uint32_t>(due))) return 0;
  if (CheckedLater(static_cast<int32_t>(k), due, violator, satisfier) != 0) return 0;
  return CountedTest(violator, satisfier) ? FilePair(due, violator, satisfier) : 0;
}

}  // namespace

int32_t FileFirstPairs(int32_t lastBasis) {
  for (uint32_t i = 0; i < NbRay; ++i) {
    for (uint32_t j = i + 1; j < NbRay; ++j) {
      if (FirstViolated(i) == FirstViolated(j) || !AdjacentAtStart(i, j)) continue;
      const bool firstViolates = FirstViolated(i) < FirstViolated(j);
      const uint32_t violator = firstViolates ? i : j;
      const uint32_t satisfier = firstViolates ? j : i;
      const int32_t due = FirstViolated(violator);
      if (!SatBit(satisfier, static_cast<uint32_t>(due))) continue;
      if (CheckedLater(lastBasis, due, violator, satisfier) != 0) continue;
      if (FilePair(due, violator, satisfier) != 0) return 1;
    }
  }
  return 0;
}

int32_t FilePairsWithParents(uint32_t k, uint32_t moved) {
  TTEST = 0;
  return ForEachPair(GenList, [k, moved](uint32_t parent, uint32_t storedRow) {
    return FileNewPair(k, parent, storedRow - moved);
  });
}

int32_t FilePairsOnFacet(uint32_t k, uint32_t first) {
  TTEST = first;
  uint32_t group = first;
  for (;;) {
    const int32_t due = FirstViolated(group);
    const int32_t next = GetBorder(due);
    if (due == maxMinF || next < 0) return 0;
    const uint32_t end = static_cast<uint32_t>(next);
    const uint32_t target = static_cast<uint32_t>(due);
    const bool between = static_cast<int32_t>(k) < due - 1;
    if (between) MaskConstraintsBetween(k, target);
    for (uint32_t a = group; a < end; ++a) {
      for (uint32_t b = end; b < NbRay; ++b) {
        if (!SatBit(b, target) || !QuickTest(a, b)) continue;
        if (between && SaturateCommonConstraint(k, target, a, b)) continue;
        if (FullTest(a, b) && FilePair(due, a, b) != 0) return 1;
      }
    }
    group = end;
  }
}

}  // namespace siphons
