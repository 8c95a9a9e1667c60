// netkit check as a process: each verdict with its status, what it says and writes, its limits and
// interrupts.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/program.h"

namespace siphons {
namespace {

using Json = nlohmann::json;

Outcome Check(const fs::path& model, const std::string& arguments) {
  return RunProgram(ModelDirectory(model), NETKIT_PROGRAM, "check " + arguments);
}

TEST(NetkitCheck, SaysHowANetBlocks) {
  const Outcome outcome = Check(EXAMPLES_DIRECTORY, "philosophers");
  EXPECT_EQ(outcome.status, 10);
  EXPECT_EQ(outcome.out.rfind("deadlock after 5 firings; no shorter sequence leads to a dead marking\n", 0),
            0U);
  EXPECT_NE(outcome.out.find("\nSiphons short of tokens there, with their initial tokens:\nMARKING:    5 {"),
            std::string::npos)
      << outcome.out;
  const TemporaryDirectory directory;
  const fs::path trace = directory.path() / "trace";
  const Json answer =
      Json::parse(Check(EXAMPLES_DIRECTORY, "philosophers --json --trace '" + trace.string() + "'").out);
  EXPECT_EQ(answer["verdict"], "deadlock");
  std::string lines;
  for (const Json& transition : answer["sequence"]) lines += transition.get<std::string>() + "\n";
  EXPECT_EQ(ReadFile(trace), lines);
  EXPECT_EQ(answer["sequence"].size(), 5U);
  EXPECT_EQ(answer["held_up"].size(), answer["counts"]["transitions"]);
  EXPECT_EQ(answer["short_siphons"].size(), 1U);
}

TEST(NetkitCheck, SaysWhyANetDoesNotBlock) {
  const Outcome outcome = Check(EXAMPLES_DIRECTORY, "readers_writers");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out.rfind("deadlock-free: ", 0), 0U) << outcome.out;
  const Outcome both = Check(EXAMPLES_DIRECTORY, "readers_writers philosophers");
  EXPECT_EQ(both.status, 10) << "the greatest counts";
  EXPECT_EQ(both.out.rfind("readers_writers: deadlock-free: ", 0), 0U);
  EXPECT_EQ(Check(EXAMPLES_DIRECTORY, "readers_writers philosophers --trace x").status, 2);
  EXPECT_EQ(Check(EXAMPLES_DIRECTORY, "no_such_net").status, 1);
}

/// A net that no line decides soon: only its priorities keep it from blocking, and its markings have no end.
class Endless : public testing::Test {
 protected:
  Endless() {
    WriteFile(model_.path() / "net.PD", kNet + "INHARCS 0\n");
    WriteFile(model_.path() / "unknown.PD", kNet + "INHARCS 0\nFUNCTION grow #b<3;\n");
  }
  inline static const std::string kNet =
      "PLACES: 2\nTRANSITIONS: 2\nDEFINITION_PARAMETERS: 0\nREWARD_MEASURES: 0\n"
      "PLACE a 1 0 0 0 0\nPLACE b 0 0 0 0 0\n"
      "TRANSITION grow 1 SS IMM RE 1 0 0 0 0 0 0 0\nINPARCS 1\n 1 a 0\nOUTPARCS 2\n 1 a 0\n 1 b 0\nINHARCS "
      "0\n"
      "TRANSITION end 1 SS EXP RE 0 0 0 0 0 0 0 0\nINPARCS 1\n 1 a 0\nOUTPARCS 0\n";
  TemporaryDirectory model_;
};

TEST_F(Endless, SaysWhatStandsInTheWay) {
  const Outcome outcome = Check(model_.path(), "unknown");
  EXPECT_EQ(outcome.status, 11) << outcome.err;
  EXPECT_EQ(outcome.out.rfind("undecided: enabling functions or marking-dependent arcs", 0), 0U)
      << outcome.out;
}

TEST_F(Endless, StopsAtTheTimeLimitAndWhenInterrupted) {
  const Outcome outcome = Check(model_.path(), "net --timeout 0.2 --json");
  EXPECT_EQ(outcome.status, 11);
  const Json answer = Json::parse(outcome.out);
  EXPECT_EQ(answer["verdict"], "undecided");
  EXPECT_EQ(answer["reason"], "time limit");
  EXPECT_EQ(SignalAtWork(model_.path(), {NETKIT_PROGRAM, "check", "net"}, SIGINT, Fate::kIsCaught), 11);
}

TEST_F(Endless, ShowsProgressOnATerminal) {
  const std::string command =
      ModelDirectory(model_.path()) + " " NETKIT_PROGRAM " check net --timeout 2.5 -o /dev/null";
  const Outcome outcome = RunProgram("", "script", "-qec \"" + command + "\" /dev/null");
  EXPECT_EQ(outcome.status, 11);
  EXPECT_NE(outcome.out.find(" markings and firings so far, 2 s"), std::string::npos);
  EXPECT_EQ(outcome.out.find("\r0 markings"), std::string::npos);
}

}  // namespace
}  // namespace siphons
