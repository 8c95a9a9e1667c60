// A picture of a net whose file has no sensible positions: a layered layout by the Graphviz library.
#pragma once

#include <optional>

#include "netkit/formats/drawing.h"
#include "netkit/model/petri_net.h"

namespace siphons {

/// Whether this build has the library.
bool CanLayOut();

/// Places and transitions in layers along the arcs, arcs as curves. Nothing when this build has no layout, or
/// when the library finds none.
std::optional<Drawing> LaidOut(const PetriNet& net);

}  // namespace siphons
