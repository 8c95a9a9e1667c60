// Counting and masking saturation bits. The work rows BitRow2 and BitRow3 must have nc words.
#pragma once

#include <cstdint>

namespace siphons {

/// Fills LookUpMat, in every solve.
void CreateLookUpMat();

/// Number of zero bits of a word, by LookUpMat.
uint32_t ZeroBits(uint32_t word);

/// Fills BitRow2, words k >> 5 to (m - 1) >> 5, with the bits of the constraints c with k < c < m; 0 <= k < m
/// - 1.
void MaskConstraintsBetween(uint32_t k, uint32_t m);

/// Whether rows x and y saturate a common constraint of the mask made for the same k and m.
bool SaturateCommonConstraint(uint32_t k, uint32_t m, uint32_t x, uint32_t y);

/// 1 when x and y saturate a common constraint strictly between k and m, so that the pair need not be filed
/// now: it will be found again when that constraint is processed. Else 0, also when there is no constraint
/// between. A k of -1 stands before the first constraint.
int32_t CheckedLater(int32_t k, int32_t m, uint32_t x, uint32_t y);

}  // namespace siphons
