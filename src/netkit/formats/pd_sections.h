// A .PD file cut into sections, and a section into words, each with its place in the file.
//
// A section begins with a line that starts with a keyword and goes on to the next such line. Leading blanks
// and tabs, empty lines and lines that start with "--" do not count. The rules are those of the report
// program's loader; where that takes a line for something that it hardly is, an error is reported here.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "netkit/formats/diagnostics.h"

namespace siphons {

/// In the order in which a line is compared with them: a keyword stands before those that are its beginning.
enum class PdKeyword : uint8_t {
  kNetType,
  kDescription,
  kPlaces,
  kTransitions,
  kDefinitionParameters,
  kRewardMeasures,
  kDelayParDef,
  kDefinitionParameter,
  kPlace,
  kTransition,
  kWeight,
  kExpDelay,
  kDetDelay,
  kGenDelay,
  kFunction,
  kCardinality,
  kMeasure,
};

/// The keyword as it stands in a file; announcements end with a colon.
std::string_view TextOf(PdKeyword keyword);

/// The keyword that a word of a file was probably meant for.
std::optional<PdKeyword> NearestKeyword(std::string_view word);

/// What counts of a line.
struct PdLine {
  std::string_view text;
  SourcePosition where;  ///< of the text's first character
};

struct PdSection {
  PdKeyword keyword = PdKeyword::kNetType;
  SourcePosition where;       ///< of the keyword
  std::vector<PdLine> lines;  ///< the first is what follows the keyword on its line
};

class PdSectionCutter {
 public:
  /// Reports what is wrong with the source as a text: characters that no line may have, a last line without
  /// end. The source must outlive the object and the sections.
  PdSectionCutter(std::string_view source, Diagnostics& diagnostics);

  /// Gives the next section; false when there is none.
  bool Next(PdSection& section);

 private:
  bool NextLine(PdLine& line);
  static void Begin(PdKeyword keyword, size_t length, const PdLine& line, PdSection& section);
  void BeginLonger(PdKeyword keyword, const PdLine& line, PdSection& section);
  bool BeginStray(const PdLine& line, PdSection& section);

  std::string_view source_;
  Diagnostics& diagnostics_;
  size_t next_ = 0;  ///< where the next line begins
  int32_t lineNumber_ = 0;
  std::optional<PdLine> pending_;  ///< the line that is looked at next
};

struct PdWord {
  std::string_view text;
  SourcePosition where;
  bool startsLine = false;  ///< of a line behind the section's first
};

/// The words of a section, one after the other.
class PdScanner {
 public:
  explicit PdScanner(std::span<const PdLine> lines) : lines_(lines) { SkipBlanks(); }

  bool AtEnd() const { return line_ == lines_.size(); }
  /// The next word; an empty one behind the last character at the end.
  PdWord Peek() const;
  PdWord Next();
  /// Everything up to the first ';', across line breaks, which is passed over. Without one nothing is passed
  /// over and the end of the section is where it is missing.
  std::optional<std::string> TextToSemicolon();

  /// Everything to the end of the section, which is passed over.
  std::string TextToEnd();
  /// What is left of the line of the next word.
  std::string_view RestOfLine() const { return AtEnd() ? "" : lines_[line_].text.substr(column_); }

  /// Goes to the next line that begins with a word that is nearly a keyword, which is the place to go on
  /// behind a fault. Up to the first ';' only, when asked so. Stays where it is when there is none.
  std::optional<PdWord> FindMisspeltKeyword(bool beforeSemicolon);

 private:
  void SkipBlanks();

  std::span<const PdLine> lines_;
  size_t line_ = 0;
  size_t column_ = 0;  ///< from 0, within the line's text
};

}  // namespace siphons
