// 32-bit integers as the reference computes with them.
#pragma once

#include <cstdint>
#include <limits>

#include "tests/reference/reference.h"

namespace reference {

inline int32_t Low(int64_t value) {
  return static_cast<int32_t>(static_cast<uint32_t>(value));
}
inline int32_t Add(int32_t a, int32_t b) {
  return Low(int64_t{a} + b);
}
inline int32_t Mul(int32_t a, int32_t b) {
  return Low(int64_t{a} * b);
}
inline int32_t Abs(int32_t a) {
  return a < 0 ? Mul(a, -1) : a;
}

/// a / b toward zero.
inline int32_t Div(int32_t a, int32_t b) {
  if (b == 0 || (a == std::numeric_limits<int32_t>::min() && b == -1)) throw ArithmeticFault();
  return a / b;
}
inline int32_t Rem(int32_t a, int32_t b) {
  return a - Div(a, b) * b;
}

/// The products of a constraint and a ray, added up from entry 1 on.
inline int32_t Value(const Row& constraint, const Row& ray) {
  int32_t sum = 0;
  for (size_t j = 1; j < ray.size(); ++j) sum = Add(sum, Mul(constraint[j], ray[j]));
  return sum;
}

}  // namespace reference
