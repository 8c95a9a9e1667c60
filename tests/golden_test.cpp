// Whole runs against kept outputs: report, standard output, standard error and exit status of every folder of
// golden/, each in a temporary copy. The order of a report's lines counts. Families of nets, rule_*: one rule
// of the file formats each, bad_*: one defect each.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "tests/program.h"

namespace siphons {
namespace {

std::vector<std::string> Cases() {
  std::vector<std::string> cases;
  for (const auto& entry : fs::directory_iterator(GOLDEN_DIRECTORY)) cases.push_back(entry.path().filename());
  std::sort(cases.begin(), cases.end());
  return cases;
}

class Golden : public testing::TestWithParam<std::string> {};

TEST_P(Golden, RunsAsKept) {
  const fs::path source = fs::path(GOLDEN_DIRECTORY) / GetParam();
  const TemporaryDirectory model;
  for (const char* file : {"net.PD", "net.DEFINFO"}) {
    if (fs::exists(source / file)) fs::copy(source / file, model.path());
  }
  const Outcome outcome = RunNet(model.path());
  EXPECT_EQ(Masked(outcome.out, model.path()), ReadFile(source / "expected.stdout"));
  EXPECT_EQ(Masked(outcome.err, model.path()), ReadFile(source / "expected.stderr"));
  EXPECT_EQ(std::to_string(outcome.status) + "\n", ReadFile(source / "expected.status"));
  EXPECT_EQ(MaskedReport(model.path() / "net.siphons"), ReadFile(source / "expected.siphons"));
}

TEST(Examples, HaveTheReportsThatTheyGive) {
  const fs::path examples = EXAMPLES_DIRECTORY;
  const TemporaryDirectory model;
  int nets = 0;
  for (const auto& entry : fs::directory_iterator(examples)) {
    if (entry.path().extension() != ".PD") continue;
    const std::string name = entry.path().stem();
    SCOPED_TRACE(name);
    for (const char* extension : {".PD", ".DEFINFO"}) fs::copy(examples / (name + extension), model.path());
    EXPECT_EQ(RunProgram(ModelDirectory(model.path()), SIPHONS_PROGRAM, name).status, 0);
    EXPECT_EQ(MaskedReport(model.path() / (name + ".siphons")), MaskedReport(examples / (name + ".siphons")));
    ++nets;
  }
  EXPECT_GE(nets, 5);
}

INSTANTIATE_TEST_SUITE_P(Nets, Golden, testing::ValuesIn(Cases()),
                         [](const auto& test) { return test.param; });

}  // namespace
}  // namespace siphons
