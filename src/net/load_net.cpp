// The reader's run: open the file, collect lines into keyword sections, dispatch each section before the next
// is collected, check the announced counts at the end.
#include "net/load_net.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

#include "base/bounded_text.h"
#include "base/fetch_path.h"
#include "base/input_file.h"
#include "net/keywords.h"
#include "net/line_reader.h"
#include "net/memory.h"
#include "net/name_index.h"
#include "net/section_text.h"

namespace siphons {

namespace {

constexpr size_t kFileNameBuffer = 512;
constexpr size_t kMessageBuffer = 256;
constexpr size_t kSectionBuffer = 102400;

using Message = std::array<char, kMessageBuffer>;

OwnedNet NewNet(const char* name, ErrorFunc errorFunc) {
  OwnedNet net(NewTable<Net>(1));
  net->names = new NetNames;
  if (name != nullptr) net->name = nStrdup(name);
  net->nplaces = net->ntrans = net->ndelaypars = net->nrewards = -1;
  net->error_func = errorFunc != nullptr ? errorFunc : DefaultError;
  return net;
}

void TellUnreadable(const Net& net) {
  Message message;
  FormatBounded(message, "Unable to open file: %s\n", net.name);
  net.error_func(message.data(), 1);
}

/// Opens the file of a net, as named or below MODELDIR; leaves the stream closed after a report.
void OpenNetFile(const Net& net, std::ifstream& file) {
  std::array<char, kFileNameBuffer> path;
  FormatBounded(path, std::strstr(net.name, ".PD") != nullptr ? "%s" : "%s.PD", net.name);
  OpenInput(file, path.data());
  if (file.is_open()) return;
  const char* const modelDirectory = std::getenv("MODELDIR");
  if (modelDirectory != nullptr) {
    std::array<char, kFileNameBuffer> below;
    std::array<char, kFileNameBuffer> whole;
    FormatBounded(below, "/%s", path.data());
    fetch_path(below.data());
    FormatBounded(whole, "%s%s", modelDirectory, below.data());
    OpenInput(file, whole.data());
    if (file.is_open()) return;
  } else {
    net.error_func("'MODELDIR' not set", 0);
  }
  TellUnreadable(net);
}

/// The section being collected: the keyword's line from the keyword on, and the lines that follow it.
class Section {
 public:
  explicit Section(Net& net) : net_(net) {}

  /// Takes a line without leading blanks that is neither empty nor a comment.
  void Take(const char* line) {
    const auto row = std::find_if(keylist.begin(), keylist.end(), [line](const Keyword& keyword) {
      return std::string_view(line).substr(0, keyword.text.size()) == keyword.text;
    });
    if (row != keylist.end()) {
      Dispatch();
      text_.clear();
      if (Append(line)) keyword_ = &*row;
    } else if (keyword_ != nullptr) {
      Append("\n", line);
    } else {
      std::fprintf(stderr, "Syntax error: %s\n", line);
    }
  }

  /// Hands the collected section, if any, to its handler.
  void Dispatch() {
    if (keyword_ == nullptr) return;
    keyword_->handler(net_, text_.c_str() + keyword_->text.size(), keyword_->count);
    ++keyword_->count;
    keyword_ = nullptr;
  }

 private:
  /// False after a report, nothing appended, when the text does not fit.
  bool Append(std::string_view first, std::string_view second = {}) {
    if (text_.size() + first.size() + second.size() > kSectionBuffer) {
      net_.error_func("Section too long", 1);
      return false;
    }
    text_.append(first).append(second);
    return true;
  }

  Net& net_;
  Keyword* keyword_ = nullptr;
  std::string text_;
};

void ReadSections(Net& net, std::istream& in) {
  Section section(net);
  LineReader lines(in);
  while (const char* const line = lines.Next()) {
    const char* const text = skip_white(line);
    if (*text == '\0' || std::strncmp(text, "--", 2) == 0) continue;
    section.Take(text);
  }
  section.Dispatch();
}

void WarnSingleServer(const Net& net) {
  // What counts as the length of the message: 94 for its beginning, then the names alone. The comma and blank
  // before a name are tested against the limit and not counted afterwards.
  constexpr size_t kIntroduction = 94;
  constexpr size_t kLimit = 250;
  Message message;
  size_t length = 0;
  for (int32_t i = 0; i < net.ntrans; ++i) {
    const NetTransition& t = net.transitions[i];
    if (t.name == nullptr || t.delay_type != kDelayMarkdep || t.inf_server == 0) continue;
    const size_t nameLength = std::strlen(t.name);
    if (length == 0) {
      FormatBounded(
          message,
          "Using a marking dependent delay forces transition to behave as a single server. Applied for : %s",
          t.name);
      length = kIntroduction + nameLength;
    } else if (length + nameLength + 2 < kLimit) {
      AppendBounded(message, ", ");
      AppendBounded(message, t.name);
      length += nameLength;
    }
  }
  if (length == 0) return;
  AppendBounded(message, "\n");
  net.error_func(message.data(), 0);
}

template <typename Record>
int32_t NamedSlots(const Record* table, int32_t count) {
  if (count <= 0) return 0;
  return static_cast<int32_t>(
      std::count_if(table, table + count, [](const Record& record) { return record.name != nullptr; }));
}

/// Warns when not all announced slots are used, and makes the count that of the used ones.
void SettleCount(const Net& net, const char* what, int32_t used, int32_t* count) {
  if (used == *count) return;
  Message message;
  FormatBounded(message, "%d %s announced, but only %d used", *count, what, used);
  net.error_func(message.data(), 0);
  *count = used;
}

/// Settles the counts; stops behind the report of a transition whose definition never came.
void CheckCounts(Net& net) {
  SettleCount(net, "places", NamedSlots(net.places, net.nplaces), &net.nplaces);
  const auto unresolved = [](const NetTransition& t) {
    return (t.delay_type == kDelayMarkdep || t.delay_type == kDelayPmf) && t.delay.text == nullptr;
  };
  const NetTransition* const end = net.transitions + net.ntrans;
  if (const NetTransition* t = std::find_if(net.transitions, net.transitions + net.ntrans, unresolved);
      t != end) {
    Message message;
    FormatBounded(message, "Unresolved MD/PMF-reference in transition '%s'", t->name);
    net.error_func(message.data(), 1);
    return;
  }
  SettleCount(net, "transitions", NamedSlots(net.transitions, net.ntrans), &net.ntrans);
  SettleCount(net, "delay parameters", NamedSlots(net.delaypars, net.ndelaypars), &net.ndelaypars);
  SettleCount(net, "rewards", NamedSlots(net.rewards, net.nrewards), &net.nrewards);
}

}  // namespace

Net* load_net(const char* name, ErrorFunc errorFunc, bool warnSingleServer) {
  OwnedNet net = NewNet(name, errorFunc);  // an error function may throw
  for (Keyword& keyword : keylist) keyword.count = 0;
  if (name != nullptr) {
    std::ifstream file;
    OpenNetFile(*net, file);
    if (!file.is_open()) return nullptr;
    try {
      ReadSections(*net, file);
    } catch (const std::ios_base::failure&) {
      TellUnreadable(*net);
      return nullptr;
    }
  } else {
    ReadSections(*net, std::cin);
  }
  if (warnSingleServer) WarnSingleServer(*net);
  if (net->nplaces == -1 || net->ntrans == -1) {
    net->error_func("Invalid number of places or transitions", 1);
    return nullptr;
  }
  CheckCounts(*net);
  return net.release();
}

}  // namespace siphons
