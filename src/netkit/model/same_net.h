// Whether two nets are the same as nets: which a file format must keep, whatever it does to the drawing.
#pragma once

#include <string>

#include "netkit/model/petri_net.h"

namespace siphons {

/// What differs first between the nets in names, tokens, arcs, weights, kinds, priorities or texts, as words
/// for a message; empty when nothing does. Ids, positions and places in files do not count.
std::string DifferenceOf(const PetriNet& a, const PetriNet& b);

}  // namespace siphons
