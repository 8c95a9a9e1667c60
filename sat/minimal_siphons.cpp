// Enumeration by an incremental SAT solver (CaDiCaL; Biere et al. 2020).
//
// A variable per place says whether the siphon holds it. For every transition t and output place p:
//   p implies that some input place of t is held,
// and some place is held. A model is a siphon. Deciding places to be out first gives small ones; each is
// shrunk to a minimal siphon, and a clause then says that not all places of that are held. This excludes it
// and the siphons that contain it, and no other minimal one. When no model is left, all have been found.
//
// Shrinking: within a siphon S, place p is needed when there is no siphon without p. A place that is not
// needed goes, with all that must follow; a needed one is needed in every siphon within S, too, so each place
// is tried once, and a try ends at the first needed place that would follow.
//
// With places that must be held, a model is first shrunk while they stay. What is left may still contain
// smaller siphons without them; then it is not minimal, and one of these is excluded, though not wanted.
//
// The memory needed is that of the net and of the clauses that exclude what was found.
#include "sat/minimal_siphons.h"

#include <algorithm>
#include <cadical.hpp>
#include <numeric>

#include "sat/siphon_within.h"

namespace siphons {

namespace {

class Stopper : public CaDiCaL::Terminator {
 public:
  explicit Stopper(const std::function<bool()>& stop) : stop_(stop) {}
  bool terminate() override { return stop_(); }

 private:
  const std::function<bool()>& stop_;
};

class Enumeration {
 public:
  Enumeration(const ArcSets& arcs, const SiphonQuery& query, const std::function<bool()>& stop)
      : siphon_(arcs), containing_(query.containing), stop_(stop), stopper_(stop) {
    siphon_.Assign(query.within);
    candidates_ = siphon_.Places();
    possible_ =
        std::all_of(containing_.begin(), containing_.end(), [this](int32_t p) { return siphon_.Holds(p); });
    solver_.set("quiet", 1);
    solver_.set("profile", 0);
    solver_.set("phase", 0);
    solver_.set("forcephase", 1);
    solver_.set("lucky", 0);
    solver_.set("walk", 0);
    solver_.set("rephase", 0);
    solver_.connect_terminator(&stopper_);
    if (possible_) AddCondition(arcs);
  }

  ~Enumeration() { solver_.disconnect_terminator(); }
  Enumeration(const Enumeration&) = delete;
  Enumeration& operator=(const Enumeration&) = delete;

  bool Run(const std::function<bool(std::span<const int32_t>)>& found) {
    if (!possible_) return true;
    for (;;) {
      if (stop_()) return false;
      const int status = solver_.solve();
      if (status != kSatisfiable) return status == kUnsatisfiable;
      const PlaceList minimal = Minimal(Model());
      const bool wanted = std::all_of(containing_.begin(), containing_.end(), [&](int32_t p) {
        return std::binary_search(minimal.begin(), minimal.end(), p);
      });
      if (wanted && !found(minimal)) return false;
      for (const int32_t p : minimal) solver_.add(-Variable(p));
      solver_.add(0);
    }
  }

 private:
  static constexpr int kSatisfiable = 10;
  static constexpr int kUnsatisfiable = 20;

  static int Variable(int32_t place) { return place + 1; }

  /// The clauses over the places that a siphon can hold.
  void AddCondition(const ArcSets& arcs) {
    for (const ArcSets::Transition& transition : arcs.transitions) {
      for (const int32_t output : transition.outputs) {
        const PlaceList& inputs = transition.inputs;
        if (!siphon_.Holds(output) || std::binary_search(inputs.begin(), inputs.end(), output)) continue;
        solver_.add(-Variable(output));
        for (const int32_t input : inputs) {
          if (siphon_.Holds(input)) solver_.add(Variable(input));
        }
        solver_.add(0);
      }
    }
    for (const int32_t p : candidates_) solver_.add(Variable(p));
    solver_.add(0);
    for (const int32_t p : containing_) {
      solver_.add(Variable(p));
      solver_.add(0);
    }
  }

  PlaceList Model() {
    PlaceList places;
    for (const int32_t p : candidates_) {
      if (solver_.val(Variable(p)) > 0) places.push_back(p);
    }
    return places;
  }

  /// A minimal siphon within a siphon, with the places that must be held if that is possible on the way.
  PlaceList Minimal(const PlaceList& places) {
    siphon_.Assign(places);
    if (!containing_.empty()) {
      for (const int32_t p : containing_) siphon_.Keep(p);
      Shrink();
      siphon_.KeepNothing();
    }
    Shrink();
    return siphon_.Places();
  }

  /// Removes every place that is not needed for the kept ones to stay, or for any place to stay.
  void Shrink() {
    for (const int32_t p : siphon_.Places()) {
      if (siphon_.Holds(p) && !siphon_.TryRemove(p)) siphon_.Keep(p);
    }
  }

  SiphonWithin siphon_;
  PlaceList candidates_;
  PlaceList containing_;
  bool possible_;
  const std::function<bool()>& stop_;
  Stopper stopper_;
  CaDiCaL::Solver solver_;
};

}  // namespace

bool ForEachMinimalSiphon(const ArcSets& arcs, const SiphonQuery& query,
                          const std::function<bool(std::span<const int32_t>)>& found,
                          const std::function<bool()>& stop) {
  return Enumeration(arcs, query, stop).Run(found);
}

PlaceList AllPlaces(const ArcSets& arcs) {
  PlaceList places(static_cast<size_t>(arcs.placeCount));
  std::iota(places.begin(), places.end(), 0);
  return places;
}

}  // namespace siphons
