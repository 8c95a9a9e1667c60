// netkit monitors as a process: what it says and writes, its statuses, its wrong usage; the net that it
// wrote, as other subcommands and the report program take it.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>

#include "tests/program.h"

namespace siphons {
namespace {

using Json = nlohmann::json;

Outcome Ask(const std::string& arguments) {
  return RunProgram(ModelDirectory(EXAMPLES_DIRECTORY), NETKIT_PROGRAM, arguments);
}

TEST(NetkitMonitors, WritesANetThatDoesNotBlock) {
  const TemporaryDirectory directory;
  const fs::path pd = directory.path() / "new.PD", pnml = directory.path() / "new.pnml";
  const Outcome outcome = Ask("monitors cell -o '" + pd.string() + "'");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out,
            "deadlock-free with 1 monitor: none of all 7 reachable markings is dead\n"
            "monitor1: 1 token\n"
            "  keeps robot + mill + a_on_mill + b_on_robot >= 1\n"
            "  feeds a_pick b_load\n"
            "  is filled by a_load b_pick\n"
            "Markings from which the net need not block: 7 of 7 are still reached\n"
            "Written: " +
                pd.string() + "\n");
  EXPECT_EQ(Ask("monitors cell -q -o '" + pnml.string() + "'").status, 0);
  for (const fs::path& net : {pd, pnml}) {
    EXPECT_EQ(Ask("check '" + net.string() + "'").status, 0) << net;
    EXPECT_EQ(Ask("lint '" + net.string() + "'").status, 0) << net;
    EXPECT_EQ(Ask("monitors '" + net.string() + "'").out.rfind("deadlock-free with 0 monitors: ", 0), 0U);
  }
  EXPECT_EQ(RunProgram(ModelDirectory(directory.path()), SIPHONS_PROGRAM, "new").status, 0);

  // A picture shows which place was added, without laying the net out anew.
  const fs::path picture = directory.path() / "new.svg";
  EXPECT_EQ(Ask("draw '" + pd.string() + "' -o '" + picture.string() + "'").status, 0);
  const std::string svg = ReadFile(picture).value_or("");
  EXPECT_NE(svg.find("<g class=\"place marked monitor\""), std::string::npos);
  EXPECT_EQ(svg.find("monitor\"", svg.find("monitor\"") + 1), std::string::npos) << "one only";
}

TEST(NetkitMonitors, AnswersAsJson) {
  const Json answer = Json::parse(Ask("monitors philosophers --json").out);
  EXPECT_EQ(answer["verdict"], "deadlock-free");
  EXPECT_EQ(answer["reason"], nullptr);
  EXPECT_EQ(answer["kept_markings"], Json::parse(R"({"before": 81, "kept": 81})"));
  ASSERT_EQ(answer["monitors"].size(), 1U);
  const Json& monitor = answer["monitors"][0];
  EXPECT_EQ(monitor["name"], "monitor1");
  EXPECT_EQ(monitor["tokens"], 4);
  EXPECT_EQ(monitor["keeps"]["least"], 1);
  EXPECT_EQ(monitor["keeps"]["weights"].size(), 10U);
  EXPECT_EQ(monitor["feeds"].size(), 5U);
  EXPECT_EQ(monitor["filled_by"].size(), 5U);
}

/// The script lists all markings by itself and ends where netkit says something else.
TEST(NetkitMonitors, AgreeWithAListingByAScript) {
  const Outcome table =
      RunProgram("", "python3",
                 "'" SOURCE_DIRECTORY "/bench/monitors_table.py' '" NETKIT_PROGRAM "' '" EXAMPLES_DIRECTORY
                 "/two_robots.PD' '" SOURCE_DIRECTORY "/bench/nets/s4pr_2_3_3.PD'");
  EXPECT_EQ(table.status, 0) << table.err;
  const std::string rows = std::regex_replace(table.out, std::regex("[0-9.]+ s "), "TIME ");
  EXPECT_NE(rows.find("| two_robots | deadlock-free | 2 | TIME | 85 of 85 | blocks | 3 | 85 of 85 |\n"
                      "| s4pr_2_3_3 | deadlock-free | 1 | TIME | 68 of 68 | blocks | 2 | 49 of 68 |\n"),
            std::string::npos)
      << table.out;
}

TEST(NetkitMonitors, SaysWhyNoneIsFound) {
  const Outcome held = Ask("monitors cell --uncontrollable a_pick,b_load");
  EXPECT_EQ(held.status, 10);
  EXPECT_EQ(
      held.out,
      "deadlock with 0 monitors: whatever is held up, uncontrollable transitions can lead into a deadlock\n"
      "No monitor controls this siphon:\nMARKING:    2 { robot mill a_on_mill b_on_robot }\n"
      "Markings from which the net need not block: 7 of 7 are still reached\n");
  const Json json = Json::parse(Ask("monitors cell --json --uncontrollable a_pick,b_load").out);
  EXPECT_EQ(json["uncontrolled_siphon"]["tokens"], 2);
  const Outcome ladder = Ask("monitors '" SOURCE_DIRECTORY "/bench/nets/s3ladder_6.PD' --max 1");
  EXPECT_EQ(ladder.status, 10);
  EXPECT_EQ(ladder.out.rfind("deadlock with 1 monitor: the greatest number of monitors is reached\n", 0), 0U);

  const TemporaryDirectory directory;
  WriteFile(directory.path() / "unknown.PD",
            ReadFile(fs::path(EXAMPLES_DIRECTORY) / "cell.PD").value() + "FUNCTION a_pick #mill<3;\n");
  const Outcome unknown = Ask("monitors '" + (directory.path() / "unknown.PD").string() + "'");
  EXPECT_EQ(unknown.status, 11) << unknown.err;
  EXPECT_EQ(unknown.out.rfind("undecided with 0 monitors: enabling functions", 0), 0U) << unknown.out;
}

TEST(NetkitMonitors, RefusesWrongUsage) {
  const std::string cell = EXAMPLES_DIRECTORY "/cell.PD", before = ReadFile(cell).value();
  const Outcome unknown = Ask("monitors cell --uncontrollable a_pik");
  EXPECT_EQ(unknown.status, 2);
  EXPECT_EQ(unknown.err, "Unknown transition a_pik; did you mean 'a_pick'?\n");
  EXPECT_EQ(Ask("monitors cell -o '" + cell + "'").status, 2);
  EXPECT_EQ(ReadFile(cell), before);
  EXPECT_EQ(Ask("monitors cell -o new.txt").status, 2);
  EXPECT_EQ(Ask("monitors cell philosophers -o new.PD").status, 2);
  EXPECT_EQ(Ask("monitors cell --max 0").status, 2);
  EXPECT_EQ(Ask("monitors cell -o /no/such/directory/new.PD").status, 1);
}

}  // namespace
}  // namespace siphons
