// The command's own duties: arguments, environment, names as format text.
#include <gtest/gtest.h>

#include <csignal>

#include "tests/program.h"

namespace siphons {
namespace {

/// A net of places without arcs but for one timed transition: every place is a siphon of its own.
void WriteNet(const fs::path& model, const std::vector<std::string>& places) {
  std::string text = "PLACES: " + std::to_string(places.size()) + "\nTRANSITIONS: 1\n" +
                     "DEFINITION_PARAMETERS: 0\nREWARD_MEASURES: 0\n";
  for (const std::string& place : places) text += "PLACE " + place + " 1 0 0 0 0\n";
  text +=
      "TRANSITION t 1.0 SS EXP RS 0 0 0 0 0 0 0 0\nINPARCS 1\n1 " + places[0] + " 0\nOUTPARCS 0\nINHARCS 0\n";
  WriteFile(model / "net.PD", text);
  WriteFile(model / "net.DEFINFO", kNoInfo);
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
  const Outcome path = RunProgram("MODELDIR=/tmp", SIPHONS_PROGRAM, std::string(1000, 'n'));
  EXPECT_EQ(path.status, -SIGABRT);
  EXPECT_EQ(path.err.find("text too long for its buffer of 1000 characters: /tmp/nnn"), 0u);
  ExpectRowsOfThisTest({usage, unset});
}

TEST(Command, NamesAreFormatTextWithZeroForEveryArgument) {
  const TemporaryDirectory model;
  WriteNet(model.path(),
           {"a%%b", "x%5dy", "x%.2fy", "x%sy", "x%ny", "x%*dy", "x%lldy", "x%1$#xy", "x%1$*2$dy", "x%by",
            "x%yz", "%d%i%o%u%x%X%B", "%e%E%f%F", "%g%G%a%A", "%c%C.", "%p%m%S%s.", "end%"});
  const Outcome outcome = RunNet(model.path());
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(MaskedReport(model.path() / "net.siphons"),
            ReportOf({"a%b", "x    0y", "x0.00y", "xy", "xy", "x0y", "x0y", "x0y", "x0y", "x0y", "x%yz",
                      "0000000", "0.000000e+000.000000E+000.0000000.000000", "000x0p+00X0P+0",
                      std::string("\0\0.", 3), "(nil)Success.", "end"}));
}

TEST(Command, ANameOfBillionsOfCharactersEndsTheProcess) {
  const TemporaryDirectory model;
  const fs::path report = model.path() / "net.siphons";
  for (const char* name : {"%4096d", "%.4094f", "x%.500000000e", "%2147483647s", "%099999999999d"}) {
    WriteFile(report, "old");
    WriteNet(model.path(), {"plain", name});
    const Outcome outcome = RunNet(model.path());
    EXPECT_EQ(outcome.status, -SIGABRT) << name;
    EXPECT_EQ(outcome.err.find("text too long for its buffer of 4096 characters: "), 0u) << outcome.err;
    EXPECT_EQ(ReadFile(report), "old");
  }
  WriteNet(model.path(), {"%04095d", "%%99999d"});
  EXPECT_EQ(RunNet(model.path()).status, 0);
  EXPECT_EQ(MaskedReport(report), ReportOf({std::string(4095, '0'), "%99999d"}));
}

}  // namespace
}  // namespace siphons
