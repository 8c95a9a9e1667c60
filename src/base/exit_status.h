// The exit statuses of both programs, each with its one name. A process that a signal ends has none of them.
#pragma once

#include <cstdint>

namespace siphons {

enum ExitStatus : int32_t {
  kComplete = 0,        ///< the answer is whole; for `netkit check` also: no deadlock is reachable
  kFailure = 1,         ///< a file cannot be read or written, or says what it must not
  kUsage = 2,           ///< the command line of netkit is wrong
  kIncomplete = 3,      ///< netkit stopped at a limit; what was found is written and marked
  kDeadlock = 10,       ///< `netkit check` found a reachable deadlock
  kUndecided = 11,      ///< `netkit check` found neither a proof nor a deadlock
  kSiphonsUsage = 255,  ///< the command line of siphons is wrong
  kOutOfMemory = 255,
};

}  // namespace siphons
