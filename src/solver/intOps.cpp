// Euclid's algorithm and what rests on it. The scans stop as soon as the divisor is 1, since no later element
// can change it: a vector that is already normalised, the common case, is read once at most and never
// written.
#include "solver/intOps.h"

#include <cmath>

#include "base/arithmetic.h"

namespace siphons {

namespace {

/// a / b truncated, less 1 where the wrapped product says that the quotient is negative and not a whole
/// number.
int32_t RoundedDown(int32_t a, int32_t b) {
  const int32_t q = TruncDiv(a, b);
  const bool down = WrapMul(a, b) < 0 && (TruncRem(WrapAbs(a), WrapAbs(b)) != 0 || q == 0);
  return down ? WrapSub(q, 1) : q;
}

}  // namespace

int32_t Gcd(int32_t a, int32_t b) {
  while (a != 0) {
    const int32_t remainder = TruncRem(b, a);
    b = a;
    a = remainder;
  }
  return WrapAbs(b);
}

int32_t VectorGcd(const int32_t* vector, uint32_t n) {
  int32_t g = 0;
  for (uint32_t k = 1; k < n && g != 1; ++k) {
    if (vector[k] != 0) g = Gcd(g, WrapAbs(vector[k]));
  }
  return g;
}

void Vector_Normalize(int32_t* vector, uint32_t n) {
  const int32_t g = VectorGcd(vector, n);
  if (g == 0 || g == 1) return;
  for (uint32_t k = 1; k < n; ++k) vector[k] = TruncDiv(vector[k], g);
}

int32_t RSV(int32_t a, int32_t b) {
  const int32_t x = WrapAbs(a);
  const int32_t y = WrapAbs(b);
  return x > y ? 1 : x == y ? 0 : -1;
}

int32_t INT(int32_t a, int32_t b) {
  return RoundedDown(a, b);
}

int32_t NEAREST_INT(int32_t a, int32_t b) {
  const int32_t q = RoundedDown(a, b);
  const int32_t remainder = WrapSub(a, WrapMul(b, q));
  return WrapAbs(WrapMul(2, remainder)) > WrapAbs(b) ? WrapAdd(q, 1) : q;
}

long double GGcd(long double a, long double b) {
  while (a != 0) {
    const long double remainder = std::fmod(static_cast<double>(b), static_cast<double>(a));
    b = a;
    a = remainder;
  }
  return std::fabs(b);
}

long double VGcd(const long double* vector, uint32_t n) {
  long double g = 0;
  for (uint32_t k = 1; k < n && g != 1; ++k) {
    if (vector[k] == 0) continue;
    const long double element = WrapAbs(TruncateToInt32(vector[k]));
    // The first divisor keeps its sign, and only 2^31 out of range has one: a row that holds nothing else is
    // turned round by the division.
    g = g == 0 ? element : GGcd(g, element);
  }
  return g;
}

void VNormalize(long double* vector, uint32_t n) {
  const long double g = VGcd(vector, n);
  if (g == 1) return;
  for (uint32_t k = 1; k < n; ++k) vector[k] /= g;
}

}  // namespace siphons
