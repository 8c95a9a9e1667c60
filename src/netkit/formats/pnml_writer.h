// Nets as PNML files of ISO/IEC 15909-2.
#pragma once

#include <string>

#include "netkit/model/petri_net.h"

namespace siphons {

/// The text of a PNML file with the net on one page. What such a net has no elements for stands in elements
/// <toolspecific tool="netkit">, which other programs pass over and ReadPnml reads.
std::string WritePnml(const PetriNet& net);

/// What other programs do not see of the net in such a file, for a warning; empty when they see everything
/// that decides which transitions can fire.
std::string HiddenInPnml(const PetriNet& net);

}  // namespace siphons
