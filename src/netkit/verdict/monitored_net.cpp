// A net with its monitors as places. A monitor's arcs are what the firings change of its sum; an arc is never
// both an input and an output arc, since a transition that takes from the sum and gives it back as much need
// not be held up.
#include "netkit/model/monitor_names.h"
#include "netkit/verdict/monitors.h"

namespace siphons {

namespace {

/// What a firing of the transition adds to the weighted sum, with the weights by place.
std::optional<int64_t> EffectOn(const std::vector<int64_t>& weights, const Transition& transition) {
  int64_t effect = 0;
  for (const bool isInput : {true, false}) {
    for (const Arc& arc : isInput ? transition.inputs : transition.outputs) {
      int64_t tokens = 0;
      const bool tooLarge =
          __builtin_mul_overflow(weights[static_cast<size_t>(arc.place)], arc.weight, &tokens) ||
          (isInput ? __builtin_sub_overflow(effect, tokens, &effect)
                   : __builtin_add_overflow(effect, tokens, &effect));
      if (tooLarge) return std::nullopt;
    }
  }
  return effect;
}

}  // namespace

std::optional<PetriNet> WithMonitors(const PetriNet& net, const std::vector<Monitor>& monitors) {
  PetriNet monitored = net;
  for (const Monitor& monitor : monitors) {
    std::vector<int64_t> weights(net.places.size());
    for (const PlaceTokens& term : monitor.keeps.weights) {
      weights[static_cast<size_t>(term.place)] = term.tokens;
    }
    Arc arc;
    arc.place = static_cast<int32_t>(monitored.places.size());
    Place& place = monitored.places.emplace_back();
    place.name = monitor.name;
    if (!net.places[0].id.empty()) place.id = monitor.name;
    place.tokens = monitor.tokens;
    for (size_t t = 0; t < net.transitions.size(); ++t) {
      const std::optional<int64_t> effect = EffectOn(weights, net.transitions[t]);
      if (!effect || *effect == INT64_MIN) return std::nullopt;
      arc.weight = *effect < 0 ? -*effect : *effect;
      if (*effect < 0) monitored.transitions[t].inputs.push_back(arc);
      if (*effect > 0) monitored.transitions[t].outputs.push_back(arc);
    }
  }
  return monitored;
}

}  // namespace siphons
