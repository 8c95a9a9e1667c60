#include "netkit/model/net_class.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace siphons {

namespace {

/// Immediate transitions go before timed ones, and among themselves by their priority.
std::pair<bool, int32_t> PriorityOf(const Transition& transition) {
  const bool immediate = transition.kind == TransitionKind::kImmediate;
  return {immediate, immediate ? transition.priority : 0};
}

std::vector<int32_t> PlacesOf(const std::vector<Arc>& arcs) {
  std::vector<int32_t> places;
  std::transform(arcs.begin(), arcs.end(), std::back_inserter(places),
                 [](const Arc& arc) { return arc.place; });
  std::sort(places.begin(), places.end());
  return places;
}

using Links = std::vector<std::vector<int32_t>>;  ///< by node, the nodes behind it

bool ReachesAll(const Links& links) {
  std::vector<bool> seen(links.size());
  std::vector<int32_t> reached{0};
  seen[0] = true;
  for (size_t i = 0; i < reached.size(); ++i) {
    for (const int32_t next : links[static_cast<size_t>(reached[i])]) {
      if (seen[static_cast<size_t>(next)]) continue;
      seen[static_cast<size_t>(next)] = true;
      reached.push_back(next);
    }
  }
  return reached.size() == links.size();
}

/// Nodes are the places and, behind them, the transitions.
bool IsStronglyConnected(const PetriNet& net) {
  const size_t places = net.places.size(), nodes = places + net.transitions.size();
  if (nodes == 0) return true;
  Links forward(nodes), backward(nodes);
  const auto link = [&](size_t from, size_t to) {
    forward[from].push_back(static_cast<int32_t>(to));
    backward[to].push_back(static_cast<int32_t>(from));
  };
  for (size_t t = 0; t < net.transitions.size(); ++t) {
    for (const Arc& arc : net.transitions[t].inputs) link(static_cast<size_t>(arc.place), places + t);
    for (const Arc& arc : net.transitions[t].outputs) link(places + t, static_cast<size_t>(arc.place));
  }
  return ReachesAll(forward) && ReachesAll(backward);
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

std::string TextOfCounts(std::initializer_list<std::pair<int64_t, const char*>> counts) {
  std::string text;
  for (const auto& [count, what] : counts) {
    if (count > 0) text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + what;
  }
  return text;
}

NetStructure StructureOf(const PetriNet& net) {
  NetStructure structure;
  const NetFeatures features = FeaturesOf(net);
  structure.ordinary =
      features.weights + features.markingDependent + features.inhibitors + features.functions == 0;
  structure.stateMachine = structure.markedGraph = structure.freeChoice = structure.extendedFreeChoice =
      structure.ordinary;
  std::vector<int64_t> producers(net.places.size()), consumers(net.places.size()),
      inhibited(net.places.size());
  std::vector<std::vector<int32_t>> inputsOfConsumers(net.places.size());  // of the first one of each place
  const auto at = [](auto& table, int32_t number) -> auto& {
    return table[static_cast<size_t>(number)];
  };
  for (size_t t = 0; t < net.transitions.size(); ++t) {
    const Transition& transition = net.transitions[t];
    const auto number = static_cast<int32_t>(t);
    if (transition.inputs.empty()) structure.sourceTransitions.push_back(number);
    if (transition.outputs.empty()) structure.sinkTransitions.push_back(number);
    if (transition.inputs.size() != 1 || transition.outputs.size() != 1) structure.stateMachine = false;
    const std::vector<int32_t> inputs = PlacesOf(transition.inputs);
    for (const int32_t p : inputs) {
      if (++at(consumers, p) == 1) {
        at(inputsOfConsumers, p) = inputs;
      } else if (at(inputsOfConsumers, p) != inputs) {
        structure.extendedFreeChoice = false;
      }
    }
    for (const Arc& arc : transition.outputs) ++at(producers, arc.place);
    for (const Arc& arc : transition.inhibitors) ++at(inhibited, arc.place);
  }
  structure.freeChoice = structure.extendedFreeChoice;
  for (size_t p = 0; p < net.places.size(); ++p) {
    const auto number = static_cast<int32_t>(p);
    if (producers[p] == 0) structure.sourcePlaces.push_back(number);
    if (consumers[p] == 0) structure.sinkPlaces.push_back(number);
    if (producers[p] + consumers[p] + inhibited[p] == 0) structure.isolatedPlaces.push_back(number);
    if (producers[p] != 1 || consumers[p] != 1) structure.markedGraph = false;
    if (consumers[p] > 1 && inputsOfConsumers[p].size() > 1) structure.freeChoice = false;
  }
  structure.stronglyConnected = IsStronglyConnected(net);
  return structure;
}

}  // namespace siphons
