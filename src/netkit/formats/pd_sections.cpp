#include "netkit/formats/pd_sections.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "netkit/formats/near_names.h"

namespace siphons {

namespace {

constexpr size_t kKeywords = 17;
constexpr std::array<std::string_view, kKeywords> kTexts = {"NET_TYPE:",
                                                            "DESCRIPTION:",
                                                            "PLACES:",
                                                            "TRANSITIONS:",
                                                            "DEFINITION_PARAMETERS:",
                                                            "REWARD_MEASURES:",
                                                            "DELAYPAR_DEF",
                                                            "DEFINITION_PARAMETER",
                                                            "PLACE",
                                                            "TRANSITION",
                                                            "WEIGHT",
                                                            "EXP_DELAY",
                                                            "DET_DELAY",
                                                            "GEN_DELAY",
                                                            "FUNCTION",
                                                            "CARDINALITY",
                                                            "MEASURE"};

/// What the report program's loader holds of a section, its keyword included.
constexpr size_t kLongestSection = 102400;

constexpr std::string_view kBlanks = " \t\r\v\f";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// The keyword that begins a section with the line: the first one that the line starts with.
std::optional<PdKeyword> KeywordOf(const PdLine& line) {
  const auto* const found = std::find_if(
      kTexts.begin(), kTexts.end(), [&line](std::string_view text) { return line.text.starts_with(text); });
  if (found == kTexts.end()) return std::nullopt;
  return static_cast<PdKeyword>(found - kTexts.begin());
}

std::string_view FirstWord(std::string_view text) {
  return text.substr(0, text.find_first_of(kBlanks));
}

/// Reports the first of each kind of character that no file has for good.
void ReportCharacters(std::string_view source, Diagnostics& diagnostics) {
  std::array<bool, 256> reported{};
  int32_t line = 1;
  size_t lineStart = 0;
  for (size_t i = 0; i < source.size(); ++i) {
    const auto c = static_cast<unsigned char>(source[i]);
    if (c == '\n') {
      ++line;
      lineStart = i + 1;
    }
    const bool usual = (c >= ' ' && c != 0x7F) || c == '\t' || c == '\n';
    if (usual || reported[c]) continue;
    reported[c] = true;
    const SourcePosition where{line, static_cast<int32_t>(i - lineStart) + 1};
    if (c == '\r') {
      diagnostics.Error(where, "a carriage return ends the line; save the file with Unix line ends");
    } else {
      diagnostics.Error(where, c == 0 ? "a NUL byte, which ends the line for the report program; remove it"
                                      : "a control character with code " + std::to_string(c) + "; remove it");
    }
  }
}

}  // namespace

std::string_view TextOf(PdKeyword keyword) {
  return kTexts[static_cast<size_t>(keyword)];
}

std::optional<PdKeyword> NearestKeyword(std::string_view word) {
  constexpr size_t kShortest = 4;  // shorter words are near to nearly everything
  if (word.size() < kShortest) return std::nullopt;
  std::string upper(word);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  const std::string_view nearest = NearestName(upper, {kTexts.begin(), kTexts.end()});
  if (nearest.empty()) return std::nullopt;
  return static_cast<PdKeyword>(std::find(kTexts.begin(), kTexts.end(), nearest) - kTexts.begin());
}

PdSectionCutter::PdSectionCutter(std::string_view source, Diagnostics& diagnostics)
    : source_(source), diagnostics_(diagnostics) {
  ReportCharacters(source, diagnostics);
  if (source.starts_with(kByteOrderMark)) {
    diagnostics.Error({1, 1}, "the file begins with a byte order mark; save it without one");
    next_ = kByteOrderMark.size();
  }
  PdLine line;
  if (NextLine(line)) pending_ = line;
}

/// Gives the next line that counts.
bool PdSectionCutter::NextLine(PdLine& line) {
  while (next_ < source_.size()) {
    const size_t start = next_;
    const size_t end = source_.find('\n', start);
    ++lineNumber_;
    next_ = end == std::string_view::npos ? source_.size() : end + 1;
    const std::string_view whole = source_.substr(start, end == std::string_view::npos ? end : end - start);
    const size_t first = whole.find_first_not_of(" \t");
    if (first == std::string_view::npos || whole.substr(first).starts_with("--")) continue;
    line = {whole.substr(first), {lineNumber_, static_cast<int32_t>(first) + 1}};
    if (end == std::string_view::npos) {
      diagnostics_.Error({lineNumber_, static_cast<int32_t>(whole.size()) + 1},
                         "the last line has no line end and is ignored by the report program; end it");
    }
    return true;
  }
  return false;
}

/// Begins the section with the line, whose first characters are the keyword or stand for it.
void PdSectionCutter::Begin(PdKeyword keyword, size_t length, const PdLine& line, PdSection& section) {
  section.keyword = keyword;
  section.where = line.where;
  const auto columns = static_cast<int32_t>(length);
  section.lines.assign(1, {line.text.substr(length), {line.where.line, line.where.column + columns}});
}

/// Reports a word that only begins like the keyword, and begins the section that was probably meant: that of
/// a near keyword, or of this one with a name right behind it.
void PdSectionCutter::BeginLonger(PdKeyword keyword, const PdLine& line, PdSection& section) {
  const std::string_view word = FirstWord(line.text);
  const std::optional<PdKeyword> meant = NearestKeyword(word);
  diagnostics_.Error(
      line.where,
      Quoted(word) + " is no keyword, but the report program takes it for " + std::string(TextOf(keyword)) +
          (meant ? "; did you mean " + Quoted(TextOf(*meant)) + "?" : "; put a blank behind the keyword"));
  Begin(meant.value_or(keyword), meant ? word.size() : TextOf(keyword).size(), line, section);
}

/// Reports a line before the first section. True when it has begun the section that was probably meant.
bool PdSectionCutter::BeginStray(const PdLine& line, PdSection& section) {
  const std::string_view word = FirstWord(line.text);
  const std::optional<PdKeyword> meant = NearestKeyword(word);
  diagnostics_.Error(line.where, "the line begins no section and belongs to none; " +
                                     (meant ? "did you mean " + Quoted(TextOf(*meant)) + "?"
                                            : "begin it with a keyword, or with -- as a comment"));
  if (meant) Begin(*meant, word.size(), line, section);
  return meant.has_value();
}

bool PdSectionCutter::Next(PdSection& section) {
  PdLine line;
  bool begun = false;
  size_t size = 0;
  for (; pending_ && !begun; pending_ = NextLine(line) ? std::optional(line) : std::nullopt) {
    const std::optional<PdKeyword> keyword = KeywordOf(*pending_);
    if (!keyword) {
      if (!BeginStray(*pending_, section)) continue;
    } else if (FirstWord(pending_->text).size() > TextOf(*keyword).size() && TextOf(*keyword).back() != ':') {
      BeginLonger(*keyword, *pending_, section);
    } else {
      Begin(*keyword, TextOf(*keyword).size(), *pending_, section);
    }
    begun = true;
    size = pending_->text.size();
  }
  if (!begun) return false;
  for (; pending_ && !KeywordOf(*pending_); pending_ = NextLine(line) ? std::optional(line) : std::nullopt) {
    size += 1 + pending_->text.size();
    section.lines.push_back(*pending_);
  }
  if (size > kLongestSection) {
    diagnostics_.Error(section.where, "the section has " + std::to_string(size) + " characters, " +
                                          std::to_string(kLongestSection) +
                                          " are the most that the report program holds; shorten it");
  }
  return true;
}

PdWord PdScanner::Peek() const {
  if (AtEnd()) {
    if (lines_.empty()) return {};
    const PdLine& last = lines_.back();
    const size_t end = last.text.find_last_not_of(kBlanks) + 1;
    return {{}, {last.where.line, last.where.column + static_cast<int32_t>(end)}, false};
  }
  const PdLine& line = lines_[line_];
  return {FirstWord(line.text.substr(column_)),
          {line.where.line, line.where.column + static_cast<int32_t>(column_)},
          line_ > 0 && column_ == 0};
}

PdWord PdScanner::Next() {
  const PdWord word = Peek();
  column_ += word.text.size();
  SkipBlanks();
  return word;
}

void PdScanner::SkipBlanks() {
  while (line_ < lines_.size()) {
    column_ = lines_[line_].text.find_first_not_of(kBlanks, column_);
    if (column_ != std::string_view::npos) return;
    ++line_;
    column_ = 0;
  }
}

std::optional<std::string> PdScanner::TextToSemicolon() {
  std::string text;
  size_t column = column_;
  for (size_t i = line_; i < lines_.size(); ++i, column = 0) {
    const std::string_view rest = lines_[i].text.substr(column);
    if (i > line_) text += '\n';
    const size_t end = rest.find(';');
    text += rest.substr(0, end);
    if (end == std::string_view::npos) continue;
    line_ = i;
    column_ = column + end + 1;
    SkipBlanks();
    return text;
  }
  return std::nullopt;
}

std::string PdScanner::TextToEnd() {
  std::string text(RestOfLine());
  for (size_t i = line_ + 1; i < lines_.size(); ++i) text.append("\n").append(lines_[i].text);
  line_ = lines_.size();
  return text;
}

std::optional<PdWord> PdScanner::FindMisspeltKeyword(bool beforeSemicolon) {
  for (size_t i = line_; i < lines_.size(); ++i) {
    const bool startsLine = i > 0 && (i > line_ || column_ == 0);
    if (startsLine && NearestKeyword(FirstWord(lines_[i].text))) {
      line_ = i;
      column_ = 0;
      return Peek();
    }
    if (beforeSemicolon && lines_[i].text.find(';', i == line_ ? column_ : 0) != std::string_view::npos)
      break;
  }
  return std::nullopt;
}

}  // namespace siphons
