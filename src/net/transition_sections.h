// Handler (keywords.h) of transitions with their arcs.
#pragma once

#include <cstdint>

#include "net/net.h"

namespace siphons {

int32_t f_trans(Net& net, const char* text, int32_t occurrence);

}  // namespace siphons
