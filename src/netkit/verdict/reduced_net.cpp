#include "netkit/verdict/reduced_net.h"

#include <algorithm>
#include <cassert>
#include <map>
#include <set>
#include <span>
#include <string>
#include <utility>

#include "netkit/verdict/agglomeration.h"
#include "netkit/verdict/redundancy.h"

namespace siphons {

namespace {

bool Agglomerate(MutableNet& net, const std::function<bool()>& stop) {
  bool any = false;
  for (int32_t p = 0; p < net.PlaceCount() && !stop(); ++p) {
    if (AgglomerateAfter(net, p) || AgglomerateBefore(net, p)) any = true;
  }
  return any;
}

void Reduce(MutableNet& net, const std::function<bool()>& stop) {
  for (bool any = true; any && !stop();) {
    any = RemoveDeadTransitions(net);
    for (const auto rule :
         {RemoveIdlePlaces, RemoveEqualPlaces, RemoveDominatedTransitions, RemoveWaysIntoTraps}) {
      any = rule(net) || any;
    }
    if (!net.keepingTrap.empty()) break;
    any = Agglomerate(net, stop) || any;
    assert(net.Consistent());
  }
}

/// What a macro fires, in the words that ReducedNet::Net promises.
std::string NameOf(const MutableNet& reduced, const PetriNet& net, int32_t macro) {
  constexpr size_t kMostTerms = 4;
  constexpr int32_t kMostSteps = 100;
  struct Term {
    int32_t transition;
    int64_t times;
  };
  std::vector<Term> terms;
  std::vector<MacroPart> waiting = {{macro, 1}};
  bool asksOnly = false;
  for (int32_t step = 0; step < kMostSteps && terms.size() <= kMostTerms && !waiting.empty(); ++step) {
    const MacroPart part = waiting.back();
    waiting.pop_back();
    if (static_cast<size_t>(part.macro) < net.transitions.size()) {
      if (!terms.empty() && terms.back().transition == part.macro) {
        terms.back().times += part.times;
      } else {
        terms.push_back({part.macro, part.times});
      }
      continue;
    }
    if (part.times > 1) waiting.push_back({part.macro, part.times - 1});
    const auto& parts = reduced.macros[static_cast<size_t>(part.macro)];
    for (auto next = parts.rbegin(); next != parts.rend(); ++next) {
      asksOnly = asksOnly || next->times == 0;
      waiting.push_back({next->macro, std::max<int64_t>(next->times, 1)});
    }
  }
  std::string name;
  for (const Term& term : std::span(terms).first(std::min(terms.size(), kMostTerms))) {
    if (!name.empty()) name += '+';
    if (term.times > 1) name += std::to_string(term.times) + "*";
    name += net.transitions[static_cast<size_t>(term.transition)].name;
  }
  if (!waiting.empty() || terms.size() > kMostTerms) name += "+...";
  return asksOnly ? name + "?" : name;
}

/// Adds numbers to the names of transitions that are taken.
void MakeNamesUnique(PetriNet& net) {
  std::set<std::string> taken;
  std::map<std::string, int32_t> uses;
  for (const Place& place : net.places) taken.insert(place.name);
  for (Transition& transition : net.transitions) {
    const std::string wish = transition.name;
    while (!taken.insert(transition.name).second) {
      transition.name = wish + "#" + std::to_string(++uses[wish] + 1);
    }
  }
}

}  // namespace

ReducedNet::ReducedNet(const PetriNet& net, const std::function<bool()>& stop) : original_(net), work_(net) {
  Reduce(work_, stop);
  std::vector<int32_t> numberOf(net.places.size(), -1);
  for (int32_t p = 0; p < work_.PlaceCount(); ++p) {
    if (work_.Gone(p)) continue;
    numberOf[static_cast<size_t>(p)] = static_cast<int32_t>(net_.places.size());
    Place& kept = net_.places.emplace_back();
    kept.name = net.places[static_cast<size_t>(p)].name;
    kept.id = net.places[static_cast<size_t>(p)].id;
    kept.tokens = work_.Tokens(p);
  }
  for (const int32_t p : work_.keepingTrap) keepingTrap_.push_back(numberOf[static_cast<size_t>(p)]);
  const auto arcsOf = [&numberOf](const ArcList& list) {
    std::vector<Arc> arcs;
    for (const PlaceTokens& entry : list) {
      Arc& arc = arcs.emplace_back();
      arc.place = numberOf[static_cast<size_t>(entry.place)];
      arc.weight = entry.tokens;
    }
    return arcs;
  };
  for (const MutableTransition& transition : work_.transitions) {
    if (transition.gone) continue;
    macroOf_.push_back(transition.macro);
    Transition& kept = net_.transitions.emplace_back();
    kept.name = NameOf(work_, net, transition.macro);
    kept.inputs = arcsOf(transition.inputs);
    kept.outputs = arcsOf(transition.outputs);
    kept.inhibitors = arcsOf(transition.inhibitors);
  }
  MakeNamesUnique(net_);
}

std::optional<std::vector<int32_t>> ReducedNet::Unfolded(const std::vector<int32_t>& sequence,
                                                         size_t most) const {
  std::vector<int32_t> unfolded;
  for (const MacroPart& part : work_.early) {
    if (!Append(part.macro, part.times, most, unfolded)) return std::nullopt;
  }
  for (const int32_t t : sequence) {
    if (!Append(macroOf_[static_cast<size_t>(t)], 1, most, unfolded)) return std::nullopt;
  }
  if (!AppendLate(most, unfolded)) return std::nullopt;
  return unfolded;
}

bool ReducedNet::Append(int32_t macro, int64_t times, size_t most, std::vector<int32_t>& sequence) const {
  std::vector<MacroPart> waiting = {{macro, times}};
  while (!waiting.empty()) {
    MacroPart& part = waiting.back();
    if (part.times == 0) {
      waiting.pop_back();
      continue;
    }
    --part.times;
    const int32_t next = part.macro;
    if (next < original_.TransitionCount()) {
      if (sequence.size() == most) return false;
      sequence.push_back(next);
      continue;
    }
    const std::vector<MacroPart>& parts = work_.macros[static_cast<size_t>(next)];
    waiting.insert(waiting.end(), parts.rbegin(), parts.rend());
  }
  return true;
}

bool ReducedNet::AppendLate(size_t most, std::vector<int32_t>& sequence) const {
  Marking marking = original_.Initial();
  size_t fired = 0;
  const auto catchUp = [&] {
    for (; fired < sequence.size(); ++fired) {
      if (!original_.Fire(sequence[fired], marking)) return false;
    }
    return true;
  };
  if (!catchUp()) return false;
  for (auto group = work_.late.rbegin(); group != work_.late.rend(); ++group) {
    for (const LateFiring& firing : *group) {
      int64_t times = INT64_MAX;
      for (const PlaceTokens& arc : firing.inputs) {
        times = std::min(times, marking[static_cast<size_t>(arc.place)] / arc.tokens);
      }
      if (!Append(firing.macro, times, most, sequence) || !catchUp()) return false;
    }
  }
  return true;
}

}  // namespace siphons
