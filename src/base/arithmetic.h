// 32-bit integer arithmetic as the whole program uses it: sums and products wrap around in two's complement,
// divisions do what the processor's division does. Everything that may leave the 32-bit range goes through a
// function of this header, so that the language's undefined behaviour is never reached and a wrap is always a
// wrap on purpose.
#pragma once

#include <cstdint>

namespace siphons {

constexpr int32_t WrapAdd(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

constexpr int32_t WrapSub(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

constexpr int32_t WrapMul(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}

constexpr int32_t WrapNeg(int32_t a) {
  return WrapSub(0, a);
}

/// The absolute value; that of -2147483648 is -2147483648 again.
constexpr int32_t WrapAbs(int32_t a) {
  return a < 0 ? WrapNeg(a) : a;
}

/// The low 32 bits of a wider integer.
constexpr int32_t WrapToInt32(int64_t a) {
  return static_cast<int32_t>(static_cast<uint32_t>(a));
}

/// Quotient rounded toward zero. A zero divisor, or -2147483648 / -1, ends the process with SIGFPE.
int32_t TruncDiv(int32_t dividend, int32_t divisor);

/// Remainder with the dividend's sign. A zero divisor, or -2147483648 rem -1, ends the process with SIGFPE.
int32_t TruncRem(int32_t dividend, int32_t divisor);

/// The real number truncated toward zero; -2147483648 for what 32 bits cannot hold, NaN included.
int32_t TruncateToInt32(long double value);

}  // namespace siphons
