// What kind of net a net is: the features that theorems about Petri nets ask for.
#pragma once

#include <cstdint>

#include "netkit/model/petri_net.h"

namespace siphons {

/// What goes beyond an ordinary place/transition net.
struct NetFeatures {
  int64_t weights = 0;           ///< arcs with a weight other than 1, inhibitor arcs aside
  int64_t markingDependent = 0;  ///< arcs with a marking-dependent weight
  int64_t inhibitors = 0;        ///< inhibitor arcs
  int64_t functions = 0;         ///< transitions with an enabling function
  int64_t priorities = 0;        ///< transitions with priority over others

  bool None() const { return weights + markingDependent + inhibitors + functions + priorities == 0; }
};

NetFeatures FeaturesOf(const PetriNet& net);

}  // namespace siphons
