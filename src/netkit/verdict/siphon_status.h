// What may become of a siphon: whether its tokens can run short.
//
// Three tests, from cheap to dear. A siphon without tokens stays empty. A marked trap inside keeps a token in
// it for ever; this settles the matter where one token is enough in every place of the siphon. Else the state
// equation with marked traps is asked for a marking at which all places of the siphon are short at once; when
// it has none, the siphon never runs dry. What is left may run dry: it need not, since the equation knows
// nothing of the order of firings.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "netkit/model/petri_net.h"
#include "netkit/verdict/state_equation.h"
#include "netkit/verdict/traps.h"

namespace siphons {

enum class SiphonStatus { kEmpty, kMarkedTrap, kNeverRunsDry, kMayRunDry };

/// "empty from the start", "marked trap inside", "never runs dry", "may run dry".
const char* TextOf(SiphonStatus status);

class SiphonStatuses {
 public:
  /// The net must outlive the object.
  explicit SiphonStatuses(const PetriNet& net);

  /// The status of a siphon. Where the steps of the solver do not suffice or `stop` asks for an end, it may
  /// run dry.
  SiphonStatus Of(const PlaceList& siphon, const std::function<bool()>& stop);

 private:
  bool MayBeShort(const PlaceList& siphon, const std::function<bool()>& stop);

  const PetriNet& net_;
  std::vector<int64_t> shortBelow_;
  TrapFinder finder_;
  StateEquation equation_;
};

}  // namespace siphons
