// From arcs to siphons.
//
// A set S of places is a siphon when every transition with an output place in S has an input place in S. With
// a variable x_p >= 0 per place, transition t asks for
//   W_t (sum of x_p over the input places of t) - (sum of O[t][p] x_p over its other places) >= 0,
// where W_t, the sum of row t of O, is at least the weight that t puts into any set of places. For 0/1
// vectors this is the siphon condition, and the support of every non-negative solution is a siphon; so the
// minimal supports among the extreme rays of the cone are the minimal siphons. Coefficients wrap in 32 bits.
//
// The report keeps the order in which the solver leaves the rays, and that depends on the order of the
// system's rows.
#include "siphons/siphons.h"

#include <algorithm>
#include <utility>

#include "base/arithmetic.h"
#include "matrix/matrixOps.h"
#include "matrix/matrixProcs.h"
#include "solver/inequalities.h"

namespace siphons {

Matrix* Siphon = nullptr;
Matrix* SiphonMarking = nullptr;
int32_t numsiphons = 0;

namespace {

constexpr uint32_t kMaxRays = 100000000;
constexpr int32_t kAtLeastZero = 1;  ///< kind of a row, in column 0: its linear form is at least 0

/// The system: a row per transition, then a row x_p >= 0 per place, of as many as C has rows and columns.
/// Column 1 + p holds the coefficient of place p, the last column the constant term, 0 throughout.
Matrix* SiphonSystem(const Matrix& C, const Matrix& O, const Matrix& I) {
  const uint32_t transitionCount = C.NbRows;
  const uint32_t placeCount = C.NbColumns;
  Matrix* const system = ZeroMatrix(transitionCount + placeCount, placeCount + 2);
  for (uint32_t t = 0; t < transitionCount; ++t) {
    int32_t weight = 0;
    for (uint32_t p = 0; p < placeCount; ++p) weight = WrapAdd(weight, O.p[t][p]);
    int32_t* const row = system->p[t];
    row[0] = kAtLeastZero;
    for (uint32_t p = 0; p < placeCount; ++p) row[1 + p] = I.p[t][p] != 0 ? weight : WrapNeg(O.p[t][p]);
  }
  for (uint32_t p = 0; p < placeCount; ++p) {
    int32_t* const row = system->p[transitionCount + p];
    row[0] = kAtLeastZero;
    row[1 + p] = 1;
  }
  return system;
}

/// The minimal supports of the rays, given one per column, as 0/1 rows.
Matrix* MinimalSupports(const Matrix& rays) {
  Matrix* supports = TransMat(&rays);
  for (uint32_t r = 0; r < supports->NbRows; ++r) {
    int32_t* const row = supports->p[r];
    std::transform(row, row + supports->NbColumns, row, [](int32_t entry) { return entry != 0 ? 1 : 0; });
  }
  ElimEqualRows(&supports);
  ElimNonMinimal(&supports);
  return supports;
}

}  // namespace

uint32_t Siphons(const Matrix* M0, const Matrix* C, const Matrix* O, const Matrix* I) {
  if (C->NbColumns == 0) return 0;
  if (C->NbRows == 0) return 1;

  Matrix* system = SiphonSystem(*C, *O, *I);
  ElimEqualRows(&system);
  ElimSimpleConstraints(&system);
  SortRows(system);
  Matrix* solution = nullptr;
  const uint32_t rayCount = SolveInequationSystem(&solution, system, kMaxRays);
  const OwnedMatrix rays(solution);
  FreeMat(system);

  // An earlier result goes only when the new one is there: where memory runs out in between, it stays whole.
  OwnedMatrix found(rayCount == 0 ? BuildMat(0, 0) : MinimalSupports(*rays));
  OwnedMatrix marking(MultMat(found.get(), M0));
  FreeMat(std::exchange(Siphon, found.release()));
  FreeMat(std::exchange(SiphonMarking, marking.release()));
  return Siphon->NbRows;
}

}  // namespace siphons
