// A net under reduction: places and transitions leave it, transitions are joined.
//
// Numbers of places are those of the original net for ever; a place that left has no arcs. A transition
// stands for a sequence of firings of the original net, its macro: the first macros are the original
// transitions themselves, the later ones are put together from earlier ones, so that a sequence of a million
// firings takes no more room than the steps that made it.
//
// Priorities are left out. Places that an inhibitor arc tests are marked as watched: no rule removes them.
#pragma once

#include <cstdint>
#include <vector>

#include "netkit/verdict/firing_net.h"

namespace siphons {

using ArcList = std::vector<PlaceTokens>;  ///< ascending places, each once, weights of 1 at least

/// The weight at a place, 0 without an arc.
int64_t WeightAt(const ArcList& arcs, int32_t place);

/// Part of a macro: another one, fired so many times; 0 times where it is only asked whether it could fire.
struct MacroPart {
  int32_t macro = 0;
  int64_t times = 1;
};

struct MutableTransition {
  ArcList inputs = {}, outputs = {}, inhibitors = {};
  int32_t macro = 0;
  bool gone = false;
};

/// What may be left to fire at the end: a transition that the net no longer holds by itself.
struct LateFiring {
  ArcList inputs;
  int32_t macro = 0;
};

/// What the rules read and write directly.
struct ReductionState {
  std::vector<MutableTransition> transitions;
  std::vector<int64_t> tokens;                 ///< by place, initially
  std::vector<std::vector<MacroPart>> macros;  ///< empty for original transitions
  std::vector<MacroPart> early;                ///< fired before everything else, in this order
  std::vector<std::vector<LateFiring>> late;   ///< groups fired as long as possible, the last one first
  std::vector<int32_t> keepingTrap;  ///< empty, or a set of places that keeps all markings from being dead
};

class MutableNet : public ReductionState {
 public:
  /// The net has neither enabling functions nor marking-dependent arcs.
  explicit MutableNet(const PetriNet& net);

  int32_t PlaceCount() const { return static_cast<int32_t>(tokens.size()); }
  int32_t TransitionCount() const { return static_cast<int32_t>(transitions.size()); }
  const MutableTransition& At(int32_t transition) const {
    return transitions[static_cast<size_t>(transition)];
  }
  int64_t Tokens(int32_t place) const { return tokens[static_cast<size_t>(place)]; }
  bool Watched(int32_t place) const { return watched_[static_cast<size_t>(place)]; }
  bool Gone(int32_t place) const { return gone_[static_cast<size_t>(place)]; }
  /// Transitions with an output arc to the place, and with an input arc from it, in no particular order.
  const std::vector<int32_t>& Producers(int32_t place) const {
    return producers_[static_cast<size_t>(place)];
  }
  const std::vector<int32_t>& Consumers(int32_t place) const {
    return consumers_[static_cast<size_t>(place)];
  }

  void AddTransition(MutableTransition transition);
  void RemoveTransition(int32_t transition);
  /// With all arcs.
  void RemovePlace(int32_t place);
  /// From now on the transition gives back what it takes, and no more.
  void MakeTest(int32_t transition);
  int32_t AddMacro(std::vector<MacroPart> parts);

  /// Whether the lists by place are those of the transitions' arcs.
  bool Consistent() const;

 private:
  std::vector<bool> watched_, gone_;
  std::vector<std::vector<int32_t>> producers_, consumers_;
};

}  // namespace siphons
