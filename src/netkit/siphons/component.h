// A part of a net that is searched for minimal siphons by itself, with numbers of its own and only those arcs
// that decide anything there.
#pragma once

#include <vector>

#include "netkit/siphons/arc_sets.h"

namespace siphons {

struct Component {
  PlaceList places;  ///< of the net, ascending; place i of `arcs` is places[i]
  /// A set of places is a siphon when each of these transitions takes from it or puts nothing into it. No
  /// transition has a place as input and as output.
  ArcSets arcs;
};

/// The same net for questions about siphons within the places alone, with fewer arcs. A place that a
/// transition takes from and puts into asks for nothing there; neither does an output place of a transition
/// whose input places are more than those of another transition that fills it. Places outside are dropped
/// from the inputs and outputs.
ArcSets WithoutDominatedArcs(const ArcSets& arcs, const PlaceList& places);

/// Components of disjoint parts of the places, each a siphon. Costs as much as the arcs, however many the
/// parts.
std::vector<Component> ComponentsOf(const ArcSets& arcs, std::vector<PlaceList> parts);

}  // namespace siphons
