// Handlers (keywords.h) of parameters, marking-dependent texts and reward measures.
#pragma once

#include <cstdint>

#include "net/net.h"

namespace siphons {

int32_t f_delaypar(Net& net, const char* text, int32_t occurrence);
int32_t f_delaypar_def(Net& net, const char* text, int32_t occurrence);
int32_t f_delay(Net& net, const char* text, int32_t occurrence);
int32_t f_md_enable(Net& net, const char* text, int32_t occurrence);
int32_t f_md_arc_mult(Net& net, const char* text, int32_t occurrence);
int32_t f_reward(Net& net, const char* text, int32_t occurrence);

}  // namespace siphons
