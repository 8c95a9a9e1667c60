// The words of a definition info file.
//
// The file is a sequence of words. Labels may be any word; a word that is no number reads as 0. At the end of
// the file every further read gives the last word again, so that a file cut short reads as if its last word
// went on for ever.
#pragma once

#include <cstdint>
#include <istream>
#include <string>

namespace siphons {

class InfoReader {
 public:
  explicit InfoReader(std::istream& stream) : stream_(stream) {}

  void Label() { NextWord(); }

  /// The low 32 bits of a decimal number.
  int32_t Number();

  /// A label, a count and as many place numbers, as a new table of no_places flags. A number outside the net
  /// is left out; the first one of the process is told on standard error.
  int32_t* PlaceSet();

  /// Whether every further read gives the same word.
  bool Ended() const { return !stream_; }

 private:
  void NextWord();

  std::istream& stream_;
  std::string word_;
};

/// Writes "Warning: definition info names <what> <number>, the net has <count>; ignored\n" to standard error,
/// unless *warned says that this was done before.
void WarnOnce(bool* warned, const char* what, int32_t number, int32_t count);

}  // namespace siphons
