// One pass over the bytes; a sequence of bytes counts as a character only when it is the shortest one for a
// code point that XML allows.
#include "netkit/formats/markup_text.h"

#include <cstddef>
#include <cstdint>

namespace siphons {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// The bytes of the character that the text begins with; 0 when it begins with none.
size_t CharacterLength(std::string_view text) {
  const auto byte = [text](size_t i) { return static_cast<uint32_t>(static_cast<unsigned char>(text[i])); };
  const uint32_t first = byte(0);
  if (first < 0x80) return first >= 0x20 || first == '\t' || first == '\n' ? 1 : 0;
  const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
  uint32_t code = first & (0x7FU >> length);
  for (size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0U) != 0x80) return 0;
    code = code << 6U | (byte(i) & 0x3FU);
  }
  constexpr uint32_t kLeastOfThree = 0x800, kLeastOfFour = 0x10000, kGreatest = 0x10FFFF;
  const bool isShortest = length == 2 || code >= (length == 3 ? kLeastOfThree : kLeastOfFour);
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  const bool isForbidden = code == 0xFFFE || code == 0xFFFF;
  return isShortest && !isSurrogate && !isForbidden && code <= kGreatest ? length : 0;
}

}  // namespace

std::string MarkupText(std::string_view text) {
  std::string markup;
  while (!text.empty()) {
    const size_t length = CharacterLength(text);
    if (length == 0) {
      markup += kReplacement;
    } else if (text[0] == '&') {
      markup += "&amp;";
    } else if (text[0] == '<') {
      markup += "&lt;";
    } else if (text[0] == '>') {
      markup += "&gt;";
    } else if (text[0] == '"') {
      markup += "&quot;";
    } else {
      markup += text.substr(0, length);
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return markup;
}

}  // namespace siphons
