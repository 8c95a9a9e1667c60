// Places and transitions that make no difference to which dead markings can be reached. The rules and why
// they hold are in redundancy.cpp; each returns whether it removed anything.
#pragma once

#include "netkit/verdict/mutable_net.h"

namespace siphons {

bool RemoveDeadTransitions(MutableNet& net);
bool RemoveIdlePlaces(MutableNet& net);
bool RemoveEqualPlaces(MutableNet& net);
bool RemoveDominatedTransitions(MutableNet& net);
bool RemoveWaysIntoTraps(MutableNet& net);

}  // namespace siphons
