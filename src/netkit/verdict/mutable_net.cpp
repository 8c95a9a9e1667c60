#include "netkit/verdict/mutable_net.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace siphons {

namespace {

ArcList Sorted(const std::vector<Arc>& arcs) {
  ArcList list;
  for (const Arc& arc : arcs) list.push_back({arc.place, arc.weight});
  std::sort(list.begin(), list.end(),
            [](const PlaceTokens& a, const PlaceTokens& b) { return a.place < b.place; });
  return list;
}

void EraseArc(ArcList& arcs, int32_t place) {
  std::erase_if(arcs, [place](const PlaceTokens& arc) { return arc.place == place; });
}

void EraseItem(std::vector<int32_t>& list, int32_t item) {
  const auto found = std::find(list.begin(), list.end(), item);
  assert(found != list.end());
  *found = list.back();
  list.pop_back();
}

}  // namespace

int64_t WeightAt(const ArcList& arcs, int32_t place) {
  const auto found = std::lower_bound(arcs.begin(), arcs.end(), place,
                                      [](const PlaceTokens& arc, int32_t p) { return arc.place < p; });
  return found != arcs.end() && found->place == place ? found->tokens : 0;
}

MutableNet::MutableNet(const PetriNet& net)
    : watched_(net.places.size()),
      gone_(net.places.size()),
      producers_(net.places.size()),
      consumers_(net.places.size()) {
  macros.resize(net.transitions.size());
  for (const Place& place : net.places) tokens.push_back(place.tokens);
  for (const Transition& transition : net.transitions) {
    AddTransition({.inputs = Sorted(transition.inputs),
                   .outputs = Sorted(transition.outputs),
                   .inhibitors = Sorted(transition.inhibitors),
                   .macro = TransitionCount()});
    for (const Arc& arc : transition.inhibitors) watched_[static_cast<size_t>(arc.place)] = true;
  }
}

void MutableNet::AddTransition(MutableTransition transition) {
  const int32_t number = TransitionCount();
  for (const PlaceTokens& arc : transition.inputs) {
    consumers_[static_cast<size_t>(arc.place)].push_back(number);
  }
  for (const PlaceTokens& arc : transition.outputs) {
    producers_[static_cast<size_t>(arc.place)].push_back(number);
  }
  transitions.push_back(std::move(transition));
}

void MutableNet::RemoveTransition(int32_t transition) {
  MutableTransition& removed = transitions[static_cast<size_t>(transition)];
  for (const PlaceTokens& arc : removed.inputs) {
    EraseItem(consumers_[static_cast<size_t>(arc.place)], transition);
  }
  for (const PlaceTokens& arc : removed.outputs) {
    EraseItem(producers_[static_cast<size_t>(arc.place)], transition);
  }
  removed = {.gone = true};
}

void MutableNet::RemovePlace(int32_t place) {
  for (const int32_t t : Consumers(place)) EraseArc(transitions[static_cast<size_t>(t)].inputs, place);
  for (const int32_t t : Producers(place)) EraseArc(transitions[static_cast<size_t>(t)].outputs, place);
  consumers_[static_cast<size_t>(place)].clear();
  producers_[static_cast<size_t>(place)].clear();
  gone_[static_cast<size_t>(place)] = true;
}

void MutableNet::MakeTest(int32_t transition) {
  MutableTransition test = At(transition);
  test.outputs = test.inputs;
  test.macro = AddMacro({{test.macro, 0}});
  RemoveTransition(transition);
  AddTransition(std::move(test));
}

int32_t MutableNet::AddMacro(std::vector<MacroPart> parts) {
  macros.push_back(std::move(parts));
  return static_cast<int32_t>(macros.size()) - 1;
}

bool MutableNet::Consistent() const {
  std::vector<std::vector<int32_t>> taken(tokens.size()), given(tokens.size());
  for (int32_t t = 0; t < TransitionCount(); ++t) {
    for (const PlaceTokens& arc : At(t).inputs) taken[static_cast<size_t>(arc.place)].push_back(t);
    for (const PlaceTokens& arc : At(t).outputs) given[static_cast<size_t>(arc.place)].push_back(t);
  }
  const auto same = [](const std::vector<std::vector<int32_t>>& a, std::vector<std::vector<int32_t>> b) {
    for (std::vector<int32_t>& list : b) std::sort(list.begin(), list.end());
    return a == b;
  };
  for (size_t p = 0; p < tokens.size(); ++p) {
    if (gone_[p] && (watched_[p] || !taken[p].empty() || !given[p].empty())) return false;
  }
  return same(taken, consumers_) && same(given, producers_);
}

}  // namespace siphons
