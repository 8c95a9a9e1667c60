// Formats from outside are taken apart conversion by conversion, because printf itself would read arguments
// that nobody gave it. Each conversion is printed on its own into a bounded buffer: a width may be a billion.
#include "driver/format_text.h"

#include <array>
#include <cerrno>
#include <cstring>

#include "base/bounded_text.h"

namespace siphons {

namespace {

/// What one conversion gives, with its terminator; no more than this is promised to work by the C standard.
constexpr size_t kConversionBuffer = 4096;

/// A conversion of a format text, from its '%' on.
struct Conversion {
  std::string format;  ///< without argument numbers, '*' and length modifiers
  char letter;         ///< '\0' when the text ends before it
  size_t length;       ///< characters that it takes in the text
};

Conversion ParseConversion(const char* text) {
  const char* at = text + 1;
  if (const size_t digits = std::strspn(at, "0123456789"); digits > 0 && at[digits] == '$') at += digits + 1;
  std::string format = "%";
  for (; *at != '\0' && std::strchr("-+ #0'I123456789.*", *at) != nullptr; ++at) {
    if (*at != '*') {
      format += *at;
    } else if (const size_t number = std::strspn(at + 1, "0123456789"); number > 0 && at[1 + number] == '$') {
      at += number + 1;
    }
  }
  at += std::strspn(at, "hlqLjzZt");
  const char letter = *at;
  if (letter != '\0') ++at;
  return {format + letter, letter, static_cast<size_t>(at - text)};
}

/// Whether a width or a precision has more digits than the size of the buffer.
bool IsTooWide(const std::string& format) {
  constexpr size_t kMostDigits = 4;
  size_t digits = 0;
  for (const char c : format) {
    const bool counts = c >= (digits > 0 ? '0' : '1') && c <= '9';
    digits = counts ? digits + 1 : 0;
    if (digits > kMostDigits) return true;
  }
  return false;
}

/// The text of a conversion with zero for its argument.
std::string Converted(const Conversion& conversion) {
  const char* const format = conversion.format.c_str();
  if (conversion.letter == '\0' || conversion.letter == 'n') return "";
  if (conversion.letter == '%') return "%";
  if (std::strchr("mbBdiouxXcCeEfFgGaAsSp", conversion.letter) == nullptr) return format;
  if (IsTooWide(conversion.format)) TextTooLong(kConversionBuffer, format);
  std::array<char, kConversionBuffer> text;
  size_t length;
  errno = 0;  // %m gives the text of the last error
  if (std::strchr("eEfFgGaA", conversion.letter) != nullptr) {
    length = FormatBounded(text, format, 0.0);
  } else if (conversion.letter == 's') {
    length = FormatBounded(text, format, "");
  } else if (conversion.letter == 'S') {
    length = FormatBounded(text, format, L"");
  } else if (conversion.letter == 'm' || conversion.letter == 'p') {
    length = FormatBounded(text, format, nullptr);
  } else {
    length = FormatBounded(text, format, 0);
  }
  return {text.data(), length};
}

}  // namespace

std::string FormattedText(const char* format) {
  std::string formatted;
  while (true) {
    const size_t plain = std::strcspn(format, "%");
    formatted.append(format, plain);
    format += plain;
    if (*format == '\0') return formatted;
    const Conversion conversion = ParseConversion(format);
    formatted += Converted(conversion);
    format += conversion.length;
  }
}

}  // namespace siphons
