// One defect each in files that otherwise describe a net of three places: every NAME.PD of defects/, with
// NAME.DEFINFO or one that says nothing, against NAME.expected. That holds the status, then each line of the
// streams and of the report behind its name ("out|", "err|", "report|"), or "no report". Numbers that depend
// on how records are laid out are masked. Inputs that are large are composed below.
#include "tests/program.h"

namespace siphons {
namespace {

std::string Lines(const std::string& stream, const std::string& text) {
  std::string prefixed;
  for (const std::string& line : Split(text)) prefixed += stream + "|" + line + "\n";
  return prefixed;
}

/// What a run gave, in the form of the kept files.
std::string Shown(const Outcome& run, const fs::path& model, const std::string& net) {
  const auto report = MaskedReport(model / (net + ".siphons"));
  std::string err = run.err;
  const std::string before = "Unable to malloc ";
  if (err.starts_with(before)) {
    const size_t end = err.find_first_not_of("0123456789", before.size());
    err.replace(before.size(), end - before.size(), "@BYTES@");
  }
  return "status " + (run.status < 0 ? "signal " + std::to_string(-run.status) : std::to_string(run.status)) +
         "\n" + Lines("out", Masked(run.out, model)) + Lines("err", Masked(err, model)) +
         (report ? Lines("report", *report) : "no report\n");
}

std::vector<std::string> Cases() {
  std::vector<std::string> cases;
  for (const auto& entry : fs::directory_iterator(DEFECTS_DIRECTORY)) {
    if (entry.path().extension() == ".PD") cases.push_back(entry.path().stem());
  }
  std::sort(cases.begin(), cases.end());
  return cases;
}

class Defects : public testing::TestWithParam<std::string> {};

TEST_P(Defects, RunAsKept) {
  const fs::path directory = DEFECTS_DIRECTORY;
  const TemporaryDirectory model;
  fs::copy(directory / (GetParam() + ".PD"), model.path());
  const std::string info = GetParam() + ".DEFINFO";
  WriteFile(model.path() / info, ReadFile(directory / info).value_or(kNoInfo));
  EXPECT_EQ(Shown(RunNet(model.path(), GetParam()), model.path(), GetParam()),
            ReadFile(directory / (GetParam() + ".expected")));
}

INSTANTIATE_TEST_SUITE_P(Files, Defects, testing::ValuesIn(Cases()),
                         [](const auto& test) { return test.param; });

TEST(LargeDefects, RunToADocumentedEnd) {
  const std::string counts = "PLACES: 2\nTRANSITIONS: 1\nDEFINITION_PARAMETERS: 0\nREWARD_MEASURES: 0\n";
  const std::string places = "PLACE a 1\nPLACE b 2\n";
  const auto transition = [](const std::string& points) {
    return "TRANSITION t 1 SS EXP RS 0 0 0 0 0 0 0 0\nINPARCS 1 1 a " + points +
           " OUTPARCS 1 1 a 0 INHARCS 0\n";
  };
  const std::string net = counts + places + transition("0"), word(300000, 'x');
  const auto points = [](const std::string& count) {
    std::string text = count;
    for (int i = 0; i < 24000; ++i) text += " 1\n2";
    return text;
  };
  const std::string siphons =
      "report|Calculation of Siphons:\nreport|Time passed with computation: @TIME@ s\nreport|No. of siphons "
      "= 2 "
      "\nreport|MARKING:    1 { a }\nreport|MARKING:    2 { b }\n";
  const std::string good = "status 0\n" + siphons,
                    tooLong = "status 1\nerr|Fatal: Section too long\nno report\n";
  const struct {
    const char* name;
    std::string net, info, expected;
  } cases[] = {
      {"comment line", "--" + word + "\n" + net, kNoInfo, good},
      {"stray line", word + "\n" + net, kNoInfo, "status 0\nerr|Syntax error: " + word + "\n" + siphons},
      {"keyword line", net + "DESCRIPTION: " + word + "\n", kNoInfo, tooLong},
      {"section of 102400 characters",
       counts + "PLACE a 1" + std::string(102400 - 9, 'x') + "\nPLACE b 2\n" + transition("0"), kNoInfo,
       good},
      {"section of 102401 characters",
       counts + "PLACE a 1" + std::string(102401 - 9, 'x') + "\nPLACE b 2\n" + transition("0"), kNoInfo,
       tooLong},
      {"24000 points", counts + places + transition(points("24000")), kNoInfo, good},
      {"a point less", counts + places + transition(points("24001")), kNoInfo,
       "status 1\nerr|Fatal: Invalid points definition\nno report\n"},
      {"word", net, "a 0 " + word + " a 0 e 0\n", good},
      {"number", net, "a 0 e a " + std::string(300000, '9') + " e 0\n", good},
  };
  std::vector<Outcome> outcomes;
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    const TemporaryDirectory model;
    WriteFile(model.path() / "net.PD", test.net);
    WriteFile(model.path() / "net.DEFINFO", test.info);
    outcomes.push_back(RunNet(model.path()));
    EXPECT_EQ(Shown(outcomes.back(), model.path(), "net"), test.expected);
  }
  ExpectRowsOfThisTest(outcomes);
}

}  // namespace
}  // namespace siphons
