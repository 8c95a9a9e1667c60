// How netkit gets its nets and tells what is wrong with them, as a user meets it: paths, names, standard
// input, several nets, JSON, other formats, and files made to take all memory.
#include <nlohmann/json.hpp>

#include "tests/program.h"

namespace siphons {
namespace {

using Json = nlohmann::json;

const std::string kExamples = EXAMPLES_DIRECTORY;
const std::string kGolden = GOLDEN_DIRECTORY;

/// Runs netkit in a directory, MODELDIR not set.
Outcome In(const fs::path& directory, const std::string& arguments,
           const std::string& environment = "-u MODELDIR") {
  return RunProgram("-C '" + directory.string() + "' " + environment, NETKIT_PROGRAM, arguments);
}

std::vector<Json> JsonLines(const std::string& text) {
  std::vector<Json> answers;
  for (const std::string& line : Split(text)) answers.push_back(Json::parse(line));
  return answers;
}

// How nets are named is in netkit/commands.md.
TEST(Reading, ANetByPathNameAndStandardInput) {
  ExpectRowsOfThisTest({In(kExamples, "siphons cell.PD cel workflow"), In(kExamples, "siphons nowhere")});
}

TEST(Reading, FaultsWarningsAndTheLenientReading) {
  const Outcome parallel = In(kGolden + "/rule_parallel_arcs", "siphons net");
  EXPECT_TRUE(parallel.err.starts_with("net.PD:18:1: error: a second arc of this group to 'a'"))
      << parallel.err;
  EXPECT_EQ(parallel.status, 1);
  EXPECT_EQ(parallel.out, "");
  const Outcome lenient = In(kGolden + "/rule_parallel_arcs", "siphons net --lenient --json");
  EXPECT_EQ(JsonLines(lenient.out)[0]["lenient"], true);
  EXPECT_EQ(lenient.status, 0);

  const Outcome lint = In(TESTS_DIRECTORY, "lint strict_reader/net.PD pnml/event_log.pnml");
  EXPECT_NE(lint.out.find("strict_reader/net.PD:1:1: warning: no net.DEFINFO beside the file"),
            std::string::npos);
  EXPECT_NE(lint.out.find("pnml/event_log.pnml: 0 errors, 4 warnings\n"), std::string::npos) << lint.out;
  EXPECT_EQ(lint.status, 0);
  const TemporaryDirectory own;
  std::string many = "PLACES: 2\nTRANSITIONS: 1\nPLACE 100% 3000000000\nPLACE x 1\n";
  for (int i = 0; i < 30; ++i) many += "FUNCTION nobody 1;\n";
  WriteFile(own.path() / "net.PD", many);
  const Outcome faults = In(own.path(), "siphons net.PD");
  const std::vector<Json> answers = JsonLines(In(own.path(), "lint net.PD --json").out);
  EXPECT_EQ(answers[0]["errors"], 32) << faults.err;
  EXPECT_EQ(answers[0]["diagnostics"].size(), 32u) << "JSON has all of them";
  EXPECT_EQ(answers[0]["diagnostics"][1]["line"], 3);
  EXPECT_EQ(answers[0]["diagnostics"][1]["column"], 12);
  ExpectRowsOfThisTest({parallel, lint, faults});
}

// What convert writes is in netkit/commands.md.
TEST(Reading, ConvertedNetsHaveTheSameSiphons) {
  const TemporaryDirectory own;
  ExpectRowsOfThisTest({In(own.path(), "convert '" + kExamples + "/philosophers.PD' -o a.pnml")});
}

TEST(Reading, HostileFilesEndInAnErrorInBoundedMemory) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer's shadow needs terabytes of addresses";
#endif
  const TemporaryDirectory own;
  const auto write = [&own](const char* name, const std::string& head, const std::string& part, int count) {
    std::ofstream file(own.path() / name, std::ios::binary);
    file << head;
    for (int i = 0; i < count; ++i) file << part;
  };
  constexpr int kMillion = 1'000'000;
  const std::string head = "<pnml><net id='n'>";
  write("nested.pnml", head, "<page id=\"g\">", 8 * kMillion);
  write("attributes.pnml", head, "<a b='' c='' d='' e=''/>", 4 * kMillion);
  std::string laughs = "<?xml version=\"1.0\"?>\n<!DOCTYPE pnml [\n<!ENTITY a0 \"ha\">\n";
  for (int i = 1; i < 10; ++i) {
    laughs += "<!ENTITY a" + std::to_string(i) + " \"";
    for (int k = 0; k < 10; ++k) laughs += "&a" + std::to_string(i - 1) + ";";
    laughs += "\">\n";
  }
  write("laughs.pnml", laughs + "]>\n<pnml><net id=\"&a9;\"/></pnml>\n", "", 0);
  write("truncated.pnml", head, "<place id=\"p\"><name>", 1);
  // A compressed megabyte, three hundred times.
  ASSERT_EQ(RunProgram("", "/bin/sh",
                       "-c 'head -c 1000000 /dev/zero | tr \"\\0\" \" \" | gzip >" +
                           (own.path() / "blanks").string() + "'")
                .status,
            0);
  write("bomb.pnml.gz", "", *ReadFile(own.path() / "blanks"), 300);
  const std::pair<const char*, const char*> cases[] = {
      {"nested.pnml", ":1:2593: error: elements are nested deeper than 200"},
      {"attributes.pnml", ": error: more than 10000000 elements and attributes"},
      {"laughs.pnml", ":2:1: error: a document type, which PNML has not"},
      {"truncated.pnml", "error: the XML is faulty"},
      {"bomb.pnml.gz", ": error: the compressed file is damaged, cut short, or longer than 256 MiB"},
  };
  for (const auto& [name, told] : cases) {
    const Outcome run = In(own.path(), std::string("siphons ") + name, "-u MODELDIR prlimit --as=900000000");
    EXPECT_EQ(run.status, 1) << name;
    EXPECT_NE(run.err.find(told), std::string::npos) << run.err;
  }
}

}  // namespace
}  // namespace siphons
