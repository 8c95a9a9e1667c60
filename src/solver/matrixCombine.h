// The one arithmetic step of the double description method: a new row as an integer combination of two.
#pragma once

#include <cstdint>

#include "matrix/matrix.h"

namespace siphons {

/// Row `destination` of m = fa * row a + fb * row b in columns 1 on, divided by the greatest common divisor
/// of those entries, and 0 in column 0. The destination may be a or b. Returns 0, or 1 when the result cannot
/// be represented: the row then holds partial results. Every overflow is reported on standard output.
int32_t CombineRow(uint32_t a, uint32_t b, uint32_t destination, int32_t fa, int32_t fb, Matrix* m);

/// The same in extended precision, where products and sums of 32-bit integers are exact: it fails only when
/// an entry is no 32-bit integer after the division, or when every entry is 0.
int32_t CombineRowFloat(uint32_t a, uint32_t b, uint32_t destination, int32_t fa, int32_t fb, Matrix* m);

}  // namespace siphons
