#include "tests/reference/integers.h"

#include <cmath>
#include <cstdio>

namespace reference {

namespace {

/// Toward zero; the lowest number for what 32 bits cannot hold.
int32_t Truncated(long double value) {
  const bool fits = value > -2147483649.0L && value < 2147483648.0L;
  return fits ? static_cast<int32_t>(value) : std::numeric_limits<int32_t>::min();
}

/// The divisor of a row in extended precision. The first entry that is not 0 starts it, sign and all.
long double DivisorOf(const std::vector<long double>& row) {
  long double g = 0;
  for (size_t k = 1; k < row.size() && g != 1; ++k) {
    if (row[k] == 0) continue;
    long double b = Abs(Truncated(row[k]));
    if (g == 0) {
      g = b;
      continue;
    }
    for (long double remainder = 1; remainder != 0;) {
      remainder = std::fmod(static_cast<double>(b), static_cast<double>(g));
      b = g;
      g = remainder;
    }
    g = std::fabs(b);
  }
  return g;
}

int32_t CombineRowFloat(uint32_t a, uint32_t b, uint32_t destination, int32_t fa, int32_t fb, Rows& rows,
                        std::string& output) {
  const size_t n = rows[a].size();
  std::vector<long double> sums(n);
  for (size_t k = 1; k < n; ++k) {
    sums[k] = static_cast<long double>(rows[a][k]) * fa + static_cast<long double>(rows[b][k]) * fb;
  }
  const long double g = DivisorOf(sums);
  for (size_t k = 1; k < n && g != 1; ++k) sums[k] /= g;
  for (size_t k = 1; k < n; ++k) {
    const int32_t entry = Truncated(sums[k]);
    if (!(sums[k] - entry == 0)) {
      output += "? Vector_Combine: overflow, number too big\n";
      return 1;
    }
    rows[destination][k] = entry;
  }
  rows[destination][0] = 0;
  return 0;
}

}  // namespace

int32_t Gcd(int32_t a, int32_t b) {
  if (a == 0) return Abs(b);
  for (int32_t remainder = 1; remainder != 0;) {
    remainder = Rem(b, a);
    b = a;
    a = remainder;
  }
  return Abs(b);
}

void Normalize(Row& row) {
  int32_t g = 0;
  for (size_t k = 1; k < row.size(); ++k) {
    if (row[k] != 0) g = g == 0 ? Abs(row[k]) : Gcd(g, Abs(row[k]));
    if (g == 1) return;
  }
  for (size_t k = 1; k < row.size() && g != 0; ++k) row[k] = Div(row[k], g);
}

int32_t CombineRow(uint32_t a, uint32_t b, uint32_t destination, int32_t fa, int32_t fb, Rows& rows,
                   std::string& output) {
  for (size_t k = 1; k < rows[a].size(); ++k) {
    const int32_t x = rows[a][k], y = rows[b][k], productX = Mul(x, fa), productY = Mul(y, fb);
    if ((x != 0 && Div(productX, x) != fa) || (y != 0 && Div(productY, y) != fb)) {
      char line[40];
      std::snprintf(line, sizeof line, "X, Y %x %x\n", static_cast<uint32_t>(productX),
                    static_cast<uint32_t>(productY));
      output += "? Vector_Combine: multiplication overflow\nretrying with float\n" + std::string(line);
      return CombineRowFloat(a, b, destination, fa, fb, rows, output);
    }
    rows[destination][k] = Add(productX, productY);
  }
  Normalize(rows[destination]);
  rows[destination][0] = 0;
  return 0;
}

}  // namespace reference
