// The netkit command: its outputs against kept ones on a net with links of every kind, and its usage.
#include <gtest/gtest.h>

#include "tests/program.h"

namespace siphons {
namespace {

TEST(Netkit, WritesAsKept) {
  const fs::path source = NETKIT_DIRECTORY;
  const TemporaryDirectory model;
  for (const char* file : {"net.PD", "net.DEFINFO"}) fs::copy(source / file, model.path());
  const Outcome list = RunNetkit("list net", model.path());
  const std::string shown = "netname:\t\t\"" + (model.path() / "net").string() + "\"\n";
  EXPECT_EQ(list.out.substr(0, shown.size()), shown);
  EXPECT_EQ(list.out.substr(shown.size()), ReadFile(source / "list.expected"));
  EXPECT_EQ(list.err, "");
  EXPECT_EQ(RunNetkit("structure net", model.path()).out, ReadFile(source / "structure.expected"));
  const fs::path file = model.path() / "file";
  EXPECT_EQ(RunNetkit("structure net --summary -o '" + file.string() + "'", model.path()).out,
            ReadFile(source / "summary.expected"));
  EXPECT_EQ(ReadFile(file), ReadFile(source / "structure.expected"));
  EXPECT_EQ(RunNetkit("pmf net", model.path()).status, 0);
  EXPECT_EQ(ReadFile(model.path() / "net.pmf"), "TRANSITION general\n1.0*UNIFORM(0,2);\n\n");
  EXPECT_EQ(RunNetkit("structure net -o /no/such/file", model.path()).err,
            "ERROR: could not open /no/such/file for writing\n");
  EXPECT_EQ(RunNetkit("structure net -o /dev/full", model.path()).status, 1);
  fs::remove(model.path() / "net.pmf");
  fs::create_symlink("/dev/full", model.path() / "net.pmf");
  ExpectRowsOfThisTest({RunNetkit("pmf net", model.path()), RunNetkit("pmf cell")});
}

TEST(Netkit, Usage) {
  const fs::path nowhere = "/no/such/directory";
  std::vector<Outcome> outcomes;
  for (const char* wrong : {"", "list", "frob net", "chekc net", "structure net --summary", "list net --frob",
                            "list net more arguments", "siphons net --unmarked=maybe"}) {
    outcomes.push_back(RunNetkit(wrong, nowhere));
  }
  ExpectRowsOfThisTest(outcomes);
  EXPECT_EQ(RunNetkit("--help", nowhere).status, 0);
  EXPECT_EQ(RunNetkit("--version", nowhere).out.find("netkit "), 0u);
  EXPECT_EQ(RunNetkit("structure net", nowhere).out,
            "ERROR: could not open /no/such/directory/net.DEFINFO for reading\n");
  EXPECT_EQ(RunProgram("-u MODELDIR", NETKIT_PROGRAM, "list " EXAMPLES_DIRECTORY "/cell.PD").status, 0);
}

}  // namespace
}  // namespace siphons
