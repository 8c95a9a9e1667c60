// What a candidate of the state equation cannot have done with the transitions that it fires, whatever their
// order.
//
// The equation counts firings and forgets their order. Two kinds of sets of places bring a part of it back.
// Where the fired transitions that take from a set all give back to it, the set keeps a token that it had
// initially or that a fired transition put there: a trap, for these transitions. Where those that put into an
// initially empty set all take from it, none of them ever fires, and nothing is taken from it: a siphon, for
// these transitions. A candidate that says otherwise is refuted, and the reason becomes a condition on all
// solutions: the set holds a token, or the cause does not fire, or one of the transitions fires that the set
// is no trap or siphon for, its breakers (Athanasiou et al. 2016). The condition holds for every set of
// places, however it was found.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "netkit/model/petri_net.h"
#include "netkit/siphons/siphon_within.h"
#include "netkit/verdict/state_equation.h"

namespace siphons {

class SupportSets {
 public:
  /// The net must outlive the object and have no marking-dependent arcs.
  SupportSets(const PetriNet& net, const StateEquation& equation);

  /// Conditions that the candidate, which leaves these places empty, does not meet; `most` at most of each
  /// kind.
  std::vector<FiringCondition> Broken(const Candidate& candidate, const PlaceList& empty, size_t most);

 private:
  using Kind = FiringCondition::Kind;

  void Search(Kind kind, PlaceList places, size_t most, std::vector<FiringCondition>& found);
  bool IsCause(Kind kind, int32_t transition, int32_t place) const;
  FiringCondition ConditionOf(Kind kind, const PlaceList& places, int32_t cause) const;

  const PetriNet& net_;
  const StateEquation& equation_;
  ArcSets arcs_;
  std::vector<std::vector<int32_t>> producers_, consumers_;  ///< by place
  std::vector<bool> fired_;                                  ///< by transition, in the candidate
};

/// The transitions that take from the places and give nothing back, or with `turned`, that put into them and
/// take nothing from them; from the record of the net.
std::vector<int32_t> Breakers(const PetriNet& net, const PlaceList& places, bool turned);

}  // namespace siphons
