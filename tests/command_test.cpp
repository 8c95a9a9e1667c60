// The command's own duties: arguments and environment.
#include "tests/program.h"

namespace siphons {
namespace {

TEST(Command, ArgumentsAndEnvironment) {
  const Outcome usage = RunProgram("", SIPHONS_PROGRAM, "");
  const Outcome unset = RunProgram("-u MODELDIR", SIPHONS_PROGRAM, "net");
  const Outcome empty = RunProgram("MODELDIR=", SIPHONS_PROGRAM, "no-such-net more arguments");
  EXPECT_EQ(empty.out, "ERROR: could not open /no-such-net.DEFINFO for reading\n");
  EXPECT_EQ(empty.status, 1);
  const Outcome path = RunProgram("MODELDIR=/tmp", SIPHONS_PROGRAM, std::string(1000, 'n'));
  EXPECT_EQ(path.status, -SIGABRT);
  EXPECT_EQ(path.err.find("text too long for its buffer of 1000 characters: /tmp/nnn"), 0u);
  ExpectRowsOfThisTest({usage, unset});
}

}  // namespace
}  // namespace siphons
