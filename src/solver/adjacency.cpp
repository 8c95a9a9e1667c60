// Filing pairs while a constraint is processed: which pairs are looked at, in which order, and what is
// counted. Whether two rays are adjacent is for adjacency_search.cpp to say.
#include "solver/adjacency.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <optional>

#include "solver/adjacency_search.h"
#include "solver/lists.h"
#include "solver/pair_test.h"
#include "solver/progress.h"
#include "solver/sharedOps.h"
#include "solver/sharedVars.h"

namespace siphons {

InstructionSet pairSearchInstructions = BestInstructionSet();

namespace {

/// The tests of one constraint's new rays with their positive parents, against all rays.
///
/// A new ray lies on the two-dimensional face that its adjacent parents span, so it spans the rest of that
/// face with the positive one: both tests pass, always, as long as RaysAreCertain. They are then counted and
/// not run; debug builds run them.
class ParentTests {
 public:
  explicit ParentTests(uint32_t k) : k_(k) {}

  /// Counts the tests of a pair and tells whether it passes.
  bool Passes(uint32_t violator, uint32_t satisfier) {
    ++adjcounter;
    TellProgress();
#ifdef NDEBUG
    if (RaysAreCertain()) return true;
#endif
    const Adjacency adjacency = Test(violator, satisfier);
    const bool passes = adjacency == Adjacency::kAdjacent;
    assert(passes || !RaysAreCertain());
    if (!passes) ++redcounter;
    if (adjacency == Adjacency::kShareTooFew) ++quickcounter;
    return passes;
  }

 private:
  static void TellProgress() {
    constexpr int32_t kInterval = 500000;
    if (adjcounter % kInterval != 0) return;
    ClearProgress();
    std::printf("Adjacency test called %i times, nb of adj pairs %i, no. quick tests: %i\n", adjcounter,
                adjcounter - redcounter, quickcounter);
  }

  Adjacency Test(uint32_t violator, uint32_t satisfier) {
    if (violator >= NbRay || satisfier >= NbRay) return TestPair(violator, satisfier);
    if (!search_) search_.emplace(0, k_, pairSearchInstructions);
    return search_->Test(violator, satisfier);
  }

  uint32_t k_;
  std::optional<AdjacencySearch> search_;
};

/// The pair of a new ray and its positive parent, at constraint k.
int32_t FileNewPair(uint32_t k, uint32_t parent, uint32_t newRay, ParentTests& tests) {
  const int32_t a = FirstViolated(parent);
  const int32_t b = FirstViolated(newRay);
  if (a == b) return 0;
  const uint32_t violator = a < b ? parent : newRay;
  const uint32_t satisfier = a < b ? newRay : parent;
  const int32_t due = std::min(a, b);
  if (!IsUnsaturated(satisfier, static_cast<uint32_t>(due))) return 0;
  if (CheckedLater(static_cast<int32_t>(k), due, violator, satisfier) != 0) return 0;
  return tests.Passes(violator, satisfier) ? FilePair(due, violator, satisfier) : 0;
}

}  // namespace

int32_t FilePairsWithParents(uint32_t k, uint32_t moved) {
  TTEST = 0;
  ParentTests tests(k);
  return ForEachPair(GenList, [&tests, k, moved](uint32_t parent, uint32_t storedRow) {
    return FileNewPair(k, parent, storedRow - moved, tests);
  });
}

int32_t FilePairsOnFacet(uint32_t k, uint32_t first) {
  TTEST = first;
  std::optional<AdjacencySearch> search;
  uint32_t group = first;
  for (;;) {
    const int32_t due = FirstViolated(group);
    const int32_t next = GetBorder(due);
    if (due == maxMinF || next < 0) return 0;
    const uint32_t end = static_cast<uint32_t>(next);
    if (!search) search.emplace(TTEST, k, pairSearchInstructions);
    search->ChoosePartners(end, static_cast<uint32_t>(due));
    for (uint32_t a = group; a < end; ++a) {
      ShowProgress(k);
      for (const uint32_t b : search->AdjacentPartners(a, solveCounts.tests)) {
        if (FilePair(due, a, b) != 0) return 1;
      }
    }
    group = end;
  }
}

}  // namespace siphons
