#include "base/process_end.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace siphons {

void EndProcess(int32_t status) {
  std::exit(status);
}

void AbortProcess() {
  std::fflush(stdout);
  std::abort();
}

void ArithmeticFault() {
  std::fflush(stdout);
  std::signal(SIGFPE, SIG_DFL);
  std::raise(SIGFPE);
  std::abort();
}

}  // namespace siphons
