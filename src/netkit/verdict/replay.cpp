#include "netkit/verdict/replay.h"

#include <algorithm>
#include <utility>

namespace siphons {

namespace {

bool ArcsAllow(std::span<const int64_t> marking, const Transition& transition) {
  const auto holds = [&marking](const Arc& arc) {
    return marking[static_cast<size_t>(arc.place)] >= arc.weight;
  };
  return std::all_of(transition.inputs.begin(), transition.inputs.end(), holds) &&
         std::none_of(transition.inhibitors.begin(), transition.inhibitors.end(), holds);
}

bool GoesBefore(const Transition& a, const Transition& b) {
  if (a.kind != TransitionKind::kImmediate) return false;
  return b.kind != TransitionKind::kImmediate || a.priority > b.priority;
}

bool IsPlain(const Transition& transition) {
  const auto dependent = [](const Arc& arc) { return arc.markingDependent; };
  return !transition.enablingFunction &&
         std::none_of(transition.inputs.begin(), transition.inputs.end(), dependent) &&
         std::none_of(transition.outputs.begin(), transition.outputs.end(), dependent) &&
         std::none_of(transition.inhibitors.begin(), transition.inhibitors.end(), dependent);
}

}  // namespace

bool CanFire(const PetriNet& net, std::span<const int64_t> marking, const Transition& transition) {
  return ArcsAllow(marking, transition) &&
         std::none_of(net.transitions.begin(), net.transitions.end(), [&](const Transition& other) {
           return GoesBefore(other, transition) && ArcsAllow(marking, other);
         });
}

std::optional<std::vector<int64_t>> Replay(const PetriNet& net, std::span<const int32_t> sequence) {
  if (!std::all_of(net.transitions.begin(), net.transitions.end(), IsPlain)) return std::nullopt;
  std::vector<int64_t> marking;
  for (const Place& place : net.places) marking.push_back(place.tokens);
  for (const int32_t t : sequence) {
    const Transition& transition = net.transitions[static_cast<size_t>(t)];
    if (!CanFire(net, marking, transition)) return std::nullopt;
    for (const Arc& arc : transition.inputs) marking[static_cast<size_t>(arc.place)] -= arc.weight;
    for (const Arc& arc : transition.outputs) {
      int64_t& tokens = marking[static_cast<size_t>(arc.place)];
      if (__builtin_add_overflow(tokens, arc.weight, &tokens)) return std::nullopt;
    }
  }
  return marking;
}

bool IsDead(const PetriNet& net, std::span<const int64_t> marking) {
  return std::none_of(net.transitions.begin(), net.transitions.end(),
                      [&marking](const Transition& transition) { return ArcsAllow(marking, transition); });
}

}  // namespace siphons
