#include "netkit/verdict/monitors.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "netkit/model/monitor_names.h"
#include "netkit/verdict/explanation.h"
#include "netkit/verdict/marking_graph.h"

namespace siphons {

namespace {

constexpr int32_t kMostMarkings = 100'000;    // that are listed
constexpr size_t kMostSiphons = 100;          // looked at for a dead marking
constexpr size_t kMostWeighted = 300;         // places among which weights are sought
constexpr int64_t kLarge = int64_t{1} << 31;  // numbers of a monitor are smaller, as .PD files ask for

bool IsSmall(int64_t number) {
  return number > -kLarge && number < kLarge;
}

class Supervision {
 public:
  Supervision(const PetriNet& net, const MonitorOptions& options, const StopQuestion& stop)
      : net_(net), options_(options), question_(stop), stop_([&stop] { return stop(0); }), firingNet_(net) {
    uncontrollable_.insert(options.uncontrollable.begin(), options.uncontrollable.end());
    const std::vector<int32_t>& byLevel = firingNet_.ByLevel();
    for (const int32_t t : byLevel) {
      if (firingNet_.Level(t) > firingNet_.Level(byLevel.back())) uncontrollable_.insert(t);
    }
  }

  MonitoredNet Run() {
    result_.net = net_;
    result_.verdict = Decide(net_, {}, question_);
    if (result_.verdict.finding != Finding::kDeadlockFree && !firingNet_.Exact()) {
      result_.reason = result_.verdict.reason;
      return std::move(result_);
    }
    ListGoodMarkings();
    while (result_.verdict.finding != Finding::kDeadlockFree && AddOne()) {
      result_.verdict = Decide(result_.net, {}, question_);
    }
    if (result_.verdict.finding == Finding::kDeadlockFree) DropRedundant();
    Number();
    if (listed_) CountKept();
    return std::move(result_);
  }

 private:
  void ListGoodMarkings() {
    if (!firingNet_.Exact()) return;
    const MarkingGraph graph(firingNet_, kMostMarkings, stop_);
    listed_ = graph.Complete();
    Marking marking = firingNet_.Initial();
    for (int32_t number = 0; number < graph.Size(); ++number) {
      if (!graph.NeedNotBlock(number)) continue;
      graph.Get(number, marking);
      good_.push_back(marking);
    }
  }

  /// Adds a monitor that excludes the dead marking of the verdict, or tells why there is none.
  bool AddOne() {
    const Verdict& verdict = result_.verdict;
    if (stop_()) return Give("stopped");
    if (listed_ && good_.empty()) return Give("every way on from the initial marking ends in a deadlock");
    if (result_.monitors.size() == options_.most) return Give("the greatest number of monitors is reached");
    if (verdict.finding == Finding::kUndecided && !verdict.candidate) return Give(verdict.reason);
    const Marking& dead = verdict.finding == Finding::kDeadlock ? verdict.dead : verdict.candidate->marking;
    const PlaceList shortPlaces = ShortPlaces(result_.net, dead);
    const std::vector<PlaceList> siphons = SiphonsAmong(result_.net, shortPlaces, kMostSiphons, stop_);

    best_.reset();
    fewest_ = SIZE_MAX;
    for (const PlaceList& siphon : ByMonitors(siphons)) Consider(BoundOf(siphon, dead), dead);
    if (fewest_ > 0) Consider(Weighted(OwnPlaces(shortPlaces), dead, false), dead);
    for (const bool anySign : {false, true}) {
      if (fewest_ > 0 && (!best_ || !anySign)) Consider(Weighted(AllOwnPlaces(), dead, anySign), dead);
    }
    if (!best_) return GiveUncontrolled(siphons, dead);
    result_.monitors.push_back(std::move(*best_));
    result_.net = *WithMonitors(net_, result_.monitors);
    return true;
  }

  bool Give(const std::string& reason) {
    result_.reason = reason;
    return false;
  }

