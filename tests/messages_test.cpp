// The table of docs/messages.md against the kept cases: every row that names one is shown by it, and every
// message of theirs has a row. The rows that name a test Suite.Name are that test's own affair.
#include "tests/program.h"

namespace siphons {
namespace {

/// The outcome kept for golden/NAME or defects/NAME.
Outcome Kept(const fs::path& test) {
  const fs::path tests = TESTS_DIRECTORY;
  const auto number = [](const std::string& text) { return std::atoi(text.c_str()); };
  if (fs::is_directory(tests / test)) {
    const auto part = [&](const char* name) { return ReadFile(tests / test / name).value_or(""); };
    return {part("expected.stdout"), part("expected.stderr"), number(part("expected.status"))};
  }
  Outcome kept{"", "", 0};
  for (const std::string& line :
       Split(ReadFile(tests / (test.string() + ".expected")).value_or("status 99\n"))) {
    const std::string rest = line.substr(line.find_first_of(" |") + 1);
    if (line.starts_with("status signal ")) {
      kept.status = -number(line.substr(14));
    } else if (line.starts_with("status ")) {
      kept.status = number(rest);
    } else if (line.starts_with("out|")) {
      kept.out += rest + "\n";
    } else if (line.starts_with("err|")) {
      kept.err += rest + "\n";
    }
  }
  return kept;
}

TEST(Messages, EveryRowOfAKeptCaseIsShownByIt) {
  const std::vector<MessageRow> rows = MessageTable();
  EXPECT_GT(rows.size(), 60u);
  for (const MessageRow& row : rows) {
    const bool kept = row.test.find('/') != std::string::npos;
    EXPECT_TRUE(!kept || Shows(row, Kept(row.test))) << row.message << ": " << row.test;
  }
}

TEST(Messages, EveryLineOfTheKeptCasesHasARow) {
  const std::vector<MessageRow> rows = MessageTable();
  const auto expectRows = [&rows](const fs::path& test, const std::string& stream, const std::string& text) {
    for (const std::string& line : Split(text)) {
      const auto isIt = [&](const MessageRow& row) {
        return row.stream == stream && !row.message.empty() && Says(row, line);
      };
      EXPECT_TRUE(line.empty() || std::any_of(rows.begin(), rows.end(), isIt)) << test << ": " << line;
    }
  };
  int cases = 0;
  for (const char* directory : {GOLDEN_DIRECTORY, DEFECTS_DIRECTORY}) {
    for (const auto& entry : fs::directory_iterator(directory)) {
      if (!entry.is_directory() && entry.path().extension() != ".expected") continue;
      const fs::path test = fs::path(directory).filename() / entry.path().stem();
      const Outcome kept = Kept(test);
      expectRows(test, "output", kept.out);
      expectRows(test, "error", kept.err);
      ++cases;
    }
  }
  EXPECT_GT(cases, 100);
}

}  // namespace
}  // namespace siphons
