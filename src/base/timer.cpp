#include "base/timer.h"

#include <ctime>

#include "base/arithmetic.h"

namespace siphons {

std::array<Timer, kTimers> timer{};

namespace {

constexpr double kTicksPerSecond = 1000000;

int32_t ClockTicks() {
  return WrapToInt32(std::clock());
}

}  // namespace

void start_timer(uint32_t number) {
  Timer& t = timer[number];
  if (t.running != 0) return;
  t.start = ClockTicks();
  t.running = 1;
}

void stop_timer(uint32_t number) {
  Timer& t = timer[number];
  if (t.running == 0) return;
  t.stop = ClockTicks();
  t.total += WrapSub(t.stop, t.start) / kTicksPerSecond;
  t.running = 0;
}

double time_passed(uint32_t number) {
  const Timer& t = timer[number];
  if (t.running == 0) return t.total;
  return t.total + static_cast<double>(std::clock() - t.start) / kTicksPerSecond;
}

void reset_timer(uint32_t number) {
  timer[number].total = 0;
}

void reset_all_timer() {
  for (uint32_t number = 0; number < kTimers; ++number) reset_timer(number);
}

}  // namespace siphons
