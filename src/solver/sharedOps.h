// The operations that the double description iteration is made of, on the state of sharedVars.h: evaluating
// constraints (evaluation.cpp), eliminating lines and combining rays (new_rays.cpp), ordering rays by the
// first constraint that they violate (ray_order.cpp), counting and masking saturation bits (bit_rows.cpp).
#pragma once

#include <cstdint>

#include "matrix/matrix.h"
#include "solver/lists.h"

namespace siphons {

// --- evaluation. Sums are 32-bit and wrap around.

/// Writes the value of the constraint row (Dimension + 1 entries, the first unused) into the status of all
/// rays.
void EvalConstraint(const int32_t* row);

/// For the rays from firstRay on: evaluates constraints firstConstraint to endConstraint - 1 up to the first
/// that the ray violates, sets the Sat bits of those that are not saturated (clears none), and MinF to the
/// violated one or maxMinF.
void EvalAllConstraints(uint32_t firstRay, int32_t firstConstraint, int32_t endConstraint);

/// First row from firstRay on that violates none of those constraints and has 1 as its last coordinate, or
/// -1.
int32_t CheckForStartingVertex(uint32_t firstRay, int32_t firstConstraint, int32_t endConstraint);

/// New saturation matrix for the rows of `rays`, of all constraints. The caller owns it.
Matrix* BuildSat(const Matrix* rays);

// Count, for each constraint c, the rays that saturate it into row c, column 0, of `status` (NbConstraints
// rows).

/// Of the rows first to end - 1 of a saturation matrix.
void WriteStatus(const Matrix* sat, uint32_t first, uint32_t end, Matrix* status);
/// Of all lines and rays of the solve.
void WriteStatusConstraints(Matrix* status);
/// Of its rays only.
void WriteStatusConstraints2(Matrix* status);

// --- lines and new rays

/// Turns the first line with a nonzero status into the ray of row NbLines (decreased), its status made
/// positive where 32 bits allow, and makes the lines left saturate the evaluated constraint. Returns that
/// row, or -1 when the first row with a nonzero status is no line. A combination that cannot be represented
/// is left as it is.
int32_t ConstrainL(uint32_t k);

/// Row dest of m = the combination of rows r1 and r2 that has status 0. Nonzero when it cannot be
/// represented.
int32_t SimpleCombine(uint32_t r1, uint32_t r2, uint32_t dest, Matrix* m);

/// The same for a violating ray r1 and a satisfying ray r2 of the current constraint, and the saturation row
/// of dest: all that either does not saturate, of the constraints before the current one.
int32_t Combine(uint32_t r1, uint32_t r2, uint32_t dest, Matrix* m);

enum NewRaysStatus : int32_t {
  kNewRaysMade = 0,
  kCombinationFailed = 1,  ///< not representable, or the pair names a ray that is gone
  kNoRoomForRay = 2,       ///< NbMaxRays reached or no memory
};

/// Appends one ray per pair of the list behind row NbRay, and files it in GenList under its positive parent's
/// row.
int32_t ObtainNewRays(const LiList* list);

/// The same for the companion chain of one key, whose ray is in keyRow.
int32_t CombineNewRays(const LLElement* chain, uint32_t keyRow);

/// New zero matrix with n rows more than m and m's rows copied into it. The caller owns it.
Matrix* AddLines(const Matrix* m, uint32_t n);

// --- order

/// Orders rows first to end - 1 of Ray, Sat and the index tables by MinF, ties as QuickSort leaves them.
void SortRaysMinF(uint32_t first, uint32_t end);

/// Orders rows first to end - 1, of one MinF, by the number of Sat bits set in words 0 to AdjWCount; MinF
/// stays.
void SortGroupBySaturation(uint32_t first, uint32_t end);

/// Writes the first row of each MinF group of the sorted rows from `first` on into Border.
void BuildBorder(uint32_t first);

/// First row of the next non-empty group behind MinF m, or -1.
int32_t GetBorder(int32_t m);

/// Highest MinF that has a group, or -1.
int32_t GetUpperBound();

/// Exchanges two rows in Ray, Sat and the index tables.
void ExchangeRays(uint32_t r1, uint32_t r2);

// --- bit rows

/// Fills LookUpMat, once per process.
void CreateLookUpMat();

/// Number of zero bits of a word, by LookUpMat.
uint32_t ZeroBits(uint32_t word);

/// Fills BitRow2, words k >> 5 to (m - 1) >> 5, with the bits of the constraints c with k < c < m; 0 <= k < m
/// - 1.
void MaskConstraintsBetween(uint32_t k, uint32_t m);

/// Whether rows x and y saturate a common constraint of the mask made for the same k and m.
bool SaturateCommonConstraint(uint32_t k, uint32_t m, uint32_t x, uint32_t y);

/// 1 when x and y saturate a common constraint strictly between k and m (signed numbers), so that the pair
/// need not be filed now: it will be found again when that constraint is processed. Else 0.
int32_t CheckedLater(int32_t k, int32_t m, uint32_t x, uint32_t y);

}  // namespace siphons
