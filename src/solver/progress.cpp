#include "solver/progress.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "solver/sharedVars.h"

namespace siphons {

double progressDelay = 2;

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

struct Line {
  bool onTerminal;
  Clock::time_point start;
  double due;  ///< seconds after the start
  int32_t length;
};

Line line{};

}  // namespace

void StartProgress() {
  line = {isatty(STDERR_FILENO) == 1, Clock::now(), progressDelay, 0};
}

void ShowProgress(uint32_t k) {
  constexpr double kInterval = 0.2;
  if (!line.onTerminal) return;
  const double elapsed = Seconds(Clock::now() - line.start).count();
  if (elapsed < line.due) return;
  line.due = elapsed + kInterval;
  // The number of rays may fall: blanks cover what the line before had more.
  char text[100];
  const int32_t length = std::snprintf(text, sizeof text, "constraint %u of %u, %u rays, %lld s", k + 1,
                                       NbConstraints, NbRay, static_cast<long long>(elapsed));
  std::fprintf(stderr, "\r%-*s", line.length, text);
  line.length = std::max(line.length, length);
}

void ClearProgress() {
  if (line.length > 0) std::fprintf(stderr, "\r%*s\r", line.length, "");
  line.length = 0;
}

}  // namespace siphons
