// The one way in which memory that cannot be had ends the process, for every floor of the program.
#pragma once

#include <cstdint>

namespace siphons {

/// Writes "Unable to malloc %u bytes\n" with the size, or with 4294967295 for a greater one, to standard
/// error and ends the process with exit status 255.
[[noreturn]] void OutOfMemory(uint64_t bytes);

/// The same after "Unable to malloc more memory\n", where nobody knows how much was asked for.
[[noreturn]] void OutOfMemory();

}  // namespace siphons
