// Row combination with overflow control.
//
// The integer pass tests every product and no sum. A sum that leaves 32 bits wraps without a message, and the
// report may then be wrong; ArithmeticWrapped remembers it, and the solver relies less on its mathematics
// from then on. At the first product that overflows, the whole row is done again in extended precision, from
// the rows as they are at that moment: where the destination is one of the sources, its columns before the
// overflow already hold sums of the integer pass. Rows whose true entries fit are the normal case and cost
// one 64-bit product per entry.
#include "solver/matrixCombine.h"

#include <cstdio>
#include <limits>
#include <vector>

#include "base/arithmetic.h"
#include "base/process_end.h"
#include "solver/intOps.h"
#include "solver/progress.h"
#include "solver/sharedVars.h"

namespace siphons {

namespace {

static_assert(std::numeric_limits<long double>::digits >= 64,
              "the product of two 32-bit integers must be exact");

bool FitsInt32(int64_t value) {
  return value == static_cast<int32_t>(value);
}

/// Whether x * f leaves 32 bits. The rule is that the wrapped product divided by x is not f again; that
/// division itself faults when it is -2147483648 / -1.
bool ProductOverflows(int32_t x, int32_t f) {
  if (FitsInt32(int64_t{x} * f)) return false;
  if (x == -1) ArithmeticFault();
  return true;
}

/// Also true when the comparison is unordered.
bool Inexact(long double x, long double product, long double f) {
  return x != 0 && !(product / x == f);
}

}  // namespace

int32_t CombineRow(uint32_t a, uint32_t b, uint32_t destination, int32_t fa, int32_t fb, Matrix* m) {
  const int32_t* const rowA = m->p[a];
  const int32_t* const rowB = m->p[b];
  int32_t* const result = m->p[destination];
  bool wrapped = false;
  for (uint32_t k = 1; k < m->NbColumns; ++k) {
    const int32_t x = rowA[k];
    const int32_t y = rowB[k];
    if (ProductOverflows(x, fa) || ProductOverflows(y, fb)) {
      ArithmeticWrapped = true;
      ClearProgress();
      std::puts("? Vector_Combine: multiplication overflow");
      std::puts("retrying with float");
      std::printf("X, Y %x %x\n", static_cast<uint32_t>(WrapMul(x, fa)),
                  static_cast<uint32_t>(WrapMul(y, fb)));
      return CombineRowFloat(a, b, destination, fa, fb, m) != 0 ? 1 : 0;
    }
    const int64_t sum = int64_t{x} * fa + int64_t{y} * fb;
    // The absolute value of the lowest number is negative. A greatest common divisor made of it alone is
    // negative as well, and the division then reverses the signs of the row.
    wrapped = wrapped || !FitsInt32(sum) || sum == std::numeric_limits<int32_t>::min();
    result[k] = WrapToInt32(sum);
  }
  if (wrapped) ArithmeticWrapped = true;
  Vector_Normalize(result, m->NbColumns);
  if (m->NbColumns > 0) result[0] = 0;
  return 0;
}

int32_t CombineRowFloat(uint32_t a, uint32_t b, uint32_t destination, int32_t fa, int32_t fb, Matrix* m) {
  const uint32_t n = m->NbColumns;
  int32_t* const result = m->p[destination];
  std::vector<long double> sums(n);
  for (uint32_t k = 1; k < n; ++k) {
    const long double x = m->p[a][k];
    const long double y = m->p[b][k];
    const long double productX = x * fa;
    const long double productY = y * fb;
    if (Inexact(x, productX, fa) || Inexact(y, productY, fb)) {
      std::puts("? Vector_Combine:float multiplication overflow");
      std::printf("X1, Y1 %Lg %Lg\n", productX, productY);
      return 1;
    }
    sums[k] = productX + productY;
  }
  VNormalize(sums.data(), n);
  for (uint32_t k = 1; k < n; ++k) {
    const int32_t entry = TruncateToInt32(sums[k]);
    if (!(sums[k] - entry == 0)) {
      std::puts("? Vector_Combine: overflow, number too big");
      return 1;
    }
    result[k] = entry;
  }
  if (n > 0) result[0] = 0;
  return 0;
}

}  // namespace siphons
