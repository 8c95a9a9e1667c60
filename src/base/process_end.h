// Every way in which a program ends before main returns. They have a file of their own because the fuzz
// targets link other definitions, which throw an exception, and so survive the end of a run.
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
