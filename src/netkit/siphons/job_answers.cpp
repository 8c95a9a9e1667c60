// What is done with a siphon that the search of a job met.
//
// It is minimal unless it has a smaller one inside, which must lack a place that was held from the beginning
// and that may be missed (a tested place). A glance along the transitions of the siphon shows of nearly every
// minimal one that there is none, at the cost of its arcs; only the others are shrunk.
#include <algorithm>
#include <cassert>
#include <utility>

#include "netkit/siphons/job_search.h"

namespace siphons {

JobSearch::Step JobSearch::Answer(const std::function<bool(const PlaceList&)>& found) {
  PlaceList siphon = HeldPlaces();
  PlaceList smaller = FallsWithoutTested() ? PlaceList() : Smaller(siphon);
  const bool isRejected = !smaller.empty();
  rejected_ += isRejected ? 1 : 0;
  if (isRejected && !HasPhases()) return LeaveOut(smaller) ? Step::kGoOn : Step::kExhausted;
  answers_.push_back(std::move(isRejected ? smaller : siphon));
  if (!found(answers_.back())) return Step::kStop;
  ++found_;
  return LeaveOut(answers_.back()) ? Step::kGoOn : Step::kExhausted;
}

/// The held places, ascending.
PlaceList JobSearch::HeldPlaces() const {
  PlaceList places;
  places.reserve(held_.size());
  constexpr size_t kFew = 16;  // times as many are better sorted than picked out of all
  if (kFew * held_.size() < job_.places.size()) {
    for (const Variable p : held_) places.push_back(job_.places[p]);
    std::sort(places.begin(), places.end());
    return places;
  }
  for (Variable p = 0; p < job_.places.size(); ++p) {
    if (search_.IsTrue(Holds(p))) places.push_back(job_.places[p]);
  }
  return places;
}

/// Whether a glance shows that the held places, a siphon, hold no other one that lacks a tested place:
/// without the first tested place all go, and without another one that one goes. False when a closer look is
/// needed.
bool JobSearch::FallsWithoutTested() {
  if (tested_.empty()) return true;
  ++answer_;
  const Variable first = arcs_.VariableOf(tested_[0]);
  return AllTestedLeadTo(first) && FallsWithout(first);
}

/// How many input places of the transition the answer that is looked at holds, less those that were dropped.
uint32_t& JobSearch::InputsHeld(uint32_t transition) {
  auto& [answer, count] = inputsHeld_[transition];
  if (answer != answer_) {
    const auto& inputs = arcs_.transitions[transition].inputs;
    answer = answer_;
    count = static_cast<uint32_t>(
        std::count_if(inputs.begin(), inputs.end(), [this](Variable p) { return search_.IsTrue(Holds(p)); }));
  }
  return count;
}

/// Whether there is a path from every tested place to this one, from held place to held place by transitions
/// that fill the one and take from no other held place: then each place on it goes when the one before goes.
bool JobSearch::AllTestedLeadTo(Variable place) {
  stamps_[place] = ++stamp_;
  walk_.assign(1, place);
  for (size_t next = 0; next < walk_.size() && tested_.size() > 1; ++next) {
    for (const uint32_t t : arcs_.producers[walk_[next]]) {
      const Variable before = support_[t];
      assert(search_.IsTrue(Holds(before)));
      if (stamps_[before] == stamp_ || InputsHeld(t) != 1) continue;
      stamps_[before] = stamp_;
      walk_.push_back(before);
    }
  }
  return std::all_of(tested_.begin(), tested_.end(),
                     [this](int32_t p) { return stamps_[arcs_.VariableOf(p)] == stamp_; });
}

/// Whether all held places go when this one goes: those that a transition fills which takes from none of the
/// rest, again and again. Counts the held inputs down.
bool JobSearch::FallsWithout(Variable place) {
  stamps_[place] = ++stamp_;
  walk_.assign(1, place);
  for (size_t next = 0; next < walk_.size(); ++next) {
    for (const uint32_t t : arcs_.consumers[walk_[next]]) {
      if (--InputsHeld(t) != 0) continue;
      for (const Variable q : arcs_.transitions[t].outputs) {
        if (stamps_[q] == stamp_ || !search_.IsTrue(Holds(q))) continue;
        stamps_[q] = stamp_;
        walk_.push_back(q);
      }
    }
  }
  return walk_.size() == held_.size();
}

/// A minimal siphon within this one that lacks a held place, or nothing when this one is minimal.
PlaceList JobSearch::Smaller(const PlaceList& siphon) {
  SiphonWithin& within = parts_.Within();
  for (const int32_t p : tested_) {
    PlaceList others = siphon;
    others.erase(std::lower_bound(others.begin(), others.end(), p));
    within.Assign(others);
    if (within.Places().empty()) continue;
    within.Shrink([] { return false; });
    return within.Places();
  }
  return {};
}

/// Excludes the sets that contain the siphon; false when nothing is left.
bool JobSearch::LeaveOut(const PlaceList& siphon) {
  clause_.clear();
  for (const int32_t p : siphon) clause_.push_back(Lacks(arcs_.VariableOf(p)));
  return search_.AddFalseClause(clause_);
}

}  // namespace siphons