  /// Tells whether it is for the uncontrollable transitions that nothing was found.
  bool GiveUncontrolled(const std::vector<PlaceList>& siphons, const Marking& dead) {
    if (!siphons.empty()) result_.uncontrolled = siphons.front();
    const std::set<int32_t> uncontrollable = std::exchange(uncontrollable_, {});
    for (const PlaceList& siphon : siphons) Consider(BoundOf(siphon, dead), dead);
    if (!best_) Consider(Weighted(AllOwnPlaces(), dead, true), dead);
    uncontrollable_ = uncontrollable;
    if (!best_) return Give("no weighted sum of tokens tells the dead marking from the initial one");
    return Give(options_.uncontrollable.empty()
                    ? "a monitor would have to hold up transitions with priority over others"
                    : "a monitor would have to take from uncontrollable transitions");
  }

  /// Makes a monitor of the condition, and of it the best one until now, if it can be enforced from the
  /// initial marking on, excludes the dead marking, and fewer good ones than the best one.
  void Consider(const std::optional<MarkingBound>& bound, const Marking& dead) {
    if (!bound) return;
    const Marking old(dead.begin(), dead.begin() + firingNet_.PlaceCount());
    const std::optional<int64_t> initial = SumAt(*bound, firingNet_.Initial()), there = SumAt(*bound, old);
    if (!initial || !there || *initial < bound->least || *there >= bound->least) return;
    Monitor monitor{NextName(), *bound, 0};
    if (__builtin_sub_overflow(*initial, bound->least, &monitor.tokens) || !IsSmall(monitor.tokens)) return;
    if (!IsSmall(bound->least) || !LeavesUncontrollable(monitor)) return;
    const size_t excluded = CutOff(*bound, good_);
    if (excluded >= fewest_) return;
    fewest_ = excluded;
    best_ = std::move(monitor);
  }

  bool LeavesUncontrollable(const Monitor& monitor) const {
    const std::optional<PetriNet> net = WithMonitors(net_, {monitor});
    if (!net) return false;
    for (size_t t = 0; t < net->transitions.size(); ++t) {
      const Transition &before = net_.transitions[t], &after = net->transitions[t];
      const bool takes = after.inputs.size() > before.inputs.size();
      const bool gives = after.outputs.size() > before.outputs.size();
      if (takes && uncontrollable_.contains(static_cast<int32_t>(t))) return false;
      if (takes && !IsSmall(after.inputs.back().weight)) return false;
      if (gives && !IsSmall(after.outputs.back().weight)) return false;
    }
    return true;
  }

  /// Those with few monitors first.
  std::vector<PlaceList> ByMonitors(std::vector<PlaceList> siphons) const {
    const auto monitors = [this](const PlaceList& siphon) {
      return siphon.size() - OwnPlaces(siphon).size();
    };
    std::stable_sort(siphons.begin(), siphons.end(),
                     [&](const PlaceList& a, const PlaceList& b) { return monitors(a) < monitors(b); });
    return siphons;
  }

  /// Those that are no monitors, of places in ascending order.
  PlaceList OwnPlaces(const PlaceList& places) const {
    return {places.begin(), std::lower_bound(places.begin(), places.end(), firingNet_.PlaceCount())};
  }

  PlaceList AllOwnPlaces() const {
    PlaceList places;
    for (int32_t p = 0; p < firingNet_.PlaceCount(); ++p) places.push_back(p);
    return places;
  }

  /// The condition that the siphon holds a token more than at the marking, on the places of the old net.
  std::optional<MarkingBound> BoundOf(const PlaceList& siphon, const Marking& dead) const {
    std::map<int32_t, int64_t> weights;
    MarkingBound bound;
    bound.least = 1;
    for (const int32_t p : siphon) {
      if (__builtin_add_overflow(bound.least, dead[static_cast<size_t>(p)], &bound.least)) return {};
      if (p < firingNet_.PlaceCount()) {
        ++weights[p];
        continue;
      }
      const MarkingBound& keeps = result_.monitors[static_cast<size_t>(p - firingNet_.PlaceCount())].keeps;
      if (__builtin_add_overflow(bound.least, keeps.least, &bound.least)) return {};
      for (const PlaceTokens& term : keeps.weights) weights[term.place] += term.tokens;
    }
    for (const auto& [place, weight] : weights) {
      if (!IsSmall(weight)) return {};
      if (weight != 0) bound.weights.push_back({place, weight});
    }
    return bound;
  }

