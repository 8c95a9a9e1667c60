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
    uncontrollable_.resize(net.transitions.size());
    for (const int32_t t : options.uncontrollable) uncontrollable_[static_cast<size_t>(t)] = true;
    const std::vector<int32_t>& byLevel = firingNet_.ByLevel();
    for (const int32_t t : byLevel) {
      if (firingNet_.Level(t) > firingNet_.Level(byLevel.back()))
        uncontrollable_[static_cast<size_t>(t)] = true;
    }
  }

  MonitoredNet Run() {
    result_.net = net_;
    result_.verdict = Decide(net_, {}, question_);
    if (result_.verdict.finding == Finding::kDeadlockFree) return std::move(result_);
    if (!firingNet_.Exact()) {
      result_.reason = result_.verdict.reason;
      return std::move(result_);
    }
    ListMarkings();
    while (result_.verdict.finding != Finding::kDeadlockFree && AddOne()) {
      result_.verdict = Decide(result_.net, {}, question_);
    }
    if (result_.verdict.finding == Finding::kDeadlockFree) DropRedundant();
    Number();
    if (graph_->Complete()) CountKept();
    return std::move(result_);
  }

 private:
  void ListMarkings() {
    graph_.emplace(firingNet_, kMostMarkings, stop_);
    isGood_ = graph_->NeedNotBlock(uncontrollable_, AllMarkings());
    canBeKept_ = isGood_[0] || !graph_->Complete();
    ListGoodOnes();
  }

  std::vector<bool> AllMarkings() const {
    std::vector<bool> all;
    all.resize(static_cast<size_t>(graph_->Size()), true);
    return all;
  }

  void ListGoodOnes() {
    good_.clear();
    Marking marking = firingNet_.Initial();
    for (int32_t number = 0; number < graph_->Size(); ++number) {
      if (!isGood_[static_cast<size_t>(number)]) continue;
      graph_->Get(number, marking);
      good_.push_back(marking);
    }
  }

  /// What is left of the good markings, by number, when the condition holds: without those that lose their
  /// last way on to the others.
  std::vector<bool> GoodWith(const MarkingBound& bound) const {
    std::vector<bool> good = isGood_;
    auto number = good.begin();
    for (const Marking& marking : good_) {
      number = std::find(number, good.end(), true);
      *number++ = CutOff(bound, {&marking, 1}) == 0;
    }
    return graph_->Complete() ? graph_->NeedNotBlock(uncontrollable_, std::move(good)) : good;
  }

  /// Adds a monitor that excludes the dead marking of the verdict, or tells why there is none.
  bool AddOne() {
    const Verdict& verdict = result_.verdict;
    if (stop_()) return Give("stopped");
    if (result_.monitors.size() == options_.most) return Give("the greatest number of monitors is reached");
    if (verdict.finding == Finding::kUndecided && !verdict.candidate) return Give(verdict.reason);
    const Marking& dead = verdict.finding == Finding::kDeadlock ? verdict.dead : verdict.candidate->marking;
    const PlaceList shortPlaces = ShortPlaces(result_.net, dead);
    const std::vector<PlaceList> siphons = SiphonsAmong(result_.net, shortPlaces, kMostSiphons, stop_);

    best_.reset();
    fewest_ = SIZE_MAX;
    if (!canBeKept_) return GiveUncontrolled(siphons);
    for (const PlaceList& siphon : ByMonitors(siphons)) Consider(BoundOf(siphon, dead), dead);
    if (fewest_ > 0) Consider(Weighted(OwnPlaces(shortPlaces), dead, false), dead);
    for (const bool anySign : {false, true}) {
      if (fewest_ > 0 && (!best_ || !anySign)) Consider(Weighted(AllOwnPlaces(), dead, anySign), dead);
    }
    if (!best_) return GiveUncontrolled(siphons);
    if (fewest_ > 0) {
      isGood_ = GoodWith(best_->keeps);
      ListGoodOnes();
    }
    result_.monitors.push_back(std::move(*best_));
    result_.net = *WithMonitors(net_, result_.monitors);
    return true;
  }

  bool Give(const std::string& reason) {
    result_.reason = reason;
    return false;
  }

  /// Tells why the dead marking cannot be excluded.
  bool GiveUncontrolled(const std::vector<PlaceList>& siphons) {
    if (!siphons.empty()) result_.uncontrolled = siphons.front();
    const bool allControllable =
        std::find(uncontrollable_.begin(), uncontrollable_.end(), true) == uncontrollable_.end();
    const std::string who = options_.uncontrollable.empty() ? "transitions with priority over others"
                                                            : "uncontrollable transitions";
    if (canBeKept_) {
      return Give(
          "no weighted sum of tokens was found that excludes the dead marking and spares the initial one" +
          (allControllable ? "" : " without holding up " + who));
    }
    const std::vector<bool> none(uncontrollable_.size());
    if (!graph_->NeedNotBlock(none, AllMarkings())[0])
      return Give("every way on from the initial marking ends in a deadlock");
    return Give("whatever is held up, " + who + " can lead into a deadlock");
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
    size_t excluded = CutOff(*bound, good_);
    if (excluded >= fewest_) return;
    if (excluded > 0) {
      const std::vector<bool> left = GoodWith(*bound);
      excluded = good_.size() - static_cast<size_t>(std::count(left.begin(), left.end(), true));
      if (excluded >= fewest_ || (graph_->Complete() && !left[0])) return;
    }
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
      if (takes && uncontrollable_[t]) return false;
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
    for (int32_t t = 0; t < firingNet_.TransitionCount(); ++t) {
      if (uncontrollable_[static_cast<size_t>(t)]) task.mayNotLower.push_back(firingNet_.Changes(t));
    }
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
    std::set<Marking> reached;  // without the monitors, whose tokens follow from the other places
    Marking marking(result_.net.places.size());
    for (int32_t number = 0; number < graph.Size(); ++number) {
      graph.Get(number, marking);
      reached.emplace(marking.begin(), marking.begin() + firingNet_.PlaceCount());
    }
    KeptMarkings count;
    const std::vector<bool> needNotBlock =
        graph_->NeedNotBlock(std::vector<bool>(uncontrollable_.size()), AllMarkings());
    marking = firingNet_.Initial();
    for (int32_t number = 0; number < graph_->Size(); ++number) {
      if (!needNotBlock[static_cast<size_t>(number)]) continue;
      graph_->Get(number, marking);
      ++count.before;
      count.kept += reached.contains(marking) ? 1 : 0;
    }
    result_.kept = count;
  }

  const PetriNet& net_;
  const MonitorOptions& options_;
  const StopQuestion& question_;
  std::function<bool()> stop_;
  FiringNet firingNet_;
  std::vector<bool> uncontrollable_;   ///< by transition
  std::optional<MarkingGraph> graph_;  ///< of the old net, or a part of it
  std::vector<bool> isGood_;           ///< its markings at which the net can be kept from blocking
  std::vector<Marking> good_;          ///< the same as a list
  bool canBeKept_ = true;              ///< whether the initial one is such, as far as that is known
  std::optional<Monitor> best_;        ///< for the dead marking that is looked at
  size_t fewest_ = SIZE_MAX;           ///< good markings that it excludes
  MonitoredNet result_;
};

}  // namespace

MonitoredNet AddMonitors(const PetriNet& net, const MonitorOptions& options, const StopQuestion& stop) {
  return Supervision(net, options, stop).Run();
}

}  // namespace siphons
