// netkit check as a process: its limits and interrupts. What it says of nets is in netkit/commands.md and in
// the documents.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/program.h"

namespace siphons {
namespace {

using Json = nlohmann::json;

Outcome Check(const std::string& arguments, const fs::path& model = EXAMPLES_DIRECTORY) {
  return RunNetkit("check " + arguments, model);
}

/// A net that no line decides soon: only its priorities keep it from blocking, and its markings have no end.
class Endless : public testing::Test {
 protected:
  Endless() {
    WriteFile(model_.path() / "net.PD",
              "PLACES: 2\nTRANSITIONS: 2\nPLACE a 1 0 0 0 0\nPLACE b 0 0 0 0 0\n"
              "TRANSITION grow 1 SS IMM RE 1 0 0 0 0 0 0 0\n"
              "INPARCS 1 1 a 0 OUTPARCS 2 1 a 0 1 b 0 INHARCS 0\n"
              "TRANSITION end 1 SS EXP RE 0 0 0 0 0 0 0 0\nINPARCS 1 1 a 0 OUTPARCS 0 INHARCS 0\n");
  }
  TemporaryDirectory model_;
};

TEST_F(Endless, StopsAtTheTimeLimitAndWhenInterrupted) {
  const Outcome outcome = Check("net --timeout 0.2 --json", model_.path());
  EXPECT_EQ(outcome.status, 11);
  const Json answer = Json::parse(outcome.out);
  EXPECT_EQ(answer["verdict"], "undecided");
  EXPECT_EQ(answer["reason"], "time limit");
  EXPECT_EQ(SignalAtWork(model_.path(), {NETKIT_PROGRAM, "check", "net"}, SIGINT, Fate::kIsCaught), 11);
}

TEST_F(Endless, ShowsProgressOnATerminal) {
  const Outcome outcome = RunOnTerminal("check net --timeout 2.5", model_.path());
  EXPECT_EQ(outcome.status, 11);
  EXPECT_NE(outcome.out.find(" markings and firings so far, 2 s"), std::string::npos);
  EXPECT_EQ(outcome.out.find("\r0 markings"), std::string::npos);
}

}  // namespace
}  // namespace siphons
