// The siphon report. Place names are format text: "%%" writes "%", and every other conversion takes zero for
// the argument that it does not have, so that a strange name can only spoil its own place in the report. The
// names are formatted before the report is opened: one that is too long leaves an older report as it is.
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "base/bounded_text.h"
#include "base/output_file.h"
#include "driver/siphondisplay.h"
#include "structure/struct_vars.h"

namespace siphons {

namespace {

/// What one conversion gives, with its end: C promises no more, and a width may be a billion.
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
  errno = 0;  // what %m tells
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

std::string FormattedName(const char* name) {
  std::string formatted;
  while (true) {
    const size_t plain = std::strcspn(name, "%");
    formatted.append(name, plain);
    name += plain;
    if (*name == '\0') return formatted;
    const Conversion conversion = ParseConversion(name);
    formatted += Converted(conversion);
    name += conversion.length;
  }
}

/// The formatted names of the places that are in a siphon; the others stay empty.
std::vector<std::string> FormattedNames(const Report& report) {
  std::vector<std::string> names(static_cast<size_t>(no_places));
  for (size_t p = 0; p < names.size(); ++p) {
    for (int32_t r = 0; r < report.siphonCount; ++r) {
      if (report.siphons->p[r][p] == 0) continue;
      names[p] = FormattedName(places[p].name);
      break;
    }
  }
  return names;
}

void WriteSiphon(std::FILE* file, const std::vector<std::string>& names, const int32_t* members,
                 int32_t marking) {
  std::fprintf(file, "MARKING: %4i ", marking);
  std::fputs("{ ", file);
  for (size_t p = 0; p < names.size(); ++p) {
    if (members[p] == 0) continue;
    std::fwrite(names[p].data(), 1, names[p].size(), file);
    std::fputc(' ', file);
  }
  std::fputs("}\n", file);
}

void WriteText(std::FILE* file, const Report& report, const std::vector<std::string>& names) {
  std::fputs("Calculation of Siphons:\n", file);
  std::fprintf(file, "Time passed with computation: %8.2f s\n", report.seconds);
  if (report.siphonCount == 0) {
    std::fputs(" There are no siphons\n", file);
    return;
  }
  std::fprintf(file, "No. of siphons = %i \n", report.siphonCount);
  for (int32_t r = 0; r < report.siphonCount; ++r) {
    WriteSiphon(file, names, report.siphons->p[r], report.markings->p[r][0]);
  }
}

}  // namespace

bool WriteReport(const char* path, const Report& report) {
  const std::vector<std::string> names = FormattedNames(report);
  return WriteWholeFile(path, [&](std::FILE* file) { WriteText(file, report, names); });
}

}  // namespace siphons
