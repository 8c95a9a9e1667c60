// Numbered stopwatches of processor time.
#pragma once

#include <array>
#include <cstdint>

namespace siphons {

struct Timer {
  int32_t start;    ///< clock() at the last start, low 32 bits
  int32_t stop;     ///< clock() at the last stop, low 32 bits
  double total;     ///< seconds of all completed intervals
  int32_t running;  ///< 1 between start and stop, else 0
};

/// The numbers in use, each by one part of the program.
enum TimerNumber : uint32_t {
  kSolveTimer = 0,         ///< one solve
  kPartitionTimer = 3,     ///< inside a solve: the partition of the rays by sign
  kComputationTimer = 20,  ///< the whole computation, which the report tells
};

inline constexpr uint32_t kTimers = 25;
extern std::array<Timer, kTimers> timer;

// Timer numbers run from 0 to kTimers - 1 and are not tested.

/// Starts the timer; a running one goes on from its first start.
void start_timer(uint32_t number);

/// Adds the running interval to the total; a stopped timer stays as it is.
void stop_timer(uint32_t number);

/// Seconds of all completed intervals and of the running one.
double time_passed(uint32_t number);

/// Clears the total only: a running timer still adds its whole interval when it stops.
void reset_timer(uint32_t number);
void reset_all_timer();

}  // namespace siphons
