// netkit monitors as a process: the net that it wrote, as other subcommands and the report program take it,
// and its JSON. What it says is in netkit/commands.md and in the documents.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/program.h"

namespace siphons {
namespace {

using Json = nlohmann::json;

TEST(NetkitMonitors, WritesANetThatDoesNotBlock) {
  const TemporaryDirectory directory;
  const fs::path pd = directory.path() / "new.PD", pnml = directory.path() / "new.pnml";
  for (const fs::path& net : {pd, pnml}) {
    EXPECT_EQ(RunNetkit("monitors cell -q -o '" + net.string() + "'").status, 0) << net;
    for (const char* command : {"check '", "lint '"}) {
      EXPECT_EQ(RunNetkit(command + net.string() + "'").status, 0) << command << net;
    }
    EXPECT_TRUE(
        RunNetkit("monitors '" + net.string() + "'").out.starts_with("deadlock-free with 0 monitors: "));
  }
  EXPECT_EQ(RunProgram(ModelDirectory(directory.path()), SIPHONS_PROGRAM, "new").status, 0);
  EXPECT_EQ(RunNetkit("monitors cell -o /no/such/directory/new.PD").status, 1);

  // A picture shows which place was added, without laying the net out anew.
  const fs::path picture = directory.path() / "new.svg";
  EXPECT_EQ(RunNetkit("draw '" + pd.string() + "' -o '" + picture.string() + "'").status, 0);
  const std::string svg = ReadFile(picture).value_or("");
  EXPECT_NE(svg.find("<g class=\"place marked monitor\""), std::string::npos);
  EXPECT_EQ(svg.find("monitor\"", svg.find("monitor\"") + 1), std::string::npos) << "one only";
}

TEST(NetkitMonitors, AnswersAsJson) {
  const Json answer = Json::parse(RunNetkit("monitors philosophers --json").out);
  EXPECT_EQ(answer["verdict"], "deadlock-free");
  EXPECT_EQ(answer["reason"], nullptr);
  EXPECT_EQ(answer["kept_markings"], (Json{{"before", 81}, {"kept", 81}}));
  ASSERT_EQ(answer["monitors"].size(), 1U);
  const Json& monitor = answer["monitors"][0];
  EXPECT_EQ(Json({monitor["name"], monitor["tokens"], monitor["keeps"]["least"]}), Json({"monitor1", 4, 1}));
  EXPECT_EQ(Json({monitor["keeps"]["weights"].size(), monitor["feeds"].size(), monitor["filled_by"].size()}),
            Json({10, 5, 5}));
}

}  // namespace
}  // namespace siphons
