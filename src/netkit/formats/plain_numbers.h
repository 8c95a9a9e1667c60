// Numbers as a strict reader takes them: what every reader takes for the same number, or nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace siphons {

/// Digits without sign and leading zero, up to 9,223,372,036,854,775,807.
std::optional<int64_t> PlainDecimal(std::string_view text);

/// Whether the text is digits without sign and leading zero, of any length.
bool IsPlainDecimal(std::string_view text);

/// A finite real number: an optional sign, digits with at most one point, an optional decimal exponent.
std::optional<double> PlainReal(std::string_view text);

/// The shortest text that PlainReal reads as the number, which is finite.
std::string RealText(double value);

}  // namespace siphons
