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
// is tried once, and a try ends at the first needed place that would follow. After a try that failed, the
// places that would have gone are tried, the last one first, since what follows it is near; on a cycle this
// makes the difference between linear and quadratic.
//
// With places that must be held, a model is first shrunk while they stay. What is left may still contain
// smaller siphons without them; then it is not minimal, and one of these is excluded, though not wanted.
//
// A transition with many input and many output places gets a variable of its own, "some input place is held",
// so that the clauses take as much memory as the net. The rest is for the clauses that exclude what was
// found.
#include "netkit/siphons/minimal_siphons.h"

#include <algorithm>
#include <cadical.hpp>
#include <numeric>

#include "netkit/siphons/siphon_within.h"

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
      : arcs_(arcs), siphon_(arcs), containing_(query.containing), stop_(stop), stopper_(stop) {
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
  }

  ~Enumeration() { solver_.disconnect_terminator(); }
  Enumeration(const Enumeration&) = delete;
  Enumeration& operator=(const Enumeration&) = delete;

  bool Run(const std::function<bool(std::span<const int32_t>)>& found) {
    if (!possible_) return true;
    if (!AddCondition()) return false;
    for (;;) {
      if (stop_()) return false;
      const int status = solver_.solve();
      if (status != kSatisfiable) return status == kUnsatisfiable;
      const PlaceList minimal = Minimal(Model());
      if (minimal.empty()) return false;
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

  /// Adds the clauses over the places that a siphon can hold; false when stopped.
  bool AddCondition() {
    int ownVariable = arcs_.placeCount;
    for (const ArcSets::Transition& transition : arcs_.transitions) {
      if (stop_()) return false;
      AddTransition(transition, ++ownVariable);
    }
    AddSomeOf(candidates_);
    for (const int32_t p : containing_) AddSomeOf({p});
    return true;
  }

  void AddTransition(const ArcSets::Transition& transition, int ownVariable) {
    constexpr size_t kManyClauses = 4;  // times the arcs
    const size_t inputs = transition.inputs.size(), outputs = transition.outputs.size();
    const bool usesOwn = inputs * outputs > kManyClauses * (inputs + outputs);
    for (const int32_t output : transition.outputs) {
      const bool isInput = std::binary_search(transition.inputs.begin(), transition.inputs.end(), output);
      if (!siphon_.Holds(output) || isInput) continue;
      solver_.add(-Variable(output));
      if (usesOwn) {
        solver_.add(ownVariable);
        solver_.add(0);
      } else {
        AddSomeOf(transition.inputs);
      }
    }
    if (!usesOwn) return;
    solver_.add(-ownVariable);
    AddSomeOf(transition.inputs);
  }

  /// Ends a clause: what is in it already, or one of the places.
  void AddSomeOf(const PlaceList& places) {
    for (const int32_t p : places) {
      if (siphon_.Holds(p)) solver_.add(Variable(p));
    }
    solver_.add(0);
  }

  PlaceList Model() {
    PlaceList places;
    for (const int32_t p : candidates_) {
      if (solver_.val(Variable(p)) > 0) places.push_back(p);
    }
    return places;
  }

  /// A minimal siphon within a siphon, with the places that must be held if that is possible on the way;
  /// empty when stopped.
  PlaceList Minimal(const PlaceList& places) {
    siphon_.Assign(places);
    if (!containing_.empty()) {
      for (const int32_t p : containing_) siphon_.Keep(p);
      if (!Shrink()) return {};
      siphon_.KeepNothing();
    }
    return Shrink() ? siphon_.Places() : PlaceList();
  }

  /// Removes every place that is not needed for the kept ones to stay, or for any place to stay; false when
  /// stopped.
  bool Shrink() {
    PlaceList untried = siphon_.Places();
    PlaceList gone;
    while (!untried.empty()) {
      if (stop_()) return false;
      const int32_t p = untried.back();
      untried.pop_back();
      if (!siphon_.Holds(p) || siphon_.Keeps(p) || siphon_.TryRemove(p, gone)) continue;
      siphon_.Keep(p);
      untried.insert(untried.end(), gone.begin() + 1, gone.end());
    }
    return true;
  }

  const ArcSets& arcs_;
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
