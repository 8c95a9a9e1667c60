// The double description method (Motzkin et al. 1953; Fukuda and Prodon 1996).
//
// A cone is kept in two forms at once: the constraints taken so far, and the extreme rays of what they leave.
// A basis of constraints first turns the lines of the starting cone into rays; every further constraint k
// then drops the rays on its negative side and adds one ray for every adjacent pair of a negative and a
// positive ray.
//
// Adjacent pairs are not searched when k is processed. Each pair is found earlier, as soon as both rays lie
// on a facet that makes them adjacent, and waits in LiListArray under the first constraint that one of them
// violates. After constraint k only pairs that have changed need a look: those of new rays with their
// positive parents, and those among the rays that saturate k.
//
// Between constraints: rows 0 to NbRay - 1 are the extreme rays; Sat says of each what it does not saturate,
// up to its MinF; MinF is the first constraint behind k that it violates; LiListArray names live rays by
// stable numbers.
//
// The order of the rays in the result follows from every exchange and sort on the way, and it is the order of
// the report: nothing here may move a row differently.
#include <algorithm>
#include <cstdio>
#include <vector>

#include "base/timer.h"
#include "matrix/matrixOps.h"
#include "solver/adjacency.h"
#include "solver/index.h"
#include "solver/inequalities.h"
#include "solver/invariants.h"
#include "solver/progress.h"
#include "solver/sharedOps.h"
#include "solver/sharedVars.h"

