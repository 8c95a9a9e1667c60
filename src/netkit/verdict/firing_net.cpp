#include "netkit/verdict/firing_net.h"

#include <algorithm>
#include <map>
#include <numeric>

namespace siphons {

namespace {

template <class T>
FlatLists<T> Flat(const std::vector<std::vector<T>>& lists) {
  FlatLists<T> flat;
  for (const std::vector<T>& list : lists) {
    for (const T& item : list) flat.Add(item);
    flat.EndList();
  }
  return flat;
}

}  // namespace

FiringNet::FiringNet(const PetriNet& net) {
  for (const Place& place : net.places) initial_.push_back(place.tokens);
  std::vector<std::vector<Watch>> watches(net.places.size());
  std::vector<std::vector<int32_t>> fillers(net.places.size()), drainers(net.places.size());
  int32_t number = 0;
  for (const Transition& transition : net.transitions) {
    if (transition.enablingFunction) exact_ = false;
    std::map<int32_t, int64_t> change;
    for (const Arc& arc : transition.inputs) {
      inputs_.Add({arc.place, arc.weight});
      watches[static_cast<size_t>(arc.place)].push_back({number, false, arc.weight});
      change[arc.place] -= arc.weight;
    }
    for (const Arc& arc : transition.outputs) change[arc.place] += arc.weight;
    for (const Arc& arc : transition.inhibitors) {
      inhibitors_.Add({arc.place, arc.weight});
      watches[static_cast<size_t>(arc.place)].push_back({number, true, arc.weight});
    }
    for (const auto& [place, tokens] : change) {
      if (tokens == 0) continue;
      changes_.Add({place, tokens});
      (tokens > 0 ? fillers : drainers)[static_cast<size_t>(place)].push_back(number);
    }
    for (const std::vector<Arc>* arcs : {&transition.inputs, &transition.outputs, &transition.inhibitors}) {
      for (const Arc& arc : *arcs) exact_ = exact_ && !arc.markingDependent;
    }
    inputs_.EndList();
    inhibitors_.EndList();
    changes_.EndList();
    ++number;
  }
  watches_ = Flat(watches);
  fillers_ = Flat(fillers);
  drainers_ = Flat(drainers);
  SetLevels(net);
}

void FiringNet::SetLevels(const PetriNet& net) {
  std::map<int32_t, int32_t> levelOfPriority;
  for (const Transition& transition : net.transitions) {
    if (transition.kind == TransitionKind::kImmediate) levelOfPriority[transition.priority] = 0;
  }
  for (auto& [priority, level] : levelOfPriority) level = levelCount_++;
  for (const Transition& transition : net.transitions) {
    const bool immediate = transition.kind == TransitionKind::kImmediate;
    levels_.push_back(immediate ? levelOfPriority[transition.priority] : 0);
  }
  byLevel_.resize(levels_.size());
  std::iota(byLevel_.begin(), byLevel_.end(), 0);
  std::stable_sort(byLevel_.begin(), byLevel_.end(),
                   [this](int32_t a, int32_t b) { return Level(a) > Level(b); });
}

bool FiringNet::ArcsAllow(int32_t transition, const Marking& marking) const {
  for (const PlaceTokens& input : Inputs(transition)) {
    if (marking[static_cast<size_t>(input.place)] < input.tokens) return false;
  }
  const auto inhibitors = Inhibitors(transition);
  return std::none_of(inhibitors.begin(), inhibitors.end(), [&marking](const PlaceTokens& inhibitor) {
    return marking[static_cast<size_t>(inhibitor.place)] >= inhibitor.tokens;
  });
}

void FiringNet::Enabled(const Marking& marking, std::vector<int32_t>& enabled) const {
  enabled.clear();
  for (const int32_t t : byLevel_) {
    if (!enabled.empty() && Level(t) < Level(enabled.front())) break;
    if (ArcsAllow(t, marking)) enabled.push_back(t);
  }
}

bool FiringNet::Fire(int32_t transition, Marking& marking) const {
  const auto changes = Changes(transition);
  for (size_t i = 0; i < changes.size(); ++i) {
    int64_t& tokens = marking[static_cast<size_t>(changes[i].place)];
    if (!__builtin_add_overflow(tokens, changes[i].tokens, &tokens)) continue;
    tokens = static_cast<int64_t>(static_cast<uint64_t>(tokens) - static_cast<uint64_t>(changes[i].tokens));
    while (i-- > 0) marking[static_cast<size_t>(changes[i].place)] -= changes[i].tokens;
    return false;
  }
  return true;
}

void FiringNet::Unfire(int32_t transition, Marking& marking) const {
  for (const PlaceTokens& change : Changes(transition)) {
    marking[static_cast<size_t>(change.place)] -= change.tokens;
  }
}

}  // namespace siphons
