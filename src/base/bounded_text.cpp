#include "base/bounded_text.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "base/process_end.h"

namespace siphons {

size_t FormatBounded(std::span<char> buffer, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
  va_end(arguments);
  if (length >= 0 && static_cast<size_t>(length) < buffer.size()) return static_cast<size_t>(length);
  TextTooLong(buffer.size(), buffer.data());
}

void AppendBounded(std::span<char> buffer, const char* text) {
  const size_t length = std::strlen(buffer.data());
  const size_t added = std::strlen(text);
  if (length + added >= buffer.size()) TextTooLong(buffer.size(), buffer.data());
  std::memcpy(buffer.data() + length, text, added + 1);
}

void TextTooLong(size_t size, const char* text) {
  std::fprintf(stderr, "text too long for its buffer of %zu characters: %.60s...\n", size, text);
  AbortProcess();
}

}  // namespace siphons
