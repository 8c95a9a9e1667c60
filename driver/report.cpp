// The siphon report. Place names are format text: "%%" writes "%", and every other conversion takes zero for
// the argument that it does not have, so that a strange name can only spoil its own place in the report.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "driver/siphondisplay.h"
#include "structure/struct_vars.h"

namespace siphons {

namespace {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OwnedFile = std::unique_ptr<std::FILE, FileCloser>;

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

/// Writes a conversion with zero for its argument.
void WriteConversion(std::FILE* file, const Conversion& conversion) {
  const char* const format = conversion.format.c_str();
  if (conversion.letter == '\0' || conversion.letter == 'n') return;
  if (conversion.letter == 'm') {
    errno = 0;
    std::fprintf(file, format, nullptr);
  } else if (std::strchr("bBdiouxXcC", conversion.letter) != nullptr) {
    std::fprintf(file, format, 0);
  } else if (std::strchr("eEfFgGaA", conversion.letter) != nullptr) {
    std::fprintf(file, format, 0.0);
  } else if (conversion.letter == 's') {
    std::fprintf(file, format, "");
  } else if (conversion.letter == 'S') {
    std::fprintf(file, format, L"");
  } else if (conversion.letter == 'p') {
    std::fprintf(file, format, nullptr);
  } else if (conversion.letter == '%') {
    std::fputc('%', file);
  } else {
    std::fputs(format, file);
  }
}

void WriteName(std::FILE* file, const char* name) {
  while (*name != '\0') {
    const size_t plain = std::strcspn(name, "%");
    std::fwrite(name, 1, plain, file);
    name += plain;
    if (*name == '\0') break;
    const Conversion conversion = ParseConversion(name);
    WriteConversion(file, conversion);
    name += conversion.length;
  }
}

void WriteSiphon(std::FILE* file, const int32_t* members, int32_t marking) {
  std::fprintf(file, "MARKING: %4i ", marking);
  std::fputs("{ ", file);
  for (int32_t p = 0; p < no_places; ++p) {
    if (members[p] == 0) continue;
    WriteName(file, places[p].name);
    std::fputc(' ', file);
  }
  std::fputs("}\n", file);
}

void WriteText(std::FILE* file, const Report& report) {
  std::fputs("Calculation of Siphons:\n", file);
  std::fprintf(file, "Time passed with computation: %8.2f s\n", report.seconds);
  if (report.siphonCount == 0) {
    std::fputs(" There are no siphons\n", file);
    return;
  }
  std::fprintf(file, "No. of siphons = %i \n", report.siphonCount);
  for (int32_t r = 0; r < report.siphonCount; ++r) {
    WriteSiphon(file, report.siphons->p[r], report.markings->p[r][0]);
  }
}

}  // namespace

bool WriteReport(const char* path, const Report& report) {
  OwnedFile file(std::fopen(path, "w"));
  if (file == nullptr) return false;
  WriteText(file.get(), report);
  const bool written = std::ferror(file.get()) == 0;
  const bool closed = std::fclose(file.release()) == 0;
  if (written && closed) return true;
  file.reset(std::fopen(path, "w"));
  return false;
}

}  // namespace siphons
