// The adjacency tests as they are defined, pair by pair and row by row: the reference for the fast ones.
// Every pair is counted, and what passes is compared with every other row.
#include "solver/adjacency.h"

#include <cstdio>
#include <vector>

#include "solver/lists.h"
#include "solver/sharedOps.h"
#include "solver/sharedVars.h"

namespace siphons {

namespace {

std::vector<uint32_t> AdjBitRow;  ///< what either row of the pair does not saturate
uint32_t AdjBitmask = 0;          ///< bits of the constraints above k in word AdjWCount
uint32_t TTEST = 0;               ///< first row that is compared

void Begin(uint32_t k, uint32_t firstRow) {
  AdjBitRow.assign(nc, 0);
  AdjBitmask = BitsFrom(k + 1);
  TTEST = firstRow;
}

/// Whether row t saturates everything that `common` leaves clear, in words 0 to lastWord.
bool SaturatesAllOf(uint32_t t, const std::vector<uint32_t>& common, uint32_t lastWord) {
  const uint32_t* const bits = SatWords(t);
  for (uint32_t w = 0; w <= lastWord; ++w) {
    if ((bits[w] & ~common[w]) != 0) return false;
  }
  return true;
}

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

int32_t FilePairsWithParents(uint32_t k, uint32_t moved) {
  Begin(k, 0);
  return ForEachPair(GenList, [k, moved](uint32_t parent, uint32_t storedRow) {
    return FileNewPair(k, parent, storedRow - moved);
  });
}

int32_t FilePairsOnFacet(uint32_t k, uint32_t first) {
  Begin(k, first);
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
        ++solveCounts.tests;
        if (FullTest(a, b) && FilePair(due, a, b) != 0) return 1;
      }
    }
    group = end;
  }
}

}  // namespace siphons
