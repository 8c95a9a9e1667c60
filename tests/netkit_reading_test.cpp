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
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) answers.push_back(Json::parse(line));
  return answers;
}

TEST(Reading, ANetByPathNameAndStandardInput) {
  const std::string answer = In(kExamples, "siphons cell").out;
  EXPECT_TRUE(answer.starts_with("No. of siphons = 5\n"));
  for (const char* same :
       {"siphons cell.PD", "siphons ./cell.PD", "siphons - <" EXAMPLES_DIRECTORY "/cell.PD"}) {
    for (const char* environment : {"-u MODELDIR", "MODELDIR=/no/such/directory"}) {
      const Outcome run = In(kExamples, same, environment);
      EXPECT_EQ(run.out, answer) << same;
      EXPECT_EQ(run.err, "") << same;
    }
  }
  EXPECT_EQ(In("/", "siphons cell", ModelDirectory(kExamples)).out, answer);
  EXPECT_EQ(In(kExamples, "siphons -q cell workflow").out, "");
  const Outcome several = In(kExamples, "siphons cell.PD cel workflow");
  EXPECT_EQ(several.out.find("cell.PD: No. of siphons = 5\n"), 0u);
  EXPECT_NE(several.out.find("\nworkflow: No. of siphons = "), std::string::npos);
  EXPECT_EQ(several.err, "cel.PD: error: no such file; did you mean 'cell'?\n");
  EXPECT_EQ(several.status, 1);
  const Outcome json = In(kExamples, "info --json cell nowhere workflow");
  const std::vector<Json> answers = JsonLines(json.out);
  ASSERT_EQ(answers.size(), 3u);
  for (const Json& one : answers) EXPECT_EQ(one["version"], 1);
  EXPECT_EQ(answers[0]["counts"], (Json{{"places", 8}, {"transitions", 6}, {"arcs", 20}}));
  EXPECT_EQ(answers[0]["bounds"]["robot"], 1);
  EXPECT_EQ(answers[1]["net"], "nowhere");
  EXPECT_EQ(answers[1]["diagnostics"][0]["severity"], "error");
  EXPECT_EQ(answers[2]["structurally_bounded"], true);
  EXPECT_EQ(json.err, "");
  EXPECT_EQ(JsonLines(In(kExamples, "sihpons cell --json").out)[0]["error"],
            "no subcommand 'sihpons'; did you mean 'siphons'?");
  ExpectRowsOfThisTest({several, In(kExamples, "siphons nowhere")});
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

TEST(Reading, ConvertedNetsHaveTheSameSiphons) {
  const TemporaryDirectory own;
  const std::string in = kExamples + "/philosophers.PD";
  const auto run = [&own](const std::string& arguments, int status = 0) {
    const Outcome outcome = In(own.path(), arguments);
    EXPECT_EQ(outcome.status, status) << arguments << "\n" << outcome.out << outcome.err;
    return outcome;
  };
  const Outcome written = run("convert '" + in + "' -o a.pnml");
  run("convert a.pnml -o b.pnml.gz");
  run("convert - -o c.PD <" + (own.path() / "b.pnml.gz").string());
  const std::string answer = run("siphons '" + in + "'").out;
  for (const char* net : {"a.pnml", "b.pnml.gz", "c.PD"})
    EXPECT_EQ(run(std::string("siphons ") + net).out, answer) << net;
  EXPECT_EQ(RunNet(own.path(), "c").status, 0) << "with the definition info that was written beside it";

  run("convert '" TESTS_DIRECTORY "/pnml/workflow.pnml' -o w.PD");
  EXPECT_EQ(ReadFile(own.path() / "w.names"), "kind\told name\tnew name\nplace\torder & pay\torder_&_pay\n");
  const Outcome beyond = run("convert '" TESTS_DIRECTORY "/pnml/pages.pnml' -o p.PD", 1);
  EXPECT_FALSE(fs::exists(own.path() / "p.PD"));
  EXPECT_EQ(beyond.err,
            "p.PD: error: the place 'idle_now' has the tokens 9000000000; a .PD file holds numbers up to "
            "2147483647\n");
  run("convert c.PD -o ./c.PD", 2);
  run("convert c.PD -o c.xml", 2);
  ExpectRowsOfThisTest({written});
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