namespace siphons {

namespace {

constexpr uint32_t kMinFColumns = 2;

/// Work arrays and starting cone.
void Start() {
  NbConstraints = Constraints->NbRows;
  maxMinF = static_cast<int32_t>(NbConstraints);
  Dimension = Constraints->NbColumns - 1;
  nc = NbConstraints == 0 ? 0 : WordOf(NbConstraints - 1) + 1;
  ArithmeticWrapped = false;
  Homogeneous = std::all_of(Constraints->p, Constraints->p + NbConstraints,
                            [](const int32_t* row) { return row[Dimension] == 0; });
  solveCounts = {};

  for (std::vector<uint32_t>* row : {&BitRow, &BitRow2, &BitRow3, &AdjBitRow}) row->assign(nc, 0);
  CreateLookUpMat();
  NbLines = Init();
  NbRay = NbLines + 1;
  MinF = ZeroMatrix(NbRay, kMinFColumns);
  IndexLR = ZeroMatrix(NbRay, 1);
  NbIndexLR = 0;
  IndexRL = ZeroMatrix(NbRay, 1);
  ResizeIndexRL(0, NbRay);

  raytemprow.assign(Ray->NbColumns, 0);
  sattemprow.assign(Sat->NbColumns, 0);
  minftemprow.assign(MinF->NbColumns, 0);
  LiListArray.resize(NbConstraints);
  std::generate(LiListArray.begin(), LiListArray.end(), CreateLiList);
  FLR = InitFreeList();
  blockflag = 1;
}

/// Releases everything but the rows of Ray and Sat that are rays.
void End() {
  solveCounts.rays = NbRay;
  PartFreeMat(&Ray, NbRay);
  PartFreeMat(&Sat, NbRay);
  for (Matrix** m : {&MinF, &IndexLR, &IndexRL}) {
    FreeMat(*m);
    *m = nullptr;
  }
  std::for_each(LiListArray.begin(), LiListArray.end(), FreeLiList);
  LiListArray.clear();
  FreeLiList(GenList);
  GenList = nullptr;
  DelFreeList(FLR);
  FLR = nullptr;
  for (std::vector<uint32_t>* row : {&BitRow, &BitRow2, &BitRow3, &AdjBitRow, &Border, &LookUpMat}) *row = {};
  for (std::vector<int32_t>* row : {&raytemprow, &sattemprow, &minftemprow}) *row = {};
}

struct Basis {
  int32_t last;    ///< index of the last basis constraint
  uint32_t first;  ///< constraint with which the main iteration starts
};

/// Puts the constraints whose flag is set first; each group keeps its order.
void MoveToFront(const std::vector<bool>& flags) {
  std::vector<int32_t*> order;
  order.reserve(NbConstraints);
  for (const bool wanted : {true, false}) {
    for (uint32_t k = 0; k < NbConstraints; ++k) {
      if (flags[k] == wanted) order.push_back(Constraints->p[k]);
    }
  }
  std::copy(order.begin(), order.end(), Constraints->p);
}

/// Turns the lines into rays, one basis constraint for each, and moves the basis to the front of the system.
/// The constraints that were never tried stay before those that were tried and did not help.
Basis EliminateLines() {
  std::vector<bool> flags(NbConstraints, true);
  int32_t count = 0;
  for (uint32_t k = 0; k < NbConstraints && NbLines > 0; ++k) {
    EvalConstraint(Constraints->p[k]);
    const int32_t found = ConstrainL(k);
    flags[k] = found >= 0;
    if (found < 0) continue;
    ++count;
    const uint32_t pivot = static_cast<uint32_t>(found);
    for (uint32_t row = NbLines + 1; row < NbRay; ++row) {
      // A combination that cannot be represented is kept as it is; the solve goes on with it.
      if (Ray->p[row][0] != 0) SimpleCombine(row, pivot, row, Ray);
    }
  }
  if (NbLines > 0) {
    // A warning, not a failure: the lines stay and are treated like rays.
    std::puts("DUAL(): no basis found!");
    return {0, 1};
  }
  MoveToFront(flags);
  return {count - 1, static_cast<uint32_t>(count)};
}

void SetCurrentConstraint(uint32_t k) {
  WCount = WordOf(k);
  BCount = BitOf(k);
  AdjWCount = WordOf(k + 1);
  AdjBCount = BitOf(k + 1);
  AdjBitmask = 2 * AdjBCount - 1;
  EvalConstraint(Constraints->p[k]);
}

struct Signs {
  uint32_t zero;      ///< first row with status 0; the rows before are positive
  uint32_t negative;  ///< first row with negative status
};

void ExchangeRaysWithMinF(uint32_t r1, uint32_t r2) {
  if (r1 == r2) return;
  ExchangeRays(r1, r2);
  RowExchange(MinF, r1, r2, minftemprow.data());
}

/// Orders the rays by the sign of their status: positive, zero, negative.
Signs PartitionBySign() {
  start_timer(kPartitionTimer);
  uint32_t zero = 0;
  uint32_t row = 0;
  uint32_t negative = NbRay;
  while (row < negative) {
    const int32_t status = Ray->p[row][0];
    if (status > 0) {
      ExchangeRaysWithMinF(zero, row);
      ++zero;
      ++row;
    } else if (status == 0) {
      ++row;
    } else {
      --negative;
      ExchangeRaysWithMinF(negative, row);
    }
  }
  stop_timer(kPartitionTimer);
  return {zero, negative};
}

/// Replaces the negative rays of constraint k by the new rays of the pairs filed under it, and files the
/// pairs of the new rays with their positive parents. Returns nonzero on failure.
int32_t CombinePairs(uint32_t k, uint32_t negative) {
  GenList = CreateLiList();
  const uint32_t oldNbRay = NbRay;
  if (ObtainNewRays(LiListArray[k]) != kNewRaysMade) return 1;
  const uint32_t moved = oldNbRay - negative;
  for (uint32_t row = oldNbRay; row < NbRay; ++row) {
    CopyRow(Ray, row, row - moved);
    CopyRow(Sat, row, row - moved);
  }
  NbRay -= moved;
  if (k + 1 < NbConstraints) {
    RemoveIndices(negative, oldNbRay);
    ResizeIndexRL(negative, NbRay);
    EvalAllConstraints(negative, static_cast<int32_t>(k), static_cast<int32_t>(NbConstraints));
    if (FilePairsWithParents(k, moved) != 0) return 1;
  }
  FreeLiList(GenList);
  GenList = nullptr;
  return 0;
}

/// Orders the rays from row `first` on, those that saturate constraint k, and files the pairs among them.
int32_t PairsOnFacet(uint32_t k, uint32_t first) {
  if (first == NbRay) {
    // The row behind the last ray may be the one that the ray of the starting cone left, which a pair of a
    // system with a constant term still names. That it violates no further constraint is what such a pair
    // finds there.
    if (first < MinF->NbRows) MinF->p[first][0] = maxMinF;
    return 0;
  }
  SortRaysMinF(first, NbRay);
  BuildBorder(first);
  uint32_t group = first;
  for (int32_t next = GetBorder(MinF->p[group][0]); next >= 0; next = GetBorder(MinF->p[group][0])) {
    SortGroupBySaturation(group, static_cast<uint32_t>(next));
    group = static_cast<uint32_t>(next);
  }
  return FilePairsOnFacet(k, first);
}

/// The main iteration from constraint `first` on. Returns nonzero on failure.
int32_t Iterate(uint32_t first) {
  for (uint32_t k = first; k < NbConstraints; ++k) {
    ShowProgress(k);
    SetCurrentConstraint(k);
    const Signs signs = PartitionBySign();
    const bool pairsFiled = LiListArray[k]->nbKeys != 0;
    if (pairsFiled) {
      if (CombinePairs(k, signs.negative) != 0) return 1;
    } else {
      RemoveIndices(signs.negative, NbRay);
      NbRay = signs.negative;
    }
    // An empty cone is a failure before the last constraint only.
    if (k + 1 == NbConstraints) return 0;
    FreeLiList(LiListArray[k]);
    LiListArray[k] = nullptr;
    if (NbRay == 0 || PairsOnFacet(k, signs.zero) != 0) return 1;
    CheckInvariants(k);
  }
  return 0;
}

}  // namespace

int32_t Dual() {
  StartProgress();
  Start();
  const Basis basis = EliminateLines();
  EvalAllConstraints(0, 0, static_cast<int32_t>(NbConstraints));
  int32_t status = FileFirstPairs(basis.last);
  // The last row, the ray of the starting cone, takes no further part; pairs already filed with it stay.
  --NbRay;
  if (status == 0) status = Iterate(basis.first);
  End();
  ClearProgress();
  if (status == 0) return 0;
  std::printf("Error!");
  return 1;
}

}  // namespace siphons
