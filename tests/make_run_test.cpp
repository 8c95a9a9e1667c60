// What `make run` shows, and that it works on a copy of the net.
#include <gtest/gtest.h>

#include "tests/program.h"

namespace siphons {
namespace {

TEST(MakeRun, SaysWhetherTheReportIsAnAnswer) {
  const TemporaryDirectory place;
  const fs::path nets = SOURCE_DIRECTORY "/examples", programs = fs::path(SIPHONS_PROGRAM).parent_path();
  const auto run = [&](const fs::path& net) {
    const std::string command = "cd " + place.path().string() + " && " SOURCE_DIRECTORY "/scripts/run " +
                                programs.string() + " " + nets.string() + " " + net.string();
    return RunProgram("", "/bin/sh", "-c '" + command + "'");
  };
  const std::string answered = run("cell").out, failed = run("philosophers_17").out;
  EXPECT_EQ(answered.find("This command answers"), std::string::npos);
  EXPECT_TRUE(answered.ends_with("\nThe report is build/reports/cell.siphons.\n")) << answered;
  EXPECT_NE(failed.find("no siphons\n\nThe report is"), std::string::npos) << failed;
  EXPECT_NE(failed.find("/netkit siphons philosophers_17\n"), std::string::npos) << failed;
  EXPECT_TRUE(fs::exists(place.path() / "build/reports/cell.siphons"));
  EXPECT_EQ(run("no_such_net").status, 1);
}

}  // namespace
}  // namespace siphons
