// What is wrong with a net file, and where: collected while a file is read, written as compilers write it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "netkit/model/petri_net.h"

namespace siphons {

/// The text in quotation marks, as a message shows it: cut short when it is long, control characters
/// replaced.
std::string Quoted(std::string_view text);

struct Diagnostic {
  SourcePosition where;  ///< line 0: about the file as a whole
  bool isError = true;   ///< else a warning
  std::string message;   ///< what is wrong; what to do
};

class Diagnostics {
 public:
  /// `file` names the file in every line.
  explicit Diagnostics(std::string file) : file_(std::move(file)) {}

  void Error(SourcePosition where, std::string message);
  void Warn(SourcePosition where, std::string message);

  const std::string& File() const { return file_; }
  bool HasErrors() const { return errors_ > 0; }
  int64_t Errors() const { return errors_; }
  int64_t Warnings() const { return warnings_; }

  /// Ordered by line and column; what was reported first comes first where these are equal.
  std::vector<Diagnostic> Sorted() const;

  /// A line each, "FILE:LINE:COLUMN: error: MESSAGE\n"; of more than kShown errors the first ones and then
  /// their number.
  std::string Text() const;

  static constexpr int64_t kShown = 20;
  /// More are counted and not kept, so that a file that is no net at all costs no memory.
  static constexpr int64_t kKept = 1000;

 private:
  std::string file_;
  std::vector<Diagnostic> all_;
  int64_t errors_ = 0;
  int64_t warnings_ = 0;
};

}  // namespace siphons
