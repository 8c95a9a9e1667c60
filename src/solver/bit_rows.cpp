// Zero bits are looked up 16 at a time.
#include "solver/bit_rows.h"

#include "solver/sharedVars.h"

namespace siphons {

void CreateLookUpMat() {
  constexpr uint32_t kHalfWords = 65536;
  LookUpMat.assign(kHalfWords, 16);
  for (uint32_t v = 1; v < kHalfWords; ++v) LookUpMat[v] = LookUpMat[v >> 1] - (v & 1);
}

uint32_t ZeroBits(uint32_t word) {
  return LookUpMat[word & 0xFFFF] + LookUpMat[word >> 16];
}

void MaskConstraintsBetween(uint32_t k, uint32_t m) {
  const uint32_t first = WordOf(k);
  const uint32_t last = WordOf(m - 1);
  for (uint32_t w = first; w <= last; ++w) {
    BitRow2[w] = w == first ? BitOf(k) - 1 : 0xFFFFFFFF;  // behind k
    BitRow3[w] = w == last ? BitOf(m - 1) - 1 : 0;        // from m on
    BitRow2[w] ^= BitRow3[w];
  }
}

bool SaturateCommonConstraint(uint32_t k, uint32_t m, uint32_t x, uint32_t y) {
  const uint32_t* const a = SatWords(x);
  const uint32_t* const b = SatWords(y);
  for (uint32_t w = WordOf(k); w <= WordOf(m - 1); ++w) {
    if ((~(a[w] | b[w]) & BitRow2[w]) != 0) return true;
  }
  return false;
}

int32_t CheckedLater(int32_t k, int32_t m, uint32_t x, uint32_t y) {
  if (m - 1 <= k || k < 0) return 0;
  const uint32_t current = static_cast<uint32_t>(k);
  const uint32_t target = static_cast<uint32_t>(m);
  MaskConstraintsBetween(current, target);
  if (!SaturateCommonConstraint(current, target, x, y)) return 0;
  ++checkedlater;
  return 1;
}

}  // namespace siphons
