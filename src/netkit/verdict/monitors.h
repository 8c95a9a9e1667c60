// Monitors: places that keep siphons from running dry, until the net is proved deadlock-free.
//
// At a dead marking D of the net, or at the proof's candidate for one, some siphon S is short of tokens. The
// condition M(S) >= 1 + D(S) excludes D. A monitor enforces it: a place that always holds what M(S) has
// beyond the bound, so its row of the incidence matrix is the sum of the rows of S (invariant-based
// supervisors: Moody and Antsaklis 1998; siphons as the constraints: Ezpeleta et al. 1995). The verdict is
// asked again for the net with the monitor, and so on; a siphon may hold monitors, too. Since a monitor holds
// a weighted sum of the net's own places less a constant, every condition is one on these places alone.
//
// Markings at which the net can be kept from blocking are listed, all or as many as the memory allows. A
// condition that excludes none of them is preferred, and where every siphon's plain sum excludes some, or
// cannot tell D from the initial marking, weights are sought: on the places that are short at D, then on all,
// in the end also negative ones (separation.h).
//
// A monitor never takes from an uncontrollable transition. Transitions with priority over others count as
// such: held up by a monitor, they would let others fire that could not before, and the new net would reach
// markings that the old one does not.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "netkit/model/petri_net.h"
#include "netkit/verdict/separation.h"
#include "netkit/verdict/verdict.h"

namespace siphons {

struct Monitor {
  std::string name;    ///< of its place
  MarkingBound keeps;  ///< on the places of the old net
  int64_t tokens = 0;  ///< initially
};

struct MonitorOptions {
  size_t most = 100;
  std::vector<int32_t> uncontrollable = {};  ///< transitions from which no monitor may take
};

/// How many of the markings from which the old net need not block are reached with the monitors.
struct KeptMarkings {
  int32_t before = 0;
  int32_t kept = 0;
};

struct MonitoredNet {
  PetriNet net;  ///< the old places first, then the monitors
  std::vector<Monitor> monitors;
  Verdict verdict;                   ///< of the new net
  std::optional<KeptMarkings> kept;  ///< where the old net is not proved and both nets' markings are listed
  std::string reason;                ///< why no more monitors were added; empty when the net is proved
  PlaceList uncontrolled;            ///< the siphon that no monitor controls, if that is the reason
};

MonitoredNet AddMonitors(const PetriNet& net, const MonitorOptions& options, const StopQuestion& stop);

/// The net with a place for each monitor behind its own places; nothing where a weight leaves 64 bits.
std::optional<PetriNet> WithMonitors(const PetriNet& net, const std::vector<Monitor>& monitors);

}  // namespace siphons
