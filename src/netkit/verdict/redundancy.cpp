#include "netkit/verdict/redundancy.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>
#include <vector>

namespace siphons {

namespace {

bool Covers(const ArcList& arcs, const ArcList& others) {
  return std::all_of(others.begin(), others.end(), [&arcs](const PlaceTokens& other) {
    return WeightAt(arcs, other.place) >= other.tokens;
  });
}

/// Whether a can fire wherever b can.
bool AsksNoMore(const MutableTransition& a, const MutableTransition& b) {
  return Covers(b.inputs, a.inputs) &&
         std::all_of(a.inhibitors.begin(), a.inhibitors.end(), [&b](const PlaceTokens& arc) {
           const int64_t weight = WeightAt(b.inhibitors, arc.place);
           return weight > 0 && weight <= arc.tokens;
         });
}

/// What a firing changes: outputs less inputs.
std::map<int32_t, int64_t> EffectOf(const MutableTransition& transition) {
  std::map<int32_t, int64_t> effect;
  for (const PlaceTokens& arc : transition.outputs) effect[arc.place] += arc.tokens;
  for (const PlaceTokens& arc : transition.inputs) effect[arc.place] -= arc.tokens;
  std::erase_if(effect, [](const auto& entry) { return entry.second == 0; });
  return effect;
}

/// Whether some transition adds tokens to the place, or takes some away.
bool Fills(const MutableNet& net, int32_t t, int32_t place) {
  return WeightAt(net.At(t).outputs, place) > WeightAt(net.At(t).inputs, place);
}
bool Drains(const MutableNet& net, int32_t t, int32_t place) {
  return WeightAt(net.At(t).outputs, place) < WeightAt(net.At(t).inputs, place);
}

}  // namespace

/// Transitions that can never fire, since a place can never hold what they take: tokens reach a place only
/// through transitions whose input places they can reach, and a place that nothing fills keeps what it has
/// at most. Places that tokens never reach go with them.
bool RemoveDeadTransitions(MutableNet& net) {
  std::vector<int64_t> most(net.tokens);  // exact, or "any number"
  constexpr int64_t kAny = INT64_MAX;
  std::vector<int32_t> lacking(net.transitions.size());
  std::vector<int32_t> ready;
  for (int32_t t = 0; t < net.TransitionCount(); ++t) {
    if (net.At(t).gone) continue;
    for (const PlaceTokens& arc : net.At(t).inputs) {
      lacking[static_cast<size_t>(t)] += net.Tokens(arc.place) < arc.tokens ? 1 : 0;
    }
    if (lacking[static_cast<size_t>(t)] == 0) ready.push_back(t);
  }
  for (size_t next = 0; next < ready.size(); ++next) {
    for (const PlaceTokens& arc : net.At(ready[next]).outputs) {
      int64_t& reached = most[static_cast<size_t>(arc.place)];
      if (reached == kAny || !Fills(net, ready[next], arc.place)) continue;
      for (const int32_t t : net.Consumers(arc.place)) {
        if (WeightAt(net.At(t).inputs, arc.place) <= reached) continue;
        if (--lacking[static_cast<size_t>(t)] == 0) ready.push_back(t);
      }
      reached = kAny;
    }
  }
  bool removed = false;
  for (int32_t t = 0; t < net.TransitionCount(); ++t) {
    if (net.At(t).gone || lacking[static_cast<size_t>(t)] == 0) continue;
    net.RemoveTransition(t);
    removed = true;
  }
  return removed;
}

/// Places that hold nothing up: none takes from them, or none takes more than it gives back and what they
/// hold initially is enough.
bool RemoveIdlePlaces(MutableNet& net) {
  bool removed = false;
  for (int32_t p = 0; p < net.PlaceCount(); ++p) {
    if (net.Gone(p) || net.Watched(p)) continue;
    const auto& consumers = net.Consumers(p);
    const bool idle = std::all_of(consumers.begin(), consumers.end(), [&net, p](int32_t t) {
      return !Drains(net, t, p) && WeightAt(net.At(t).inputs, p) <= net.Tokens(p);
    });
    if (!idle) continue;
    net.RemovePlace(p);
    removed = true;
  }
  return removed;
}

/// Places with the same arcs as another one that has no more tokens: their difference stays.
bool RemoveEqualPlaces(MutableNet& net) {
  using Row = std::vector<std::array<int64_t, 3>>;  // transition, taken, given
  std::map<Row, int32_t> kept;
  bool removed = false;
  for (int32_t p = 0; p < net.PlaceCount(); ++p) {
    if (net.Gone(p) || net.Watched(p)) continue;
    Row row;
    for (const int32_t t : net.Consumers(p)) {
      row.push_back({t, WeightAt(net.At(t).inputs, p), WeightAt(net.At(t).outputs, p)});
    }
    for (const int32_t t : net.Producers(p)) {
      if (WeightAt(net.At(t).inputs, p) == 0) row.push_back({t, 0, WeightAt(net.At(t).outputs, p)});
    }
    std::sort(row.begin(), row.end());
    const auto [other, isNew] = kept.emplace(std::move(row), p);
    if (isNew) continue;
    const bool fewer = net.Tokens(p) < net.Tokens(other->second);
    net.RemovePlace(fewer ? std::exchange(other->second, p) : p);
    removed = true;
  }
  return removed;
}

/// Transitions for which another one that asks no more does the same; and those that change nothing, where
/// another one that asks no more keeps the marking from being dead.
bool RemoveDominatedTransitions(MutableNet& net) {
  constexpr size_t kMostCompared = 50;
  std::map<std::map<int32_t, int64_t>, std::vector<int32_t>> byEffect;
  for (int32_t t = 0; t < net.TransitionCount(); ++t) {
    if (!net.At(t).gone) byEffect[EffectOf(net.At(t))].push_back(t);
  }
  bool removed = false;
  const auto remove = [&](int32_t t) {
    net.RemoveTransition(t);
    removed = true;
  };
  for (auto& [effect, alike] : byEffect) {
    if (effect.empty()) continue;
    for (size_t i = 0; i < std::min(alike.size(), kMostCompared); ++i) {
      for (size_t j = 0; j < alike.size() && !net.At(alike[i]).gone; ++j) {
        if (i == j || net.At(alike[j]).gone) continue;
        if (AsksNoMore(net.At(alike[i]), net.At(alike[j]))) remove(alike[j]);
      }
    }
  }
  for (const int32_t t : byEffect[{}]) {
    bool dominated = false;
    for (const PlaceTokens& arc : net.At(t).inputs) {
      const auto& others = net.Consumers(arc.place);
      dominated = dominated || std::any_of(others.begin(), others.end(), [&](int32_t other) {
                    return other != t && AsksNoMore(net.At(other), net.At(t));
                  });
    }
    if (dominated) remove(t);
  }
  return removed;
}

/// A place from which some transition takes one token and nothing else is empty in every dead marking. A trap
/// of such places, once marked, never lets the net block. So no sequence into a dead marking marks it: what
/// would take from it never fires, and of what would mark it only the enabledness counts.
bool RemoveWaysIntoTraps(MutableNet& net) {
  std::vector<bool> inTrap(net.tokens.size());
  std::vector<int32_t> trap;
  for (int32_t p = 0; p < net.PlaceCount(); ++p) {
    const auto& consumers = net.Consumers(p);
    inTrap[static_cast<size_t>(p)] =
        !net.Watched(p) && std::any_of(consumers.begin(), consumers.end(), [&net](int32_t t) {
          const MutableTransition& taker = net.At(t);
          return taker.inputs.size() == 1 && taker.inputs[0].tokens == 1 && taker.inhibitors.empty();
        });
  }
  const auto givesBack = [&](int32_t t) {
    return std::any_of(net.At(t).outputs.begin(), net.At(t).outputs.end(),
                       [&inTrap](const PlaceTokens& arc) { return inTrap[static_cast<size_t>(arc.place)]; });
  };
  for (bool shrunk = true; shrunk;) {
    shrunk = false;
    for (int32_t p = 0; p < net.PlaceCount(); ++p) {
      const auto& consumers = net.Consumers(p);
      if (!inTrap[static_cast<size_t>(p)] || std::all_of(consumers.begin(), consumers.end(), givesBack))
        continue;
      inTrap[static_cast<size_t>(p)] = false;
      shrunk = true;
    }
  }
  for (int32_t p = 0; p < net.PlaceCount(); ++p) {
    if (inTrap[static_cast<size_t>(p)]) trap.push_back(p);
  }
  if (std::any_of(trap.begin(), trap.end(), [&net](int32_t p) { return net.Tokens(p) > 0; })) {
    net.keepingTrap = std::move(trap);
    return false;
  }
  for (const int32_t p : trap) {
    while (!net.Consumers(p).empty()) net.RemoveTransition(net.Consumers(p).back());
  }
  for (const int32_t p : trap) {
    while (!net.Producers(p).empty()) net.MakeTest(net.Producers(p).back());
    net.RemovePlace(p);
  }
  return !trap.empty();
}

}  // namespace siphons