  /// Weights of the places that exclude the marking and as few of the good ones as possible.
  std::optional<MarkingBound> Weighted(const PlaceList& places, const Marking& dead, bool anySign) const {
    if (places.size() > kMostWeighted) return {};
    SeparationTask task;
    task.places = places;
    task.anySign = anySign;
    task.initial = firingNet_.Initial();
    task.away.assign(dead.begin(), dead.begin() + firingNet_.PlaceCount());
    task.keep = good_;
    for (const int32_t t : uncontrollable_) task.mayNotLower.push_back(firingNet_.Changes(t));
    return Separate(task, stop_);
  }

  /// A name that no node of the net has, nor an id.
  std::string NextName() const {
    const auto taken = [this](const std::string& name) {
      const auto same = [&name](const auto& node) { return node.name == name || node.id == name; };
      const auto sameName = [&name](const Monitor& monitor) { return monitor.name == name; };
      return std::any_of(net_.places.begin(), net_.places.end(), same) ||
             std::any_of(net_.transitions.begin(), net_.transitions.end(), same) ||
             std::any_of(result_.monitors.begin(), result_.monitors.end(), sameName);
    };
    int32_t number = 1;
    while (taken(MonitorName(number))) ++number;
    return MonitorName(number);
  }

  /// Drops monitors without which the net is still proved.
  void DropRedundant() {
    constexpr int32_t kRounds = 2;
    for (size_t i = result_.monitors.size(); i-- > 0 && !stop_();) {
      std::vector<Monitor> fewer = result_.monitors;
      fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(i));
      PetriNet net = *WithMonitors(net_, fewer);
      Verdict verdict = Decide(net, {.rounds = kRounds}, question_);
      if (verdict.finding != Finding::kDeadlockFree) continue;
      result_.monitors = std::move(fewer);
      result_.net = std::move(net);
      result_.verdict = std::move(verdict);
    }
  }

  /// Names the monitors that are left by their order.
  void Number() {
    std::vector<Monitor> monitors = std::exchange(result_.monitors, {});
    for (Monitor& monitor : monitors) {
      monitor.name = NextName();
      result_.monitors.push_back(std::move(monitor));
    }
    result_.net = *WithMonitors(net_, result_.monitors);
  }

  void CountKept() {
    const FiringNet monitored(result_.net);
    const MarkingGraph graph(monitored, kMostMarkings, stop_);
    if (!graph.Complete()) return;
    const std::set<Marking> good(good_.begin(), good_.end());
    int32_t kept = 0;
    Marking marking(result_.net.places.size());
    for (int32_t number = 0; number < graph.Size(); ++number) {
      graph.Get(number, marking);
      // The monitors' tokens follow from the other places, so no two markings share these.
      kept += good.contains(Marking(marking.begin(), marking.begin() + firingNet_.PlaceCount())) ? 1 : 0;
    }
    result_.kept = KeptMarkings{static_cast<int32_t>(good.size()), kept};
  }

  const PetriNet& net_;
  const MonitorOptions& options_;
  const StopQuestion& question_;
  std::function<bool()> stop_;
  FiringNet firingNet_;
  std::set<int32_t> uncontrollable_;
  std::vector<Marking> good_;  ///< markings from which the old net need not block, as far as they are listed
  bool listed_ = false;        ///< whether all of them are
  std::optional<Monitor> best_;  ///< for the dead marking that is looked at
  size_t fewest_ = SIZE_MAX;     ///< good markings that it excludes
  MonitoredNet result_;
};

}  // namespace

MonitoredNet AddMonitors(const PetriNet& net, const MonitorOptions& options, const StopQuestion& stop) {
  return Supervision(net, options, stop).Run();
}

}  // namespace siphons
