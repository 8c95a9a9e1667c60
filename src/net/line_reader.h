// The lines of a net description, each whole, however long it is.
#pragma once

#include <cstdint>
#include <istream>

namespace siphons {

class LineReader {
 public:
  explicit LineReader(std::istream& in);
  ~LineReader();
  LineReader(const LineReader&) = delete;
  LineReader& operator=(const LineReader&) = delete;

  /// The next line without its line end, up to its first NUL character; valid until the next call. Null at
  /// the end: a last line without a line end does not count, because the end of the file is met before its
  /// own. Ends the process when memory is too short for the line ("Unable to realloc %u bytes\n").
  char* Next();

 private:
  std::istream& in_;
  uint32_t size_;
  char* buffer_;
};

}  // namespace siphons
