// Nets by hand and small random ones with what a verdict has to take into account, and their markings, listed
// literally.
#pragma once

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "netkit/model/petri_net.h"

namespace siphons {

/// Places with the weights of the arcs to them.
using Ends = std::vector<std::pair<int32_t, int64_t>>;

inline std::vector<Arc> MakeArcs(const Ends& ends) {
  std::vector<Arc> arcs(ends.size());
  for (size_t i = 0; i < ends.size(); ++i) std::tie(arcs[i].place, arcs[i].weight) = ends[i];
  return arcs;
}

inline Transition MakeTransition(const Ends& inputs, const Ends& outputs) {
  Transition transition;
  transition.inputs = MakeArcs(inputs);
  transition.outputs = MakeArcs(outputs);
  return transition;
}

inline PetriNet MakeNet(const std::vector<int64_t>& tokens, std::vector<Transition> transitions) {
  PetriNet net;
  for (const int64_t count : tokens) net.places.emplace_back().tokens = count;
  net.transitions = std::move(transitions);
  return net;
}

/// What a random net may have beyond arcs of weight 1.
struct RandomFeatures {
  bool weights = true, inhibitors = true, priorities = true;
  bool unknown = false;  ///< enabling functions and marking-dependent arcs
  bool sparse = false;   ///< more places, with few arcs: chains, which much of a net can be reduced to
  /// Instead of all this: machines with two or three states, one of them marked, which move alone or two at
  /// a time while a third one stands in a state. Their proofs need traps and conditions more often.
  bool machines = false;
};

inline PetriNet RandomMachines(std::mt19937& random) {
  const auto below = [&random](int32_t n) {
    return static_cast<int32_t>(random() % static_cast<uint32_t>(n));
  };
  std::vector<int32_t> first, states;
  std::vector<int64_t> tokens;
  for (int32_t machine = 3 + below(3); machine > 0; --machine) {
    first.push_back(static_cast<int32_t>(tokens.size()));
    states.push_back(2 + below(2));
    tokens.push_back(1);
    tokens.resize(tokens.size() + static_cast<size_t>(states.back()) - 1);
  }
  std::vector<int32_t> machines(first.size());
  std::iota(machines.begin(), machines.end(), 0);
  std::vector<Transition> transitions;
  for (int32_t count = 4 + below(10); count > 0; --count) {
    std::swap(machines[static_cast<size_t>(below(3))], machines[machines.size() - 1]);
    Ends inputs, outputs;
    const int32_t moved = 1 + below(2);
    for (int32_t i = 0; i < moved + below(2); ++i) {
      const size_t machine = static_cast<size_t>(machines[static_cast<size_t>(i)]);
      const int32_t from = below(states[machine]);
      const int32_t to = i < moved ? (from + 1 + below(states[machine] - 1)) % states[machine] : from;
      inputs.emplace_back(first[machine] + from, 1);
      outputs.emplace_back(first[machine] + to, 1);
    }
    transitions.push_back(MakeTransition(inputs, outputs));
  }
  return MakeNet(tokens, std::move(transitions));
}

inline PetriNet RandomNet(std::mt19937& random, const RandomFeatures& features) {
  if (features.machines) return RandomMachines(random);
  const auto below = [&random](uint32_t n) { return static_cast<int32_t>(random() % n); };
  PetriNet net;
  net.places.resize((features.sparse ? 5 : 2) + static_cast<size_t>(below(5)));
  for (size_t p = 0; p < net.places.size(); ++p) {
    net.places[p].name = "p" + std::to_string(p);
    net.places[p].tokens = std::max(0, below(4) - 1);
  }
  net.transitions.resize(1 + static_cast<size_t>(below(7)));
  const auto arcs = [&](std::vector<Arc>& list, uint32_t most, bool weighted) {
    for (int32_t count = features.sparse ? 1 + below(most) / 3 : below(most); count > 0; --count) {
      Arc arc;
      arc.place = below(static_cast<uint32_t>(net.places.size()));
      if (weighted && below(4) == 0) arc.weight = 2 + below(2);
      if (features.unknown && below(12) == 0) arc.markingDependent = true;
      const bool known = std::any_of(list.begin(), list.end(),
                                     [&arc](const Arc& other) { return other.place == arc.place; });
      if (!known) list.push_back(arc);
    }
  };
  for (size_t t = 0; t < net.transitions.size(); ++t) {
    Transition& transition = net.transitions[t];
    transition.name = "t" + std::to_string(t);
    arcs(transition.inputs, 4, features.weights);
    arcs(transition.outputs, 4, features.weights);
    if (features.inhibitors && below(4) == 0) arcs(transition.inhibitors, 3, true);
    if (features.priorities && below(3) == 0) {
      transition.kind = TransitionKind::kImmediate;
      transition.priority = below(3);
    }
    if (features.unknown && below(10) == 0) transition.enablingFunction = "unknown";
  }
  return net;
}

/// What a literal listing of the reachable markings shows. What depends on the marking takes every weight
/// from 0 to 2, an enabling function every value, and neither goes before anything.
struct Listing {
  bool complete = true;  ///< within the limit, all markings were listed
  bool dead = false;     ///< in one of them nothing must be able to fire
  std::set<std::vector<int64_t>> markings;
};

inline Listing ListMarkings(const PetriNet& net, size_t most) {
  const auto unknown = [](const Transition& t) {
    bool any = t.enablingFunction.has_value();
    for (const auto* arcs : {&t.inputs, &t.outputs, &t.inhibitors}) {
      for (const Arc& arc : *arcs) any = any || arc.markingDependent;
    }
    return any;
  };
  const auto allowed = [](const std::vector<int64_t>& m, const Transition& t) {
    for (const Arc& arc : t.inputs) {
      if (!arc.markingDependent && m[static_cast<size_t>(arc.place)] < arc.weight) return false;
    }
    return std::none_of(t.inhibitors.begin(), t.inhibitors.end(), [&m](const Arc& arc) {
      return !arc.markingDependent && m[static_cast<size_t>(arc.place)] >= arc.weight;
    });
  };
  const auto rank = [](const Transition& t) {
    return t.kind == TransitionKind::kImmediate ? 1 + t.priority : 0;
  };
  Listing listing;
  std::vector<int64_t> initial;
  for (const Place& place : net.places) initial.push_back(place.tokens);
  std::vector<std::vector<int64_t>> waiting = {initial};
  listing.markings.insert(initial);
  while (!waiting.empty()) {
    const std::vector<int64_t> m = waiting.back();
    waiting.pop_back();
    bool certain = false;
    int highest = 0;
    for (const Transition& t : net.transitions) {
      if (unknown(t) || !allowed(m, t)) continue;
      certain = true;
      highest = std::max(highest, rank(t));
    }
    listing.dead = listing.dead || !certain;
    for (const Transition& t : net.transitions) {
      if (!allowed(m, t) || rank(t) < highest) continue;
      std::vector<std::vector<int64_t>> next = {m};
      const auto move = [&next](const Arc& arc, int64_t sign) {
        const size_t p = static_cast<size_t>(arc.place);
        std::vector<std::vector<int64_t>> moved;
        for (const auto& from : next) {
          for (int64_t w = 0; w <= 2; ++w) {
            const int64_t weight = arc.markingDependent ? w : arc.weight;
            if (!arc.markingDependent && w > 0) continue;
            moved.push_back(from);
            moved.back()[p] += sign * weight;
            if (moved.back()[p] < 0) moved.pop_back();
          }
        }
        next = std::move(moved);
      };
      for (const Arc& arc : t.inputs) move(arc, -1);
      for (const Arc& arc : t.outputs) move(arc, 1);
      for (auto& to : next) {
        if (!listing.markings.insert(to).second) continue;
        if (listing.markings.size() > most) {
          listing.complete = false;
          return listing;
        }
        waiting.push_back(std::move(to));
      }
    }
  }
  return listing;
}

}  // namespace siphons
