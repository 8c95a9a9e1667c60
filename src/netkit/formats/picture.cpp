// Sets of places against the arcs; linear in the net.
#include "netkit/formats/picture.h"

#include <algorithm>

namespace siphons {

std::vector<int32_t> DrainingTransitions(const PetriNet& net, const std::vector<int32_t>& places) {
  std::vector<bool> inside(net.places.size());
  for (const int32_t p : places) inside[static_cast<size_t>(p)] = true;
  const auto touches = [&inside](const std::vector<Arc>& arcs) {
    return std::any_of(arcs.begin(), arcs.end(),
                       [&inside](const Arc& arc) { return inside[static_cast<size_t>(arc.place)]; });
  };
  std::vector<int32_t> draining;
  for (size_t t = 0; t < net.transitions.size(); ++t) {
    const Transition& transition = net.transitions[t];
    if (touches(transition.inputs) && !touches(transition.outputs))
      draining.push_back(static_cast<int32_t>(t));
  }
  return draining;
}

const char* WordOf(TransitionKind kind) {
  switch (kind) {
    case TransitionKind::kImmediate:
      return "immediate";
    case TransitionKind::kExponential:
      break;
    case TransitionKind::kDeterministic:
      return "deterministic";
    case TransitionKind::kGeneral:
      return "general";
  }
  return "exponential";
}

}  // namespace siphons
