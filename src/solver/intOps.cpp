// Euclid's algorithm and what rests on it. The scans stop as soon as the divisor is 1, since no later element
// can change it: a vector that is already normalised, the common case, is read once at most and never
// written.
#include "solver/intOps.h"

#include <cmath>

#include "base/arithmetic.h"

namespace siphons {

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
    // The divisor starts with the sign of the first element's absolute value. That is negative for one case,
    // an element beyond 32 bits, which is taken for -2147483648. If no other element follows, the divisor
    // stays negative and the division reverses the sign of the element.
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
