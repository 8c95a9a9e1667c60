// Joining transitions over a place between them (Berthelot 1985), so that dead markings stay in reach or out
// of it. The rules and why they hold are in agglomeration.cpp.
#pragma once

#include <cstdint>

#include "netkit/verdict/mutable_net.h"

namespace siphons {

/// Removes the place together with its transitions, which it replaces by joined ones, if a rule allows that
/// and the net does not grow much by it. Returns whether it did.
bool AgglomerateAfter(MutableNet& net, int32_t place);
bool AgglomerateBefore(MutableNet& net, int32_t place);

}  // namespace siphons
