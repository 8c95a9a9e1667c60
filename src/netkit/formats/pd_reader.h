// The strict reader of .PD files: what it accepts, the report program's loader takes for the same net; what
// the loader would take for something other than what stands in the file, it refuses with the place.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "netkit/formats/diagnostics.h"
#include "netkit/model/petri_net.h"

namespace siphons {

/// The net that the text of a .PD file describes; nothing when it has errors, which are reported. Linear in
/// the size of the text.
std::optional<PetriNet> ReadPd(std::string_view source, std::string name, Diagnostics& diagnostics);

}  // namespace siphons
