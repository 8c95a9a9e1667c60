#include "netkit/formats/diagnostics.h"

#include <algorithm>
#include <utility>

namespace siphons {

std::string Quoted(std::string_view text) {
  constexpr size_t kLongest = 60;
  std::string quoted(text.substr(0, kLongest));
  std::replace_if(
      quoted.begin(), quoted.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
  return "'" + quoted + (text.size() > kLongest ? "...'" : "'");
}

void Diagnostics::Error(SourcePosition where, std::string message) {
  if (++errors_ <= kKept) all_.push_back({where, true, std::move(message)});
}

void Diagnostics::Warn(SourcePosition where, std::string message) {
  if (++warnings_ <= kKept) all_.push_back({where, false, std::move(message)});
}

std::vector<Diagnostic> Diagnostics::Sorted() const {
  std::vector<Diagnostic> sorted = all_;
  std::stable_sort(sorted.begin(), sorted.end(), [](const Diagnostic& a, const Diagnostic& b) {
    return std::pair(a.where.line, a.where.column) < std::pair(b.where.line, b.where.column);
  });
  return sorted;
}

std::string Diagnostics::Text() const {
  std::string text;
  int64_t shown = 0;
  for (const Diagnostic& diagnostic : Sorted()) {
    if (diagnostic.isError && shown++ >= kShown) continue;
    text += file_;
    if (diagnostic.where.line > 0) {
      text += ":" + std::to_string(diagnostic.where.line) + ":" + std::to_string(diagnostic.where.column);
    }
    text += (diagnostic.isError ? ": error: " : ": warning: ") + diagnostic.message + "\n";
  }
  if (errors_ > kShown) text += file_ + ": " + std::to_string(errors_) + " errors in all\n";
  return text;
}

}  // namespace siphons
