// The command's own duties: arguments, paths, the report as a file, names as format text.
#include <gtest/gtest.h>

#include <csignal>

#include "tests/program.h"

namespace siphons {
namespace {

/// A net of places without arcs but for one timed transition: every place is a siphon of its own.
void WriteNet(const fs::path& model, const std::vector<std::string>& places,
              const std::string& info = "a 0 e a 0 e 0\n") {
  std::string text = "PLACES: " + std::to_string(places.size()) + "\nTRANSITIONS: 1\n" +
                     "DEFINITION_PARAMETERS: 0\nREWARD_MEASURES: 0\n";
  for (const std::string& place : places) text += "PLACE " + place + " 1 0 0 0 0\n";
  text +=
      "TRANSITION t 1.0 SS EXP RS 0 0 0 0 0 0 0 0\nINPARCS 1\n1 " + places[0] + " 0\nOUTPARCS 0\nINHARCS 0\n";
  WriteFile(model / "net.PD", text);
  WriteFile(model / "net.DEFINFO", info);
}

std::string ReportOf(const std::vector<std::string>& siphonLines) {
  std::string text = "Calculation of Siphons:\nTime passed with computation: @TIME@ s\nNo. of siphons = " +
                     std::to_string(siphonLines.size()) + " \n";
  for (const std::string& line : siphonLines) text += "MARKING:    1 { " + line + " }\n";
  return text;
}

TEST(Command, ArgumentsAndEnvironment) {
  const Outcome usage = RunProgram("", SIPHONS_PROGRAM, "");
  EXPECT_EQ(usage.out, "Usage: siphons netname\n");
  EXPECT_EQ(usage.status, 255);
  const Outcome unset = RunProgram("-u MODELDIR", SIPHONS_PROGRAM, "net");
  EXPECT_EQ(unset.err, "'MODELDIR' not set\n");
  EXPECT_EQ(unset.status, 1);
  const Outcome empty = RunProgram("MODELDIR=", SIPHONS_PROGRAM, "no-such-net more arguments");
  EXPECT_EQ(empty.out, "ERROR: could not open /no-such-net.DEFINFO for reading\n");
  EXPECT_EQ(empty.status, 1);
}

TEST(Command, TextsThatDoNotFitEndTheProcess) {
  const Outcome path = RunProgram("MODELDIR=/tmp", SIPHONS_PROGRAM, std::string(1000, 'n'));
  EXPECT_EQ(path.status, -SIGABRT);
  const TemporaryDirectory model;
  WriteNet(model.path(), {std::string(30, 'p')});
  const Outcome name = RunNet(model.path());
  EXPECT_EQ(name.status, -SIGABRT);
  EXPECT_NE(name.err, "");
  EXPECT_FALSE(fs::exists(model.path() / "net.siphons"));
}

TEST(Command, NamesAreFormatTextWithZeroForEveryArgument) {
  const TemporaryDirectory model;
  WriteNet(model.path(), {"a%%b", "x%5dy", "x%.2fy", "x%sy", "x%ny", "x%*dy", "x%lldy", "x%1$#xy",
                          "x%1$*2$dy", "x%by", "x%yz", "end%"});
  const Outcome outcome = RunNet(model.path());
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(
      MaskedReport(model.path() / "net.siphons"),
      ReportOf({"a%b", "x    0y", "x0.00y", "xy", "xy", "x0y", "x0y", "x0y", "x0y", "x0y", "x%yz", "end"}));
}

TEST(Command, AReportThatCannotBeWrittenIsNotLeft) {
  const TemporaryDirectory model;
  WriteNet(model.path(), {"a", "b"});
  const std::string report = (model.path() / "net.siphons").string();
  fs::create_symlink("/dev/full", report);
  const Outcome full = RunNet(model.path());
  EXPECT_EQ(full.out, "ERROR: could not open " + report + " for writing\n");
  EXPECT_EQ(full.status, 1);
  fs::remove(report);
  fs::create_directory(report);
  const Outcome blocked = RunNet(model.path());
  EXPECT_EQ(blocked.out, full.out);
  EXPECT_EQ(blocked.status, 1);
}

TEST(Command, NumbersOutsideTheNetAreLeftOutOfTheDefinitionInfo) {
  const TemporaryDirectory model;
  WriteNet(model.path(), {"a", "b"}, "arcs 0 end delays 2 d 1 0 l 3 0 7 -1 d 2 9 l 0 enabling 0\n");
  const Outcome outcome = RunNet(model.path());
  EXPECT_EQ(outcome.err,
            "Warning: definition info names place 7, the net has 2; ignored\n"
            "Warning: definition info names transition 9, the net has 1; ignored\n");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(MaskedReport(model.path() / "net.siphons"), ReportOf({"a", "b"}));
}

TEST(Command, CountsThatNoMemoryHoldsEndTheProcess) {
  const TemporaryDirectory model;
  WriteFile(model.path() / "net.DEFINFO", "a 2000000000\n");
  WriteFile(model.path() / "net.PD", "PLACES: 2147483647\n\n");
  const Outcome places = RunNet(model.path());
  EXPECT_EQ(places.status, 255);
  EXPECT_EQ(places.err.find("Unable to malloc "), 0u);
  WriteNet(model.path(), {"a"}, "a 2000000000\n");
  EXPECT_EQ(RunNet(model.path()).status, 255);
  WriteNet(model.path(), {"a"}, "a 0 e d 2000000000 d 2000000000");
  EXPECT_EQ(RunNet(model.path()).status, 0) << "a short file does not keep the reader busy";
}

}  // namespace
}  // namespace siphons
