// What kind of net a net is: the features that theorems about Petri nets ask for.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

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

/// Those of the counts that are not 0, each with what it counts: "2 inhibitor arcs, 1 enabling functions".
std::string TextOfCounts(std::initializer_list<std::pair<int64_t, const char*>> counts);

/// The classes of nets with theorems of their own, and the nodes at the rim. The classes are those of
/// ordinary nets without inhibitor arcs and enabling functions; priorities do not count.
struct NetStructure {
  bool ordinary = false;            ///< every weight is 1, and no inhibitor arc or enabling function is there
  bool stateMachine = false;        ///< every transition has one input and one output place
  bool markedGraph = false;         ///< every place has one input and one output transition
  bool freeChoice = false;          ///< transitions that share an input place have no other
  bool extendedFreeChoice = false;  ///< transitions that share an input place share all of them
  bool stronglyConnected = false;   ///< from every node along arcs to every other
  std::vector<int32_t> sourcePlaces, sinkPlaces;  ///< without input transition; without output transition
  std::vector<int32_t> sourceTransitions, sinkTransitions;  ///< without input place; without output place
  std::vector<int32_t> isolatedPlaces;                      ///< without any arc, inhibitor arcs included
};

/// Linear in places, transitions and arcs, but for the sorting of input places.
NetStructure StructureOf(const PetriNet& net);

}  // namespace siphons
