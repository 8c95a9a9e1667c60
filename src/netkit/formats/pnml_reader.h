// The reader of PNML files: place/transition nets of ISO/IEC 15909-2, as the editors in use write them.
#pragma once

#include <optional>
#include <string>

#include "netkit/formats/diagnostics.h"
#include "netkit/model/petri_net.h"

namespace siphons {

/// The net that the text of a PNML file describes; nothing when it has errors, which are reported. Labels are
/// the names where they are unique, ids elsewhere. Several arcs between the same two nodes are one with the
/// sum of their weights; of several inhibitor arcs the smallest weight decides. Takes the text because the
/// parser works in it.
std::optional<PetriNet> ReadPnml(std::string text, Diagnostics& diagnostics);

}  // namespace siphons
