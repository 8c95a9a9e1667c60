#include "netkit/model/net_class.h"

#include <algorithm>
#include <utility>

namespace siphons {

namespace {

/// Immediate transitions go before timed ones, and among themselves by their priority.
std::pair<bool, int32_t> PriorityOf(const Transition& transition) {
  const bool immediate = transition.kind == TransitionKind::kImmediate;
  return {immediate, immediate ? transition.priority : 0};
}

}  // namespace

NetFeatures FeaturesOf(const PetriNet& net) {
  NetFeatures features;
  std::vector<std::pair<bool, int32_t>> priorities;
  for (const Transition& transition : net.transitions) {
    for (const std::vector<Arc>* arcs : {&transition.inputs, &transition.outputs, &transition.inhibitors}) {
      for (const Arc& arc : *arcs) {
        features.markingDependent += arc.markingDependent ? 1 : 0;
        features.weights += arcs != &transition.inhibitors && arc.weight != 1 ? 1 : 0;
      }
    }
    features.inhibitors += static_cast<int64_t>(transition.inhibitors.size());
    features.functions += transition.enablingFunction ? 1 : 0;
    priorities.push_back(PriorityOf(transition));
  }
  if (!priorities.empty()) {
    const auto lowest = *std::min_element(priorities.begin(), priorities.end());
    features.priorities =
        std::count_if(priorities.begin(), priorities.end(), [&](const auto& p) { return p > lowest; });
  }
  return features;
}

}  // namespace siphons
