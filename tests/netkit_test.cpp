// The netkit command: its outputs against kept ones on a net with links of every kind, the nets of the golden
// runs, and its usage.
#include <gtest/gtest.h>

#include "tests/program.h"

namespace siphons {
namespace {

Outcome Netkit(const fs::path& model, const std::string& arguments) {
  return RunProgram(ModelDirectory(model), NETKIT_PROGRAM, arguments);
}

TEST(Netkit, WritesAsKept) {
  const fs::path source = NETKIT_DIRECTORY;
  const TemporaryDirectory model;
  for (const char* file : {"net.PD", "net.DEFINFO"}) fs::copy(source / file, model.path());
  const Outcome list = Netkit(model.path(), "list net");
  const std::string shown = "netname:\t\t\"" + (model.path() / "net").string() + "\"\n";
  EXPECT_EQ(list.out.substr(0, shown.size()), shown);
  EXPECT_EQ(list.out.substr(shown.size()), ReadFile(source / "list.expected"));
  EXPECT_EQ(list.err, "");
  EXPECT_EQ(Netkit(model.path(), "structure net").out, ReadFile(source / "structure.expected"));
  const fs::path file = model.path() / "file";
  EXPECT_EQ(Netkit(model.path(), "structure net --summary -o '" + file.string() + "'").out,
            ReadFile(source / "summary.expected"));
  EXPECT_EQ(ReadFile(file), ReadFile(source / "structure.expected"));
  EXPECT_EQ(Netkit(model.path(), "pmf net").status, 0);
  EXPECT_EQ(ReadFile(model.path() / "net.pmf"), "TRANSITION general\n1.0*UNIFORM(0,2);\n\n");
  EXPECT_EQ(Netkit(model.path(), "structure net -o /no/such/file").err,
            "ERROR: could not open /no/such/file for writing\n");
  EXPECT_EQ(Netkit(model.path(), "structure net -o /dev/full").status, 1);
  fs::remove(model.path() / "net.pmf");
  fs::create_symlink("/dev/full", model.path() / "net.pmf");
  ExpectRowsOfThisTest({Netkit(model.path(), "pmf net"), Netkit(EXAMPLES_DIRECTORY, "pmf cell")});
}

TEST(Netkit, ReadsWhatSiphonsReads) {
  for (const auto& entry : fs::directory_iterator(GOLDEN_DIRECTORY)) {
    SCOPED_TRACE(entry.path().filename());
    const TemporaryDirectory model;
    for (const char* file : {"net.PD", "net.DEFINFO"}) {
      if (fs::exists(entry.path() / file)) fs::copy(entry.path() / file, model.path());
    }
    const std::string name = entry.path().filename();
    const bool refused =
        name == "bad_only_immediate" || name.starts_with("bad_no_places_");  // by the siphon run alone
    const bool loads = refused || ReadFile(entry.path() / "expected.status") == "0\n";
    const Outcome structure = Netkit(model.path(), "structure net");
    EXPECT_EQ(structure.status, loads ? 0 : 1) << structure.out << structure.err;
    EXPECT_EQ(structure.out.find("structural analysis file\n") == 0, loads);
    const bool infoAlone = name.starts_with("bad_definfo");
    EXPECT_EQ(Netkit(model.path(), "list net").status, loads || infoAlone ? 0 : 1);
  }
}

TEST(Netkit, Usage) {
  const fs::path nowhere = "/no/such/directory";
  std::vector<Outcome> outcomes;
  for (const char* wrong : {"", "list", "frob net", "chekc net", "structure net --summary", "list net --frob",
                            "list net more arguments", "siphons net --unmarked=maybe"}) {
    const Outcome& outcome = outcomes.emplace_back(Netkit(nowhere, wrong));
    EXPECT_EQ(outcome.status, 2) << wrong;
    EXPECT_EQ(outcome.out, "") << wrong;
    EXPECT_NE(outcome.err, "") << wrong;
  }
  ExpectRowsOfThisTest(outcomes);
  EXPECT_EQ(Netkit(nowhere, "--help").status, 0);
  EXPECT_EQ(Netkit(nowhere, "--version").out.find("netkit "), 0u);
  EXPECT_EQ(Netkit(nowhere, "structure net").out,
            "ERROR: could not open /no/such/directory/net.DEFINFO for reading\n");
  EXPECT_EQ(RunProgram("-u MODELDIR", NETKIT_PROGRAM, "list " EXAMPLES_DIRECTORY "/cell.PD").status, 0);
}

}  // namespace
}  // namespace siphons
