// Text in buffers of fixed size. A text that does not fit ends the process (a line on standard error, then
// abort); it is never cut short.
#pragma once

#include <cstddef>
#include <span>

namespace siphons {

/// Formats into the buffer as printf does. Returns the length of the text.
[[gnu::format(printf, 2, 3)]] size_t FormatBounded(std::span<char> buffer, const char* format, ...);

/// Appends a text behind the one that the buffer holds.
void AppendBounded(std::span<char> buffer, const char* text);

/// Ends the process for a text, given as far as it is known, that does not fit a buffer of this size.
[[noreturn]] void TextTooLong(size_t size, const char* text);

}  // namespace siphons
