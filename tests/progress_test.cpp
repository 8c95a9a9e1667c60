// The progress line of long solves, on a pseudo-terminal.
#include "solver/progress.h"

#include <pty.h>

#include <array>
#include <regex>

#include "siphons/siphons.h"
#include "solver/sharedVars.h"
#include "tests/messages.h"
#include "tests/rows.h"

namespace siphons {
namespace {

/// What a solve of a small net writes to a terminal when its first line is due after so many seconds.
std::string OnTerminal(double delay) {
  int terminal = 0;
  const pid_t solve = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (solve == 0) {
    progressDelay = delay;
    const OwnedMatrix output = MatrixOf({{0, 1, 0}, {0, 0, 1}, {1, 0, 0}});
    const OwnedMatrix input = MatrixOf({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}), marking(ZeroMatrix(3, 1));
    Siphons(marking.get(), output.get(), output.get(), input.get());
    _exit(0);
  }
  std::string text;
  std::array<char, 1000> part{};
  for (ssize_t size; (size = read(terminal, part.data(), part.size())) > 0;) {
    text.append(part.data(), static_cast<size_t>(size));
  }
  close(terminal);
  int status = 1;
  waitpid(solve, &status, 0);
  EXPECT_EQ(StatusOf(status), 0);
  return text;
}

TEST(Progress, IsOneLineOnATerminal) {
  const std::string text = OnTerminal(0);
  EXPECT_TRUE(std::regex_match(text, std::regex("(\rconstraint \\d+ of \\d+, \\d+ rays, \\d+ s *)+\r +\r")))
      << text;
  EXPECT_EQ(OnTerminal(progressDelay), "") << "a short solve says nothing";
  ExpectRowsOfThisTest({{"", text.substr(1, text.find('\r', 1) - 1), 0}});
}

}  // namespace
}  // namespace siphons
