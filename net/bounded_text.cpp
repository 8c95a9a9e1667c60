#include "net/bounded_text.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "matrix/process_end.h"

namespace siphons {

void FormatBounded(std::span<char> buffer, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
  va_end(arguments);
  if (length >= 0 && static_cast<size_t>(length) < buffer.size()) return;
  std::fprintf(stderr, "text too long for its buffer of %zu characters: %.60s...\n", buffer.size(),
               buffer.data());
  AbortProcess();
}

void AppendBounded(std::span<char> buffer, const char* text) {
  FormatBounded(buffer.subspan(std::strlen(buffer.data())), "%s", text);
}

}  // namespace siphons
