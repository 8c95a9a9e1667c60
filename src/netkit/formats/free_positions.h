// Positions for places that were added to a drawn net.
#pragma once

#include "netkit/model/petri_net.h"

namespace siphons {

/// Gives every place without a position one near the transitions that it is joined to, away from all other
/// nodes. Does nothing where one of the other nodes has no position, since there is no drawing then, or where
/// there are thousands of them.
void GivePositions(PetriNet& net);

}  // namespace siphons
