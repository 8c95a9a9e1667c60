#include "netkit/siphons/job_search.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "netkit/siphons/job_split.h"

namespace siphons {

namespace {

constexpr uint64_t kRestartInterval = 512;  ///< conflicts
constexpr uint64_t kStopInterval = 64;      ///< rounds between two questions whether to stop
constexpr uint64_t kStepsOfSetUp = 64;      ///< for each arc

[[maybe_unused]] constexpr size_t kConsistencyInterval = 512;  ///< answers

}  // namespace

JobSearch::JobSearch(const SiphonJob& job, const JobLimits& limits, SiphonParts& parts)
    : job_(job),
      limits_(limits),
      parts_(parts),
      arcs_(job),
      search_(static_cast<uint32_t>(job.places.size())),
      splitAtAnswers_(limits.answers),
      splitAtConflicts_(limits.conflicts),
      restartAt_(kRestartInterval) {
  for (const JobArcs::Transition& transition : arcs_.transitions) support_.push_back(transition.inputs[0]);
  inputsHeld_.resize(arcs_.transitions.size());
  stamps_.resize(job.places.size());
  if (limits.smallestFirst && HasPhases()) return;
  const auto held = HasPhases() ? std::nullopt : std::optional(arcs_.VariableOf(job_.held[0]));
  AddSiphonClauses(arcs_, held, search_);
  AddHeldAndKnown();
  if (limits.work != nullptr) *limits.work += kStepsOfSetUp * arcs_.arcCount;
  if (limits.smallestFirst) leastSize_.emplace(search_, static_cast<uint32_t>(job_.places.size()));
}

void JobSearch::AddHeldAndKnown() {
  for (const int32_t p : job_.held) {
    clause_.assign(1, Holds(arcs_.VariableOf(p)));
    search_.AddClause(clause_);
    PlaceList others = job_.places;
    others.erase(std::lower_bound(others.begin(), others.end(), p));
    parts_.Within().Assign(others);
    if (!parts_.Within().Places().empty()) tested_.push_back(p);
  }
  for (const PlaceList& siphon : job_.known) {
    clause_.clear();
    for (const int32_t p : siphon) clause_.push_back(Lacks(arcs_.VariableOf(p)));
    search_.AddClause(clause_);
  }
  answers_ = job_.known;
}

JobEnd JobSearch::Run(const std::function<bool(const PlaceList&)>& found, const std::function<bool()>& stop) {
  if (limits_.smallestFirst && HasPhases()) {
    inPhase_ = true;
    return JobEnd::kSplit;
  }
  for (uint64_t round = 0;; ++round) {
    if (round % kStopInterval == 0) {
      CountWork();
      if (stop()) return JobEnd::kStopped;
    }
    if (!search_.Propagate()) {
      if (!Conflict()) return JobEnd::kExhausted;
      continue;
    }
    FollowTrail();
    if (search_.Level() == 0) {
      wished_ = 0;
      if (search_.WantsCollection()) {
        search_.CollectClauses();
        assert(search_.Consistent());
      }
      if (EndsNow()) return JobEnd::kSplit;
      if (HasPhases()) {
        if (!HoldNextPlace()) return JobEnd::kExhausted;
        continue;
      }
    }
    if (leastSize_) {
      if (leastSize_->Value() > MostPlaces()) return JobEnd::kExhausted;
      if (Wish()) continue;
    } else if (held_.size() > MostPlaces()) {
      if (!LeaveOutGreat(MostPlaces())) return JobEnd::kExhausted;
      continue;
    }
    const uint32_t lacking = FirstLacking();
    if (lacking != kNone) {
      Decide(Lacks(InputToDecide(lacking)));
      continue;
    }
    assert(found_ % kConsistencyInterval != 0 || search_.Consistent());
    const Step step = Answer(found);
    if (step != Step::kGoOn) return step == Step::kStop ? JobEnd::kStopped : JobEnd::kExhausted;
    if (EndsNow()) return JobEnd::kSplit;
    if (search_.WantsCollection()) search_.Backtrack(0);
  }
}

void JobSearch::CountWork() {
  if (limits_.work != nullptr) *limits_.work += search_.Steps() - counted_;
  counted_ = search_.Steps();
}

/// Learns from a conflict, and now and then begins anew; false when nothing is left.
bool JobSearch::Conflict() {
  if (!search_.ResolveConflict()) return false;
  if (++conflicts_ < restartAt_) return true;
  restartAt_ = conflicts_ + kRestartInterval;
  search_.Backtrack(0);
  return true;
}

size_t JobSearch::MostPlaces() const {
  return limits_.mostPlaces == nullptr ? SIZE_MAX : static_cast<size_t>(*limits_.mostPlaces);
}

/// Excludes the sets that contain the first held places, one more than wanted; false when nothing is left.
bool JobSearch::LeaveOutGreat(size_t mostPlaces) {
  clause_.clear();
  for (size_t i = 0; i <= mostPlaces; ++i) clause_.push_back(Lacks(held_[i]));
  return search_.AddFalseClause(clause_);
}

// --- what the search decides

/// Takes the trail over: what was held when the current level began, and what came since.
void JobSearch::FollowTrail() {
  if (search_.Level() < marks_.size()) {
    const Mark& mark = marks_[search_.Level()];
    seen_ = mark.seen;
    held_.resize(mark.held);
    supported_ = mark.supported;
    wished_ = mark.wished;
    marks_.resize(search_.Level());
  }
  const std::span<const Literal> trail = search_.Trail();
  for (; seen_ < trail.size(); ++seen_) {
    const Variable variable = VariableOf(trail[seen_]);
    if (variable < job_.places.size() && trail[seen_] == Holds(variable)) held_.push_back(variable);
  }
}

void JobSearch::Decide(Literal literal) {
  marks_.push_back({seen_, held_.size(), supported_, wished_});
  search_.Decide(literal);
}

/// Takes a step towards what is wished; false when all wishes are true. They are the first decisions, so when
/// one is false, only others can be to blame.
bool JobSearch::Wish() {
  const std::span<const Literal> wishes = leastSize_->Wishes();
  while (wished_ < wishes.size() && search_.IsTrue(wishes[wished_])) ++wished_;
  if (wished_ == wishes.size()) return false;
  const Literal wish = wishes[wished_];
  if (search_.IsFalse(wish)) {
    std::vector<Literal> core = search_.DecisionsAgainst(wish);
    core.push_back(wish);
    search_.Backtrack(0);
    leastSize_->Raise(core);
  } else {
    Decide(wish);
  }
  return true;
}

/// A transition that fills the first held place that has such, and takes from no held one; or kNone.
uint32_t JobSearch::FirstLacking() {
  for (; supported_ < held_.size(); ++supported_) {
    for (const uint32_t t : arcs_.producers[held_[supported_]]) {
      if (!IsSupported(t)) return t;
    }
  }
  return kNone;
}

bool JobSearch::IsSupported(uint32_t transition) {
  if (search_.IsTrue(Holds(support_[transition]))) return true;
  const auto& inputs = arcs_.transitions[transition].inputs;
  const auto held =
      std::find_if(inputs.begin(), inputs.end(), [this](Variable p) { return search_.IsTrue(Holds(p)); });
  if (held == inputs.end()) return false;
  support_[transition] = *held;
  return true;
}

/// The input place that costs most to hold: it has the most transitions that fill it and take from no held
/// place; of several, the one of the greatest activity.
Variable JobSearch::InputToDecide(uint32_t transition) {
  Variable best = kNone;
  int64_t bestLacking = 0;
  for (const Variable p : arcs_.transitions[transition].inputs) {
    if (search_.IsAssigned(p)) continue;
    const auto& producers = arcs_.producers[p];
    const int64_t lacking =
        std::count_if(producers.begin(), producers.end(), [this](uint32_t t) { return !IsSupported(t); });
    const bool isBetter = best == kNone || lacking > bestLacking ||
                          (lacking == bestLacking && search_.Activity(p) > search_.Activity(best));
    if (!isBetter) continue;
    best = p;
    bestLacking = lacking;
  }
  assert(best != kNone);
  return best;
}

// --- phases and splits

/// Holds the place of the phase, or when it is done, that of the next one; false when no place is left.
bool JobSearch::HoldNextPlace() {
  if (!inPhase_ || search_.IsFixed(phase_)) {
    const auto isOver = [this](const PlaceList& siphon) {
      return std::any_of(siphon.begin(), siphon.end(),
                         [this](int32_t p) { return IsOut(arcs_.VariableOf(p)); });
    };
    answers_.erase(std::remove_if(answers_.begin(), answers_.end(), isOver), answers_.end());
    while (phase_ < job_.places.size() && search_.IsFixed(phase_)) ++phase_;
    if (phase_ == job_.places.size()) return false;
    inPhase_ = true;
    phaseStart_ = search_.Steps();
    tested_.assign(1, job_.places[phase_]);
  }
  Decide(Holds(phase_));
  return true;
}

/// Whether the rest is to become jobs of its own.
bool JobSearch::EndsNow() {
  if (HasPhases()) {
    const bool isBetween = search_.Level() == 0 && (!inPhase_ || search_.IsFixed(phase_));
    if (!isBetween) return search_.Steps() - phaseStart_ > 32 * arcs_.arcCount + limits_.steps;
    if (search_.Steps() - partsAsked_ < 8 * arcs_.arcCount + limits_.steps) return false;
    partsAsked_ = search_.Steps();
    const PlaceList left = PlacesLeft();
    const std::vector<PlaceList> parts = parts_.Split(left);
    return parts.size() != 1 || 2 * parts[0].size() < job_.places.size();
  }
  if (!job_.splits || 4 * rejected_ > found_) return false;
  if (answers_.size() < splitAtAnswers_ && conflicts_ < splitAtConflicts_) return false;
  splitPlace_ = PlaceToSplit();
  if (splitPlace_) return true;
  splitAtAnswers_ = 2 * answers_.size() + 1;
  splitAtConflicts_ = 2 * conflicts_ + 1;
  return false;
}

/// The place at which the job is best split, or nothing.
std::optional<int32_t> JobSearch::PlaceToSplit() const {
  constexpr size_t kFewAnswers = 32;
  if (answers_.size() > kFewAnswers) return MiddlePlace(answers_, job_.component->arcs.placeCount);
  Variable best = kNone;
  for (Variable p = 0; p < job_.places.size(); ++p) {
    if (search_.IsFixed(p)) continue;
    if (best == kNone || search_.Activity(p) > search_.Activity(best)) best = p;
  }
  return best == kNone ? std::nullopt : std::optional(job_.places[best]);
}

size_t JobSearch::UndecidedAfter(int32_t place, bool isHeld) {
  search_.Backtrack(0);
  if (!search_.Propagate()) return 0;
  const Variable variable = arcs_.VariableOf(place);
  const Literal literal = isHeld ? Holds(variable) : Lacks(variable);
  if (search_.IsFalse(literal)) return 0;
  if (!search_.IsTrue(literal)) search_.Decide(literal);
  size_t undecided = 0;
  if (search_.Propagate()) {
    for (Variable p = 0; p < job_.places.size(); ++p) undecided += search_.IsAssigned(p) ? 0U : 1U;
  }
  return undecided;
}

PlaceList JobSearch::PlacesLeft() const {
  PlaceList left;
  for (Variable p = 0; p < job_.places.size(); ++p) {
    if (!IsOut(p)) left.push_back(job_.places[p]);
  }
  return left;
}

std::vector<SiphonJob> JobSearch::Remainder() {
  std::vector<SiphonJob> jobs;
  search_.Backtrack(0);
  if (!search_.Propagate()) return jobs;
  const PlaceList left = PlacesLeft();
  const bool isBetween = HasPhases() && (!inPhase_ || search_.IsFixed(phase_));
  if (isBetween) {
    AppendParts(job_, left, answers_, parts_, jobs);
    return jobs;
  }
  const int32_t place = HasPhases() ? job_.places[phase_] : splitPlace_.value();
  AppendWith(job_, left, place, answers_, parts_, jobs);
  AppendWithout(job_, left, place, answers_, parts_, jobs);
  return jobs;
}

}  // namespace siphons
