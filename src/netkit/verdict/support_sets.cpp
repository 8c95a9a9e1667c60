#include "netkit/verdict/support_sets.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace siphons {

namespace {

bool Has(const PlaceList& places, int32_t place) {
  return std::binary_search(places.begin(), places.end(), place);
}

}  // namespace

std::vector<int32_t> Breakers(const PetriNet& net, const PlaceList& places, bool turned) {
  std::vector<bool> inSet(net.places.size());
  for (const int32_t p : places) inSet[static_cast<size_t>(p)] = true;
  const auto touches = [&inSet](const std::vector<Arc>& arcs) {
    return std::any_of(arcs.begin(), arcs.end(),
                       [&inSet](const Arc& arc) { return inSet[static_cast<size_t>(arc.place)]; });
  };
  std::vector<int32_t> breakers;
  for (size_t t = 0; t < net.transitions.size(); ++t) {
    const bool takes = touches(net.transitions[t].inputs), puts = touches(net.transitions[t].outputs);
    if (turned ? puts && !takes : takes && !puts) breakers.push_back(static_cast<int32_t>(t));
  }
  return breakers;
}

SupportSets::SupportSets(const PetriNet& net, const StateEquation& equation)
    : net_(net),
      equation_(equation),
      arcs_(ArcSetsOf(net)),
      producers_(net.places.size()),
      consumers_(net.places.size()),
      fired_(net.transitions.size()) {
  for (size_t t = 0; t < arcs_.transitions.size(); ++t) {
    for (const int32_t p : arcs_.transitions[t].inputs) {
      consumers_[static_cast<size_t>(p)].push_back(static_cast<int32_t>(t));
    }
    for (const int32_t p : arcs_.transitions[t].outputs) {
      producers_[static_cast<size_t>(p)].push_back(static_cast<int32_t>(t));
    }
  }
}

std::vector<FiringCondition> SupportSets::Broken(const Candidate& candidate, const PlaceList& empty,
                                                 size_t most) {
  for (size_t t = 0; t < fired_.size(); ++t) fired_[t] = candidate.firings[t] > 0;
  std::vector<FiringCondition> found;
  Search(Kind::kTrap, empty, most, found);
  PlaceList unmarked;
  for (size_t p = 0; p < net_.places.size(); ++p) {
    if (net_.places[p].tokens == 0) unmarked.push_back(static_cast<int32_t>(p));
  }
  Search(Kind::kSiphon, std::move(unmarked), most, found);
  return found;
}

void SupportSets::Search(Kind kind, PlaceList places, size_t most, std::vector<FiringCondition>& found) {
  ArcSets arcs;
  arcs.placeCount = arcs_.placeCount;
  for (size_t t = 0; t < fired_.size(); ++t) {
    if (fired_[t]) arcs.transitions.push_back(arcs_.transitions[t]);
  }
  if (kind == Kind::kTrap) arcs = Reversed(std::move(arcs));
  SiphonWithin greatest(arcs);
  PlaceList gone;
  for (size_t count = 0; count < most; ++count) {
    greatest.Assign(places);
    greatest.KeepNothing();
    const PlaceList set = greatest.Places();
    int32_t kept = -1, cause = -1;
    for (const int32_t p : set) {
      if (net_.places[static_cast<size_t>(p)].tokens > 0) {
        kept = p;
        break;
      }
      const auto& causes =
          kind == Kind::kTrap ? producers_[static_cast<size_t>(p)] : consumers_[static_cast<size_t>(p)];
      const auto foundCause =
          std::find_if(causes.begin(), causes.end(), [&](int32_t t) { return IsCause(kind, t, p); });
      if (kept >= 0 || foundCause == causes.end()) continue;
      kept = p;
      cause = *foundCause;
    }
    if (kept < 0) return;
    if (net_.places[static_cast<size_t>(kept)].tokens > 0) cause = -1;
    greatest.Keep(kept);
    for (const int32_t p : set) {
      if (greatest.Holds(p) && !greatest.Keeps(p) && !greatest.TryRemove(p, gone)) greatest.Keep(p);
    }
    const PlaceList small = greatest.Places();
    found.push_back(ConditionOf(kind, small, cause));
    places.clear();
    std::set_difference(set.begin(), set.end(), small.begin(), small.end(), std::back_inserter(places));
  }
}

/// Whether the transition fires in the candidate, and it, or whatever the equation does not tell from it,
/// puts into the place or takes from it.
bool SupportSets::IsCause(Kind kind, int32_t transition, int32_t place) const {
  if (!fired_[static_cast<size_t>(transition)]) return false;
  const auto& alike = equation_.Alike(transition);
  return std::all_of(alike.begin(), alike.end(), [&](int32_t t) {
    const ArcSets::Transition& arcs = arcs_.transitions[static_cast<size_t>(t)];
    return Has(kind == Kind::kTrap ? arcs.outputs : arcs.inputs, place);
  });
}

FiringCondition SupportSets::ConditionOf(Kind kind, const PlaceList& places, int32_t cause) const {
  return {kind, places, Breakers(net_, places, kind == Kind::kSiphon), cause};
}

}  // namespace siphons
