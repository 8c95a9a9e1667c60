#include "netkit/formats/xml_text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace siphons {

namespace {

constexpr int64_t kDeepest = 200;
constexpr int64_t kMostMarks = 10'000'000;  // 64 bytes and more each, once they are parsed
constexpr size_t kLongestText = size_t{1} << 28;

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

std::string FromLatin1(const std::string& text) {
  std::string converted;
  for (const char character : text) {
    const auto c = static_cast<unsigned char>(character);
    if (c < 0x80) {
      converted += character;
    } else {
      converted += static_cast<char>(0xC0 | (c >> 6));
      converted += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return converted;
}

/// Whether the eight bytes at the address are ASCII, without a NUL.
bool AreAscii(const char* bytes) {
  constexpr uint64_t kOnes = 0x0101010101010101u, kHighBits = kOnes << 7;
  uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  // Without a high bit set, a byte of the difference has it where the byte is 0 or one lower down is.
  return ((word | (word - kOnes)) & kHighBits) == 0;
}

/// The offset of the first byte that is no UTF-8 (RFC 3629), or npos.
size_t FirstFaultyByte(std::string_view text) {
  for (size_t i = 0; i < text.size();) {
    if (i + sizeof(uint64_t) <= text.size() && AreAscii(text.data() + i)) {
      i += sizeof(uint64_t);
      continue;
    }
    const auto byte = [&text](size_t at) {
      return at < text.size() ? static_cast<unsigned char>(text[at]) : 0u;
    };
    const unsigned lead = byte(i);
    if (lead > 0 && lead < 0x80) {
      ++i;
      continue;
    }
    const size_t length = lead >= 0xC2 && lead < 0xE0   ? 2
                          : lead >= 0xE0 && lead < 0xF0 ? 3
                          : lead >= 0xF0 && lead < 0xF5 ? 4
                                                        : 0;
    if (length == 0) return i;
    for (size_t k = 1; k < length; ++k) {
      if ((byte(i + k) & 0xC0u) != 0x80u) return i;
    }
    const bool overlong = (lead == 0xE0 && byte(i + 1) < 0xA0) || (lead == 0xF0 && byte(i + 1) < 0x90);
    const bool beyond = (lead == 0xED && byte(i + 1) >= 0xA0) || (lead == 0xF4 && byte(i + 1) >= 0x90);
    if (overlong || beyond) return i;
    i += length;
  }
  return std::string_view::npos;
}

/// The encoding that the XML declaration names, in small letters; empty without one.
std::string DeclaredEncoding(std::string_view text) {
  if (!text.starts_with("<?xml")) return "";
  const std::string_view declaration = text.substr(0, text.find("?>"));
  const size_t at = declaration.find("encoding");
  if (at == std::string_view::npos) return "";
  const size_t open = declaration.find_first_of("\"'", at);
  if (open == std::string_view::npos) return "";
  return LowerCase(declaration.substr(open + 1, declaration.find(declaration[open], open + 1) - open - 1));
}

bool IsKnownReference(std::string_view name) {
  constexpr std::array<std::string_view, 5> kNames = {"lt", "gt", "amp", "apos", "quot"};
  if (std::find(kNames.begin(), kNames.end(), name) != kNames.end()) return true;
  if (!name.starts_with("#")) return false;
  const bool isHexadecimal = name.starts_with("#x");
  name.remove_prefix(isHexadecimal ? 2 : 1);
  return !name.empty() && name.size() < 8 &&
         name.find_first_not_of(isHexadecimal ? "0123456789abcdefABCDEF" : "0123456789") ==
             std::string_view::npos;
}

/// The offset of the first of the characters from `from` on, or npos. As fast as the memory, which
/// find_first_of, with a call for every byte, is not.
template <char... characters>
size_t FirstOf(std::string_view text, size_t from) {
  for (; from < text.size(); ++from) {
    if (((text[from] == characters) || ...)) return from;
  }
  return std::string_view::npos;
}

/// Goes over the marks of the text, outside comments, character data and processing instructions.
class MarkScan {
 public:
  explicit MarkScan(std::string_view text) : text_(text) {}

  /// The offset of the first fault, whose message it tells, or npos.
  size_t FirstFault(std::string& message) {
    for (size_t i = FirstOf<'<', '&'>(text_, 0); i < text_.size(); i = FirstOf<'<', '&'>(text_, i)) {
      const size_t start = i;
      message = text_[i] == '&' ? TakeReference(i) : TakeMark(i);
      if (message.empty() && marks_ > kMostMarks)
        message = "more than 10000000 elements and attributes; this is no net that can be analysed";
      if (!message.empty()) return start;
    }
    return std::string_view::npos;
  }

 private:
  std::string TakeReference(size_t& i) const {
    const size_t end = text_.find_first_of("; <&\n", ++i);
    if (end < text_.size() && text_[end] == ';' && IsKnownReference(text_.substr(i, end - i))) return "";
    return "an entity that nobody declares; write the character itself, or &amp; for &";
  }

  std::string TakeMark(size_t& i) {
    const std::string_view rest = text_.substr(i);
    ++marks_;
    for (const auto& [open, close] :
         {std::pair<std::string_view, std::string_view>{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}}) {
      if (!rest.starts_with(open)) continue;
      i = text_.find(close, i + open.size());
      return i == std::string_view::npos
                 ? "a " + std::string(open) + " without " + std::string(close) + "; is the file cut short?"
                 : "";
    }
    if (rest.starts_with("<!")) return "a document type, which PNML has not; remove it";
    if (rest.starts_with("</")) {
      --depth_;
    } else {
      if (++depth_ > kDeepest) return "elements are nested deeper than 200; this is no PNML file";
    }
    const size_t end = EndOfTag(i);
    if (end == std::string_view::npos) return "a tag without its end; is the file cut short?";
    const std::string_view tag = text_.substr(0, end);
    for (size_t at = tag.find('&', i); at < end; at = tag.find('&', at)) {
      if (std::string fault = TakeReference(at); !fault.empty()) return fault;
    }
    i = end;
    if (text_[i - 1] == '/' && !rest.starts_with("</")) --depth_;
    return "";
  }

  /// The offset of the tag's '>', outside quotation marks. Counts the attributes.
  size_t EndOfTag(size_t i) {
    const auto next = [this](size_t from) { return FirstOf<'>', '"', '\''>(text_, from); };
    for (i = next(i); i < text_.size(); i = next(i + 1)) {
      if (text_[i] == '>') return i;
      i = text_.find(text_[i], i + 1);
      ++marks_;
      if (i == std::string_view::npos) break;
    }
    return std::string_view::npos;
  }

  std::string_view text_;
  int64_t depth_ = 0;
  int64_t marks_ = 0;  ///< what the parser may make a record of: tags, attributes, character data
};

}  // namespace

LineTable::LineTable(const std::string& text) : starts_{0} {
  starts_.reserve(static_cast<size_t>(std::count(text.begin(), text.end(), '\n')) + 1);
  for (size_t i = text.find('\n'); i != std::string::npos; i = text.find('\n', i + 1)) {
    starts_.push_back(static_cast<int64_t>(i) + 1);
  }
}

SourcePosition LineTable::Where(int64_t offset) const {
  if (offset < 0) return {};
  const auto line = std::upper_bound(starts_.begin(), starts_.end(), offset) - 1;
  return {static_cast<int32_t>(line - starts_.begin()) + 1, static_cast<int32_t>(offset - *line) + 1};
}

bool PrepareXml(std::string& text, Diagnostics& diagnostics) {
  if (text.size() > kLongestText || std::count(text.begin(), text.end(), '\n') > kMostMarks) {
    diagnostics.Error(
        {}, "the file is longer than 256 MiB or 10000000 lines; this is no net that can be analysed");
    return false;
  }
  const std::string encoding = DeclaredEncoding(text);
  if (encoding == "iso-8859-1" || encoding == "latin1") {
    text = FromLatin1(text);
  } else if (!encoding.empty() && encoding != "utf-8" && encoding != "utf8" && encoding != "us-ascii") {
    diagnostics.Error({1, 1}, "the encoding " + Quoted(encoding) + " is not read; save the file as UTF-8");
    return false;
  }
  const size_t faulty = FirstFaultyByte(text);
  if (faulty != std::string::npos) {
    diagnostics.Error(LineTable(text).Where(static_cast<int64_t>(faulty)),
                      "a byte that is no UTF-8; save the file as UTF-8");
    return false;
  }
  std::string message;
  const size_t fault = MarkScan(text).FirstFault(message);
  if (fault == std::string_view::npos) return true;
  diagnostics.Error(LineTable(text).Where(static_cast<int64_t>(fault)), message);
  return false;
}

}  // namespace siphons
