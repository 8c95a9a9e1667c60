// What a run says, and the table of docs/messages.md that lists every message.
//
// A row is "| `message` | stream | then | what to do | `test` |". In a message <word> stands for any text.
// The test is a kept case (golden/NAME, defects/NAME), which messages_test.cpp looks up, or a test
// Suite.Name, which looks its rows up itself.
#pragma once

#include <fnmatch.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/files.h"

namespace siphons {

struct Outcome {
  std::string out;
  std::string err;
  int status;  ///< exit status, or minus the signal that ended the program
};

/// Outcome::status of what waitpid tells.
inline int StatusOf(int status) {
  return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

/// Runs a function in a process of its own.
inline Outcome InChild(const std::function<void()>& run) {
  const TemporaryDirectory streams;
  const fs::path out = streams.path() / "out", err = streams.path() / "err";
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    for (std::FILE* file : {std::freopen(out.c_str(), "w", stdout), std::freopen(err.c_str(), "w", stderr)}) {
      std::setvbuf(file, nullptr, _IONBF, 0);
    }
    run();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return {*ReadFile(out), *ReadFile(err), StatusOf(status)};
}

struct MessageRow {
  std::string message, stream, then, test;
};

inline std::vector<MessageRow> MessageTable() {
  std::vector<MessageRow> rows;
  for (const std::string& line : Split(ReadFile(MESSAGES_FILE).value_or(""))) {
    std::vector<std::string> cells;
    for (size_t at = 1, end; (end = line.find(" |", at)) != std::string::npos; at = end + 2) {
      cells.push_back(line.substr(at + 1, end - at - 1));
    }
    if (cells.empty() || cells.back() == "shown by" || cells.back() == "---") continue;
    cells.resize(5);
    const auto code = [](const std::string& cell) {
      return cell[0] == '`' ? cell.substr(1, cell.size() - 2) : "";
    };
    rows.push_back({code(cells[0]), cells[1], cells[2], code(cells[4])});
  }
  return rows;
}

/// Whether a line of the text is the row's message.
inline bool Says(const MessageRow& row, const std::string& text) {
  std::string pattern;
  for (size_t i = 0; i < row.message.size(); ++i) {
    if (row.message[i] == '<') {
      pattern += '*';
      i = row.message.find('>', i);
    } else {
      pattern += {'\\', row.message[i]};
    }
  }
  const std::vector<std::string> lines = Split(text);
  return std::any_of(lines.begin(), lines.end(), [&pattern](const std::string& line) {
    return fnmatch(pattern.c_str(), line.c_str(), 0) == 0;
  });
}

/// Whether the run shows what the row tells: the message on its stream, or none at all, and the status.
inline bool Shows(const MessageRow& row, const Outcome& run) {
  const std::map<std::string, int> statuses{{"goes on", 0},     {"status 1", 1},     {"status 2", 2},
                                            {"status 3", 3},    {"status 255", 255}, {"SIGABRT", -SIGABRT},
                                            {"SIGFPE", -SIGFPE}};
  const auto status = statuses.find(row.then);
  if (status == statuses.end() || status->second != run.status) return false;
  if (row.message.empty()) return run.out.empty() && run.err.empty();
  return Says(row, row.stream == "output" ? run.out : row.stream == "error" ? run.err : "");
}

/// Expects that the rows that name the running test are shown, each by one of its runs.
inline void ExpectRowsOfThisTest(const std::vector<Outcome>& runs) {
  const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
  const std::string name = test.test_suite_name() + std::string(".") + test.name();
  int rows = 0;
  for (const MessageRow& row : MessageTable()) {
    if (row.test != name) continue;
    ++rows;
    EXPECT_TRUE(std::any_of(runs.begin(), runs.end(), [&row](const Outcome& run) { return Shows(row, run); }))
        << row.message;
  }
  EXPECT_GT(rows, 0) << "no row names " << name;
}

}  // namespace siphons
