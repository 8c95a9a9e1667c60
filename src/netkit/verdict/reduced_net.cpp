#include "netkit/verdict/reduced_net.h"

#include <algorithm>
#include <cassert>
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
  for (bool any = true; any && !net.neverDead && !stop();) {
    any = RemoveDeadTransitions(net);
    for (const auto rule :
         {RemoveIdlePlaces, RemoveEqualPlaces, RemoveDominatedTransitions, RemoveWaysIntoTraps}) {
      any = rule(net) || any;
    }
    any = Agglomerate(net, stop) || any;
    assert(net.Consistent());
  }
}

}  // namespace

ReducedNet::ReducedNet(const PetriNet& net, const std::function<bool()>& stop) : original_(net), work_(net) {
  Reduce(work_, stop);
  std::vector<int32_t> numberOf(net.places.size(), -1);
  for (int32_t p = 0; p < work_.PlaceCount(); ++p) {
    if (work_.Gone(p)) continue;
    numberOf[static_cast<size_t>(p)] = static_cast<int32_t>(net_.places.size());
    net_.places.emplace_back().tokens = work_.Tokens(p);
  }
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
    kept.inputs = arcsOf(transition.inputs);
    kept.outputs = arcsOf(transition.outputs);
    kept.inhibitors = arcsOf(transition.inhibitors);
  }
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
