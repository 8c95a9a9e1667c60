// The divisions that can fault. They fault as a raised signal and not by executing the division, because the
// language leaves the latter undefined and a compiler may then do anything.
#include "base/arithmetic.h"

#include <cmath>
#include <limits>

#include "base/process_end.h"

namespace siphons {

namespace {

constexpr int32_t kLowest = std::numeric_limits<int32_t>::min();

bool Faults(int32_t dividend, int32_t divisor) {
  return divisor == 0 || (divisor == -1 && dividend == kLowest);
}

}  // namespace

int32_t TruncDiv(int32_t dividend, int32_t divisor) {
  if (Faults(dividend, divisor)) ArithmeticFault();
  return dividend / divisor;
}

int32_t TruncRem(int32_t dividend, int32_t divisor) {
  if (Faults(dividend, divisor)) ArithmeticFault();
  return dividend % divisor;
}

int32_t TruncateToInt32(long double value) {
  const long double whole = std::trunc(value);
  const bool fits = whole >= static_cast<long double>(kLowest) &&
                    whole <= static_cast<long double>(std::numeric_limits<int32_t>::max());
  return fits ? static_cast<int32_t>(whole) : kLowest;
}

}  // namespace siphons
