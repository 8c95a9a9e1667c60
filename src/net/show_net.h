// A readable listing of a loaded net.
#pragma once

#include <cstdint>

#include "net/net.h"

namespace siphons {

/// Lists the net field by field on standard output, and calls its error function once with the warning "I'm
/// error_func.\n", which shows where warnings go. A text that the net does not have is listed as "(null)".
/// Returns the value of the last write.
int32_t show_net(const Net& net);

}  // namespace siphons
