#include "netkit/siphons/siphon_within.h"

#include <algorithm>
#include <iterator>

namespace siphons {

SiphonWithin::SiphonWithin(const ArcSets& arcs)
    : arcs_(arcs),
      consumers_(static_cast<size_t>(arcs.placeCount)),
      producers_(consumers_.size()),
      inputsHeld_(arcs.transitions.size()),
      holds_(consumers_.size()),
      kept_(consumers_.size()) {
  for (size_t t = 0; t < arcs.transitions.size(); ++t) {
    for (const int32_t p : arcs.transitions[t].inputs)
      consumers_[static_cast<size_t>(p)].push_back(static_cast<int32_t>(t));
    for (const int32_t p : arcs.transitions[t].outputs)
      producers_[static_cast<size_t>(p)].push_back(static_cast<int32_t>(t));
  }
}

void SiphonWithin::Assign(std::span<const int32_t> places) {
  for (const int32_t p : assigned_) {
    if (Holds(p)) Drop(p);
  }
  KeepNothing();
  removed_.clear();
  assigned_.assign(places.begin(), places.end());
  for (const int32_t p : assigned_) {
    holds_[static_cast<size_t>(p)] = true;
    for (const int32_t t : consumers_[static_cast<size_t>(p)]) ++inputsHeld_[static_cast<size_t>(t)];
  }
  for (const int32_t p : assigned_) {
    const auto& producers = producers_[static_cast<size_t>(p)];
    const bool filled = std::any_of(producers.begin(), producers.end(),
                                    [this](int32_t t) { return inputsHeld_[static_cast<size_t>(t)] == 0; });
    if (filled && Holds(p)) Drop(p);
  }
  Settle(0);
}

bool SiphonWithin::TryRemove(int32_t place, PlaceList& gone) {
  const size_t from = removed_.size();
  if (!kept_[static_cast<size_t>(place)]) {
    Drop(place);
    if (Settle(from) && removed_.size() < assigned_.size()) return true;
  }
  gone.assign(removed_.begin() + static_cast<std::ptrdiff_t>(from), removed_.end());
  TakeBack(from);
  return false;
}

// A place that is needed is needed in every siphon within this one, too, so each is tried once, and a try
// ends at the first needed place that would follow. After a try that failed, the places that would have gone
// are tried, the last one first, since what follows it is near; on a cycle this makes the difference between
// linear and quadratic.
bool SiphonWithin::Shrink(const std::function<bool()>& stop) {
  PlaceList untried = Places(), gone;
  while (!untried.empty()) {
    if (stop()) return false;
    const int32_t p = untried.back();
    untried.pop_back();
    if (!Holds(p) || Keeps(p) || TryRemove(p, gone)) continue;
    Keep(p);
    untried.insert(untried.end(), gone.begin() + 1, gone.end());
  }
  return true;
}

/// Takes a place out, without consequences.
void SiphonWithin::Drop(int32_t place) {
  holds_[static_cast<size_t>(place)] = false;
  removed_.push_back(place);
  for (const int32_t t : consumers_[static_cast<size_t>(place)]) --inputsHeld_[static_cast<size_t>(t)];
}

/// Drops what must follow the places removed since `from`; false at the first kept place that must.
bool SiphonWithin::Settle(size_t from) {
  for (size_t next = from; next < removed_.size(); ++next) {
    for (const int32_t t : consumers_[static_cast<size_t>(removed_[next])]) {
      if (inputsHeld_[static_cast<size_t>(t)] != 0) continue;
      for (const int32_t q : arcs_.transitions[static_cast<size_t>(t)].outputs) {
        if (!Holds(q)) continue;
        if (kept_[static_cast<size_t>(q)]) return false;
        Drop(q);
      }
    }
  }
  return true;
}

/// Puts back what was removed when there already were `removals`.
void SiphonWithin::TakeBack(size_t removals) {
  for (; removed_.size() > removals; removed_.pop_back()) {
    const size_t p = static_cast<size_t>(removed_.back());
    holds_[p] = true;
    for (const int32_t t : consumers_[p]) ++inputsHeld_[static_cast<size_t>(t)];
  }
}

PlaceList SiphonWithin::Places() const {
  PlaceList places;
  std::copy_if(assigned_.begin(), assigned_.end(), std::back_inserter(places),
               [this](int32_t p) { return Holds(p); });
  std::sort(places.begin(), places.end());
  return places;
}

}  // namespace siphons
