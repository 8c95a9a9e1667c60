// Text in buffers of fixed size. A text that does not fit ends the process (a line on standard error, then
// abort); it is never cut short.
#pragma once

#include <span>

namespace siphons {

/// Formats into the buffer as printf does.
[[gnu::format(printf, 2, 3)]] void FormatBounded(std::span<char> buffer, const char* format, ...);

/// Appends a text behind the one that the buffer holds.
void AppendBounded(std::span<char> buffer, const char* text);

}  // namespace siphons
