// Reading words and numbers of a section, for the handlers.
//
// Sections are read with sscanf, whose rules for numbers ("%i" takes 0x10 and 010, "%lg" takes inf) are the
// file format's rules. A word may fill the whole section, so every word buffer is as long as the text that is
// read. sscanf measures all of its text before it reads the first word; where a section is read in many small
// steps, each step is given its own few words only (FirstWords), or reading would take the square of the
// section's length.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "net/net.h"

namespace siphons {

/// Word buffers for one text, each long enough for all of it, empty at the start.
template <size_t count>
class Words {
 public:
  explicit Words(size_t textLength) : stride_(textLength + 1), buffer_(count * stride_) {}
  char* operator[](size_t i) { return buffer_.data() + i * stride_; }

 private:
  size_t stride_;
  std::vector<char> buffer_;
};

/// The next few words of a text, cut off from the rest of it.
class FirstWords {
 public:
  /// The first `count` words with the blanks before each, or all of the text where it has fewer. Valid until
  /// the next call.
  const char* Of(const char* text, int32_t count);

 private:
  std::string copy_;
};

/// The token as a decimal integer, the low 32 bits of it; 0 when it is none.
int32_t DecimalInteger(const char* token);

/// Replaces a text of the net by a new copy.
void StoreText(char*& field, const char* text);

/// A definition: a name and everything behind it up to the first ';', across line breaks, with one ';' at its
/// end.
struct NamedText {
  std::string name;
  std::string text;
};

/// Reads a definition from the start of `text`; false when the name or the text is missing.
bool ReadNamedText(const char* text, NamedText* definition);

/// Reports a fatal fault of the file; returns 0 for the handler to return.
int32_t Fault(const Net& net, const char* message);

/// The text after its leading blanks and tabs.
const char* skip_white(const char* text);

}  // namespace siphons
