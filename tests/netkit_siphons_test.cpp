// netkit siphons and traps as processes: against the reports of the golden runs, and what limits and
// interrupts do. What their options do is in netkit/commands.md.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tests/program.h"

namespace siphons {
namespace {

using Json = nlohmann::json;

/// A line per set, sorted.
std::vector<std::string> MarkingLines(const std::string& text) {
  std::vector<std::string> lines = Split(text);
  std::erase_if(lines, [](const std::string& line) { return !line.starts_with("MARKING:"); });
  std::sort(lines.begin(), lines.end());
  return lines;
}

TEST(NetkitSiphons, AreThoseOfTheReports) {
  int compared = 0, refused = 0;
  for (const auto& entry : fs::directory_iterator(GOLDEN_DIRECTORY)) {
    const std::string name = entry.path().filename();
    SCOPED_TRACE(name);
    const std::optional<std::string> report = ReadFile(entry.path() / "expected.siphons");
    const std::string told = ReadFile(entry.path() / "expected.stdout").value_or("");
    // What is told is an overflow or a failure; names are format text in a report.
    if (!report || !told.empty() || name == "rule_percent_percent_in_name") continue;
    const Outcome outcome = RunNetkit("siphons net", entry.path());
    if (outcome.status == 1) {
      EXPECT_NE(outcome.err.find("net.PD:"), std::string::npos) << outcome.err;
      ++refused;
      continue;
    }
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    const std::vector<std::string> expected = MarkingLines(*report), lines = MarkingLines(outcome.out);
    if (expected.empty()) {
      EXPECT_LE(lines.size(), 1u) << "a report leaves one support alone out";
    } else {
      EXPECT_EQ(lines, expected);
    }
    ++compared;
  }
  EXPECT_GT(compared, 30);
  EXPECT_LT(refused, 20) << "nets whose numbers, names or counts the report program takes otherwise";
}

/// A ring of stages of two places each: a minimal siphon takes one place of every stage.
class Ring : public testing::Test {
 protected:
  explicit Ring(int stages = 40) {
    std::string places, transitions;
    for (int i = 0; i < stages; ++i) {
      const std::string here = std::to_string(i), next = std::to_string((i + 1) % stages);
      places +=
          "PLACE a" + here + " 2147483647 0 0 0 0\nPLACE b" + here + (i == 0 ? " 0" : " 1") + " 0 0 0 0\n";
      transitions += "TRANSITION t" + here + " 1 SS EXP RE 0 0 0 0 0 0 0 0 INPARCS 2 1 a" + here + " 0 1 b" +
                     here + " 0 OUTPARCS 2 1 a" + next + " 0 1 b" + next + " 0 INHARCS 0\n";
    }
    const auto announced = [](int n) { return std::to_string(n) + "\n"; };
    WriteFile(model_.path() / "net.PD",
              "DEFINITION_PARAMETERS: 0\nREWARD_MEASURES: 0\nPLACES: " + announced(2 * stages) +
                  "TRANSITIONS: " + announced(stages) + places + transitions);
    WriteFile(model_.path() / "net.DEFINFO", "arcs 0\n");
  }
  Outcome Run(const std::string& arguments) { return RunNetkit(arguments, model_.path()); }

