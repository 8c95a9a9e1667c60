// The picture of a net as SVG: circles with their tokens, boxes and bars, arcs, and names that can be
// selected. No script, no outside resource, and colours for light and dark surroundings that colour-blind
// people tell apart (Okabe and Ito 2008).
//
// Elements carry what a page needs to work with them: places have the id "p<number>", transitions
// "t<number>", arcs "data-place" and "data-transition"; numbers are those of the net. Classes: "place",
// "marked", "monitor"; "transition" and its kind; "arc" and "input", "output" or "inhibitor"; a highlight's
// name on its places, and "siphon" on the places of any; "drains" on the transitions that can run it dry.
#pragma once

#include <string>

#include "netkit/formats/drawing.h"
#include "netkit/formats/picture.h"
#include "netkit/model/petri_net.h"

namespace siphons {

/// A whole SVG document. With `forPage` its style and its title are left out, since the page has them.
std::string SvgOf(const PetriNet& net, const Drawing& drawing, const PictureOptions& options,
                  bool forPage = false);

}  // namespace siphons
