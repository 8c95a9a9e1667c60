// The subcommands of netkit that ask about siphons and traps. Each reads the net as `siphons` does, writes
// its answer and returns the exit status.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/exit_status.h"

namespace siphons {

/// What all questions have.
struct QuestionOptions {
  std::string net;
  std::string output;  ///< empty: standard output
  bool json = false;
  double timeout = 0;  ///< seconds; 0: none
};

struct EnumerationOptions : QuestionOptions {
  std::vector<std::string> containing;  ///< place names
  bool unmarked = false;
  bool traps = false;
  int64_t max = 0;  ///< 0: all
};

int32_t ListMinimalSets(const EnumerationOptions& options);

int32_t CheckCondition(const QuestionOptions& options);

}  // namespace siphons