  TemporaryDirectory model_;
};

class SmallRing : public Ring {
 protected:
  SmallRing() : Ring(2) {}
};

TEST_F(Ring, StopsAtTheTimeLimit) {
  const Outcome outcome = Run("siphons net --timeout 0.3 --json");
  EXPECT_EQ(outcome.status, 3);
  const Json answer = Json::parse(outcome.out);
  EXPECT_EQ(answer["complete"], false);
  EXPECT_EQ(answer["reason"], "time limit");
  EXPECT_GT(answer["siphons"].size(), 0u);
  EXPECT_EQ(answer["siphons"].size(), answer["counts"]["siphons"]);
  EXPECT_EQ(outcome.err, "") << "no progress line without a terminal";
}

TEST_F(Ring, InterruptedItWritesWhatItFound) {
  for (const int signal : {SIGINT, SIGTERM}) {
    const fs::path answer = model_.path() / "answer";
    EXPECT_EQ(SignalAtWork(model_.path(), {NETKIT_PROGRAM, "siphons", "net", "-o", answer.c_str()}, signal,
                           Fate::kIsCaught),
              3);
    const std::string text = ReadFile(answer).value_or("");
    EXPECT_NE(text.find(" (incomplete: interrupted)\n"), std::string::npos);
    EXPECT_GT(MarkingLines(text).size(), 0u);
  }
}

/// Runs shell commands on the net; in these "$@" enumerates its siphons.
Outcome InShell(const fs::path& model, const std::string& commands) {
  WriteFile(model / "commands", "set -- '" NETKIT_PROGRAM "' siphons net\n" + commands + "\n");
  return RunProgram(ModelDirectory(model), "sh", "'" + (model / "commands").string() + "'");
}

// A signal that comes before the program is at work, on a slow machine, ends the commands in the same way, or
// is ignored as well.
TEST_F(Ring, LeavesSignalsAndFilesAsItShould) {
  const fs::path pipe = model_.path() / "pipe", file = model_.path() / "file";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  // Nobody reads the answer, so the first signal leaves the program waiting.
  EXPECT_EQ(InShell(model_.path(), "\"$@\" >'" + pipe.string() + "' & exec 3<'" + pipe.string() +
                                       "'; sleep 0.7; kill -TERM $!; sleep 1; kill -TERM $!\n"
                                       "sleep 0.3; exec 3<&-; wait $!")
                .status,
            128 + SIGTERM)
      << "the second signal ends the process";
  // A shell has its background processes ignore SIGINT.
  EXPECT_NE(InShell(model_.path(), "\"$@\" --count --timeout 1 & sleep 0.5; kill -INT $!; wait $!")
                .out.find("(incomplete: time limit)"),
            std::string::npos);
  WriteFile(file, "old");
  InShell(model_.path(), "timeout -s KILL 0.7 \"$@\" -o '" + file.string() + "'");
  EXPECT_EQ(ReadFile(file), "old") << "it is there until the answer is";
}

TEST_F(Ring, ShowsProgressOnATerminal) {
  const Outcome outcome = RunOnTerminal("siphons net --count --timeout 2.5", model_.path());
  EXPECT_EQ(outcome.status, 3);
  EXPECT_NE(outcome.out.find(" siphons so far, 2 s"), std::string::npos);
  EXPECT_EQ(outcome.out.find(" so far, 0 s"), std::string::npos);
  EXPECT_EQ(outcome.out.find('\n'), outcome.out.size() - 1) << "one line, rewritten, and the last words";
  EXPECT_NE(outcome.out.find("\rtime limit: "), std::string::npos);
  EXPECT_NE(outcome.out.find(" siphons found so far, written to /dev/null\r\n"), std::string::npos);
  const size_t last = outcome.out.find("time limit: ");
  ASSERT_NE(last, std::string::npos);
  ExpectRowsOfThisTest({{"", outcome.out.substr(1, outcome.out.find('\r', 1) - 1), 0},
                        {"", outcome.out.substr(last, outcome.out.size() - last - 2), 3}});
}

TEST_F(SmallRing, WrongUsageAndFailures) {
  ExpectRowsOfThisTest(
      {Run("traps net --containing a00"), Run("siphons net --max 0"), Run("siphons net -o /dev/full")});
  for (const char* command : {"siphons net", "check net", "list net", "structure net",
                              "structure net --summary -o answer", "traps --help"}) {
    const Outcome full = RunProgram(ModelDirectory(model_.path()), "sh",
                                    std::string("-c '" NETKIT_PROGRAM " ") + command + " >/dev/full'");
    EXPECT_EQ(full.status, 1) << command;
    EXPECT_NE(full.err.find("ERROR: could not open standard output for writing\n"), std::string::npos)
        << command;
  }
  EXPECT_EQ(Run("check net -o /no/such/file").err, "ERROR: could not open /no/such/file for writing\n");
}

}  // namespace
}  // namespace siphons
