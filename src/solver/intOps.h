// Greatest common divisors of integers and vectors. Rays are kept divided by their greatest
// common divisor: entries as small as the ray allows are what keeps row combinations inside 32 bits.
//
// Element 0 of a vector is a ray's status and never takes part: vectors are elements 1 to n - 1. Absolute
// values are 32-bit ones, so that of -2147483648 is itself. Nothing is reported; an impossible division ends
// the process (base/arithmetic.h).
#pragma once

#include <cstdint>

namespace siphons {

/// Greatest common divisor, whatever the signs; Gcd(0, b) = abs(b).
int32_t Gcd(int32_t a, int32_t b);

/// Greatest common divisor of elements 1 to n - 1; 0 when there are none or all are 0.
int32_t VectorGcd(const int32_t* vector, uint32_t n);

/// Divides elements 1 to n - 1 by their greatest common divisor. Signs stay.
void Vector_Normalize(int32_t* vector, uint32_t n);

// The same for extended-precision numbers; every remainder is taken in double precision.

long double GGcd(long double a, long double b);

/// Greatest common divisor of elements 1 to n - 1, each first converted to 32 bits (base/arithmetic.h).
long double VGcd(const long double* vector, uint32_t n);

/// Divides elements 1 to n - 1 by VGcd. A vector of zeros is divided by 0 and becomes NaN.
void VNormalize(long double* vector, uint32_t n);

}  // namespace siphons
