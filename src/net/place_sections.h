// Handlers (keywords.h) of the header sections and of places.
#pragma once

#include <cstdint>

#include "net/net.h"

namespace siphons {

int32_t f_nettype(Net& net, const char* text, int32_t occurrence);
int32_t f_descr(Net& net, const char* text, int32_t occurrence);
int32_t f_nplaces(Net& net, const char* text, int32_t occurrence);
int32_t f_ntrans(Net& net, const char* text, int32_t occurrence);
int32_t f_ndelaypar(Net& net, const char* text, int32_t occurrence);
int32_t f_nrewards(Net& net, const char* text, int32_t occurrence);
int32_t f_place(Net& net, const char* text, int32_t occurrence);

}  // namespace siphons
