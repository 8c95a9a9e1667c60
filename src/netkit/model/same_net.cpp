#include "netkit/model/same_net.h"

#include <algorithm>
#include <tuple>

namespace siphons {

namespace {

bool SameArcs(const std::vector<Arc>& a, const std::vector<Arc>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Arc& x, const Arc& y) {
    return std::tie(x.place, x.weight, x.markingDependent, x.weightText) ==
           std::tie(y.place, y.weight, y.markingDependent, y.weightText);
  });
}

std::string DifferenceOf(const Transition& a, const Transition& b) {
  if (std::tie(a.kind, a.priority, a.infiniteServer, a.policy) !=
      std::tie(b.kind, b.priority, b.infiniteServer, b.policy)) {
    return "kind, priority, server or policy";
  }
  if (std::tie(a.delay.kind, a.delay.text) != std::tie(b.delay.kind, b.delay.text) ||
      (a.delay.kind == TransitionDelay::Kind::kNumber && a.delay.value != b.delay.value)) {
    return "delay";
  }
  if (a.enablingFunction != b.enablingFunction) return "enabling function";
  const bool sameArcs =
      SameArcs(a.inputs, b.inputs) && SameArcs(a.outputs, b.outputs) && SameArcs(a.inhibitors, b.inhibitors);
  return sameArcs ? "" : "arcs";
}

}  // namespace

std::string DifferenceOf(const PetriNet& a, const PetriNet& b) {
  const auto sameParameter = [](const Parameter& x, const Parameter& y) {
    return x.name == y.name && x.text == y.text && (x.text || x.value == y.value);
  };
  const auto sameMeasure = [](const Measure& x, const Measure& y) {
    return x.name == y.name && x.text == y.text;
  };
  if (a.type != b.type) return "the type of the net";
  if (!std::equal(a.parameters.begin(), a.parameters.end(), b.parameters.begin(), b.parameters.end(),
                  sameParameter)) {
    return "the parameters";
  }
  if (!std::equal(a.measures.begin(), a.measures.end(), b.measures.begin(), b.measures.end(), sameMeasure)) {
    return "the measures";
  }
  if (a.places.size() != b.places.size() || a.transitions.size() != b.transitions.size()) {
    return "the number of places or transitions";
  }
  for (size_t p = 0; p < a.places.size(); ++p) {
    const Place &x = a.places[p], &y = b.places[p];
    if (std::tie(x.name, x.tokens, x.markingParameter) != std::tie(y.name, y.tokens, y.markingParameter)) {
      return "name or tokens of the place '" + x.name + "'";
    }
  }
  for (size_t t = 0; t < a.transitions.size(); ++t) {
    const Transition &x = a.transitions[t], &y = b.transitions[t];
    if (x.name != y.name) return "the name of the transition '" + x.name + "'";
    if (const std::string what = DifferenceOf(x, y); !what.empty())
      return what + " of the transition '" + x.name + "'";
  }
  return "";
}

}  // namespace siphons
