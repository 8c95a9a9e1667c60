// The search of one job.
//
// It holds some places and looks for a siphon around them: of the first held place that a transition fills
// without taking from a held one, some input place must be held; all of these but the last are decided to be
// out, those first that would need most besides, and by activity; the last is then implied. When no held
// place lacks anything, the held places are a siphon. Every one of them was implied, so it is the only
// minimal siphon among its subsets that hold what had to be held; a smaller one could only lack one of these,
// and one test for each finds that out; mostly a glance at all of them is enough. Deciding only what is out
// is how answer set solvers enumerate minimal models (domain heuristics, Gebser et al. 2013).
//
// A clause then says that not all places of the answer are held, and is the next conflict. In a job that
// holds nothing yet, the first place left is held (a phase), until no siphon with it is left; from then on it
// is out for ever, which satisfies the clauses of its phase. A smaller siphon that a test finds is an answer
// itself then, of a later phase. A phase that takes long becomes a job of its own, which searches among the
// places around this one only. A job that takes long is split at a place that half of its answers have: the
// clauses of the others are then not carried along, and the parts can go to other threads.
//
// Where greater siphons than a number are not wanted, what holds more places is a conflict. That is felt
// late, when nearly so many are held. So, when asked for the smallest first, every phase is a job of its own
// at once, and a job finds its siphons by their size (least_size.h): its first decisions are the wishes, and
// when these cannot be fulfilled, it learns that from their core. It ends when the least size is above the
// number.
//
// An answer costs the arcs of its places and the watched clauses that are touched on the way.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "netkit/siphons/clause_search.h"
#include "netkit/siphons/job_clauses.h"
#include "netkit/siphons/least_size.h"
#include "netkit/siphons/siphon_job.h"
#include "netkit/siphons/siphon_parts.h"

namespace siphons {

class JobSearch {
 public:
  /// `parts` is one for the component of the job. All must outlive the search.
  JobSearch(const SiphonJob& job, const JobLimits& limits, SiphonParts& parts);

  /// Calls found(places) for every siphon of the job until the job is to be split, places ascending. Ends
  /// when `found` returns false or `stop`, asked often, returns true. To be called once.
  JobEnd Run(const std::function<bool(const PlaceList&)>& found, const std::function<bool()>& stop);

  /// After kSplit: the jobs that the rest consists of, to be done in this order.
  std::vector<SiphonJob> Remainder();

  /// After a Run that was not exhausted: how many places are neither held nor out in all siphons that were
  /// not found yet and hold the place, or do not hold it, as far as it is plain to see.
  size_t UndecidedAfter(int32_t place, bool isHeld);

 private:
  static constexpr uint32_t kNone = UINT32_MAX;

  /// What was so when a decision was taken.
  struct Mark {
    size_t seen, held, supported, wished;
  };

  enum class Step { kGoOn, kExhausted, kStop };

  bool HasPhases() const { return job_.held.empty(); }
  bool IsOut(Variable variable) const {
    return search_.IsFixed(variable) && search_.IsFalse(Holds(variable));
  }

  void AddHeldAndKnown();
  bool Conflict();
  bool HoldNextPlace();
  bool EndsNow();
  std::optional<int32_t> PlaceToSplit() const;

  void CountWork();
  size_t MostPlaces() const;
  bool LeaveOutGreat(size_t mostPlaces);
  bool Wish();

  void FollowTrail();
  uint32_t FirstLacking();
  bool IsSupported(uint32_t transition);
  Variable InputToDecide(uint32_t transition);
  void Decide(Literal literal);

  Step Answer(const std::function<bool(const PlaceList&)>& found);
  PlaceList HeldPlaces() const;
  bool FallsWithoutTested();
  uint32_t& InputsHeld(uint32_t transition);
  bool FallsWithout(Variable place);
  bool AllTestedLeadTo(Variable place);
  PlaceList Smaller(const PlaceList& siphon);
  bool LeaveOut(const PlaceList& siphon);

  PlaceList PlacesLeft() const;

  const SiphonJob& job_;
  const JobLimits limits_;
  SiphonParts& parts_;
  const JobArcs arcs_;
  ClauseSearch search_;

  std::vector<Variable> held_;          ///< held places in the order of the trail
  size_t seen_ = 0;                     ///< of the trail
  size_t supported_ = 0;                ///< of the held places: these lack nothing
  std::optional<LeastSize> leastSize_;  ///< where the smallest come first
  size_t wished_ = 0;                   ///< of its wishes: these are true
  std::vector<Mark> marks_;             ///< by level
  std::vector<Variable> support_;       ///< by transition: an input place that was held when asked last
  std::vector<Literal> clause_;

  /// By transition, for FallsWithoutTested: the answer that it was counted for, and the count.
  std::vector<std::pair<uint64_t, uint32_t>> inputsHeld_;
  uint64_t answer_ = 0;           ///< counts those that were looked at
  std::vector<uint32_t> stamps_;  ///< by place: the walk that met it last
  std::vector<Variable> walk_;
  uint32_t stamp_ = 0;

  Variable phase_ = 0;  ///< the place held on level 1, in jobs with phases
  bool inPhase_ = false;
  uint64_t phaseStart_ = 0;  ///< in steps
  uint64_t partsAsked_ = 0;  ///< in steps, when the places left were last looked at

  PlaceList tested_;                ///< held places without which there may be smaller siphons
  std::vector<PlaceList> answers_;  ///< of the phase or, known ones first, of the job
  size_t found_ = 0, rejected_ = 0;
  std::optional<int32_t> splitPlace_;  ///< set by EndsNow
  size_t splitAtAnswers_;
  uint64_t splitAtConflicts_;
  uint64_t conflicts_ = 0;
  uint64_t restartAt_;
  uint64_t counted_ = 0;  ///< of the steps: those that were added to the work
};

}  // namespace siphons
