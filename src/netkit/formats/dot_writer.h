// The picture of a net as a DOT file, for people who lay it out themselves.
#pragma once

#include <string>

#include "netkit/formats/picture.h"
#include "netkit/model/petri_net.h"

namespace siphons {

/// A whole DOT document: nodes by number ("p0", "t0"), names as labels, the same colours as the SVG.
std::string DotOf(const PetriNet& net, const PictureOptions& options);

}  // namespace siphons
