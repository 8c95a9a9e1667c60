#include "netkit/siphons/siphon_parts.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace siphons {

SiphonParts::SiphonParts(const ArcSets& arcs)
    : arcs_(arcs), siphon_(arcs), producers_(static_cast<size_t>(arcs.placeCount)) {
  for (size_t t = 0; t < arcs.transitions.size(); ++t) {
    for (const int32_t p : arcs.transitions[t].outputs)
      producers_[static_cast<size_t>(p)].push_back(static_cast<int32_t>(t));
  }
  const size_t nodes = producers_.size() + arcs.transitions.size();
  order_.resize(nodes);
  low_.resize(nodes);
  onStack_.resize(nodes);
  among_.resize(producers_.size());
}

std::vector<PlaceList> SiphonParts::Split(PlaceList places) {
  std::vector<PlaceList> open, parts;
  open.push_back(std::move(places));
  while (!open.empty()) {
    siphon_.Assign(open.back());
    open.pop_back();
    PlaceList siphon = siphon_.Places();
    std::vector<PlaceList> components = Components(siphon);
    if (components.size() == 1) {
      parts.push_back(std::move(siphon));
    } else {
      std::move(components.begin(), components.end(), std::back_inserter(open));
    }
  }
  std::sort(parts.begin(), parts.end());
  return parts;
}

PlaceList SiphonParts::Around(PlaceList places, const PlaceList& held) {
  for (;;) {
    siphon_.Assign(places);
    PlaceList siphon = siphon_.Places();
    Begin(siphon);
    std::vector<PlaceList> components;
    const bool holdsFirst = siphon_.Holds(held[0]);
    if (holdsFirst) Search(static_cast<Node>(held[0]), components);
    if (!holdsFirst ||
        !std::includes(components.back().begin(), components.back().end(), held.begin(), held.end()))
      return {};
    if (components.back().size() == siphon.size()) return siphon;
    places = std::move(components.back());
  }
}

/// Clears what the last search left, and takes the places to search in.
void SiphonParts::Begin(const PlaceList& places) {
  for (const Node node : entered_) {
    order_[node] = 0;
    if (IsPlace(node)) among_[node] = false;
  }
  entered_.clear();
  lastOrder_ = 0;
  for (const int32_t p : places) {
    among_[static_cast<size_t>(p)] = true;
    entered_.push_back(static_cast<Node>(p));
  }
}

std::vector<PlaceList> SiphonParts::Components(const PlaceList& places) {
  Begin(places);
  std::vector<PlaceList> components;
  for (const int32_t p : places) {
    if (order_[static_cast<size_t>(p)] == 0) Search(static_cast<Node>(p), components);
  }
  return components;
}

std::span<const int32_t> SiphonParts::Before(Node node) const {
  if (IsPlace(node)) return producers_[node];
  return arcs_.transitions[node - static_cast<Node>(arcs_.placeCount)].inputs;
}

SiphonParts::Node SiphonParts::NodeBefore(const Visit& visit) const {
  const Node number = static_cast<Node>(Before(visit.node)[visit.next]);
  return IsPlace(visit.node) ? number + static_cast<Node>(arcs_.placeCount) : number;
}

void SiphonParts::Enter(Node node) {
  if (!IsPlace(node)) entered_.push_back(node);
  stack_.push_back(node);
  onStack_[node] = true;
  low_[node] = order_[node] = ++lastOrder_;
  visits_.push_back({node, 0});
}

/// Adds the components of all that leads to the root, the root's own one last.
void SiphonParts::Search(Node root, std::vector<PlaceList>& components) {
  Enter(root);
  while (!visits_.empty()) {
    Visit& visit = visits_.back();
    const Node node = visit.node;
    if (visit.next < Before(node).size()) {
      const Node before = NodeBefore(visit);
      ++visit.next;
      if (IsPlace(before) && !among_[before]) continue;
      if (order_[before] == 0) {
        Enter(before);
      } else if (onStack_[before]) {
        low_[node] = std::min(low_[node], order_[before]);
      }
      continue;
    }
    visits_.pop_back();
    if (!visits_.empty()) low_[visits_.back().node] = std::min(low_[visits_.back().node], low_[node]);
    if (low_[node] != order_[node]) continue;
    PlaceList component;
    Node member = 0;
    do {
      member = stack_.back();
      stack_.pop_back();
      onStack_[member] = false;
      if (IsPlace(member)) component.push_back(static_cast<int32_t>(member));
    } while (member != node);
    if (component.empty()) continue;
    std::sort(component.begin(), component.end());
    components.push_back(std::move(component));
  }
}

}  // namespace siphons
