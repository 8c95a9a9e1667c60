// What the net reader does with its reports unless the caller brings an error function of its own.
#pragma once

#include <cstdint>

namespace siphons {

/// Writes "Fatal: %s\n" to standard error and ends the process with exit status `fatal`, or, for 0, writes
/// "Warning: %s\n" there and returns 0.
int32_t DefaultError(const char* message, int32_t fatal);

}  // namespace siphons
