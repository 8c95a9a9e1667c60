#include "netkit/formats/plain_numbers.h"

#include <array>
#include <charconv>
#include <string>
#include <system_error>

namespace siphons {

bool IsPlainDecimal(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos &&
         (text[0] != '0' || text.size() == 1);
}

std::optional<int64_t> PlainDecimal(std::string_view text) {
  int64_t value = 0;
  if (!IsPlainDecimal(text)) return std::nullopt;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc() ? std::optional(value) : std::nullopt;
}

std::optional<double> PlainReal(std::string_view text) {
  if (text.find_first_not_of("0123456789+-.eE") != std::string_view::npos) return std::nullopt;
  if (text.starts_with("+") && !text.starts_with("+-")) text.remove_prefix(1);
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  return result.ec == std::errc() && result.ptr == end ? std::optional(value) : std::nullopt;
}

std::string RealText(double value) {
  constexpr size_t kLongest = 32;
  std::array<char, kLongest> text;
  const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
  return {text.data(), result.ptr};
}

}  // namespace siphons
