// Every way in which the program ends before main returns. One place of its own, so that a test harness can
// link another end instead and go on.
#pragma once

#include <cstdint>

namespace siphons {

/// Writes out the streams and ends the process with the status (exit_status.h).
[[noreturn]] void EndProcess(int32_t status);

/// Ends the process by abort, after writing out standard output.
[[noreturn]] void AbortProcess();

/// Ends the process by SIGFPE, as a faulting integer division does, after writing out standard output.
[[noreturn]] void ArithmeticFault();

}  // namespace siphons
