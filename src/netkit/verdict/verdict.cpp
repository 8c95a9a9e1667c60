#include "netkit/verdict/verdict.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "netkit/verdict/exploration.h"
#include "netkit/verdict/proof.h"
#include "netkit/verdict/reduced_net.h"
#include "netkit/verdict/replay.h"
#include "netkit/verdict/shortening.h"
#include "netkit/verdict/traps.h"
#include "netkit/verdict/walks.h"

namespace siphons {

namespace {

/// The budgets of the first round.
constexpr int64_t kWork = 10'000'000;         // of an exploration
constexpr int64_t kReducedWork = 40'000'000;  // of one that stubborn sets reduce
constexpr int64_t kWalking = 2'000'000;       // of the walks
constexpr int64_t kSolverSteps = 4'000'000;   // of a proof
constexpr int64_t kGuidedWalks = 8;
constexpr int64_t kGrowth = 4;
constexpr size_t kMostUnfolded = 20'000'000;  // firings

/// Whether nothing can hold a transition up. What a marking-dependent output arc may do is not known.
bool AlwaysAllowed(const Transition& transition) {
  return transition.inputs.empty() && transition.inhibitors.empty() && !transition.enablingFunction &&
         std::none_of(transition.outputs.begin(), transition.outputs.end(),
                      [](const Arc& arc) { return arc.markingDependent; });
}

/// The proofs that are tried one after the other.
struct ProofKind {
  StateEquation::Numbers numbers;
  StateEquation::Search search;
  Ground ground;
  int64_t steps;  ///< after which the next one is tried; 0: it goes on from round to round
};

constexpr ProofKind kProofs[] = {
    {StateEquation::Numbers::kNoEquation, StateEquation::Search::kNeeded, Ground::kTraps, kSolverSteps / 4},
    {StateEquation::Numbers::kRational, StateEquation::Search::kNeeded, Ground::kEquation, kSolverSteps / 8},
    {StateEquation::Numbers::kRational, StateEquation::Search::kEverything, Ground::kEquation, 0},
    {StateEquation::Numbers::kWhole, StateEquation::Search::kEverything, Ground::kWholeEquation, 0}};

class Decision {
 public:
  Decision(const PetriNet& net, const VerdictLimits& limits, const StopQuestion& stop)
      : net_(net),
        limits_(limits),
        question_(stop),
        stop_([this] { return question_(Looked()); }),
        firingNet_(net),
        finder_(net) {
    if (!firingNet_.Exact()) return;
    if (limits.walks) walks_.emplace(firingNet_);
    if (limits.breadthFirst) breadthFirst_.emplace(firingNet_, ExplorationOrder::kBreadthFirst);
    if (limits.reduced && firingNet_.LevelCount() == 1)
      reduced_.emplace(firingNet_, ExplorationOrder::kReduced);
  }

  Verdict Run() {
    if (std::any_of(net_.transitions.begin(), net_.transitions.end(), AlwaysAllowed)) {
      Free(Ground::kNothingAsked);
      return std::move(verdict_);
    }
    int64_t factor = 1;
    for (int32_t round = 0; round < limits_.rounds && !stop_(); ++round, factor *= kGrowth) {
      if (Explore(breadthFirst_, factor * kWork, Ground::kAllMarkings, Ground::kBreadthFirst) ||
          Walk(factor * kWalking) || (round == 0 && ReduceNet()) ||
          Explore(reduced_, factor * kReducedWork, Ground::kReduced, Ground::kReducedSearch) ||
          Prove(factor) || FollowGuide(factor * kGuidedWalks)) {
        return std::move(verdict_);
      }
      if (!breadthFirst_ && !reduced_ && !walks_ && ProofOver()) break;
    }
    verdict_.firings = walks_ ? walks_->Firings() : 0;
    verdict_.reason = ReasonOfDoubt();
    return std::move(verdict_);
  }

 private:
  bool Explore(std::optional<Exploration>& exploration, int64_t work, Ground freeBy, Ground deadBy) {
    if (!exploration) return false;
    const Exploration::End end = exploration->Run(work, limits_.bytes, stop_);
    verdict_.markings = std::max(verdict_.markings, exploration->Markings());
    switch (end) {
      case Exploration::End::kExhausted:
        verdict_.markings = exploration->Markings();
        return Free(freeBy);
      case Exploration::End::kDeadlock:
        return Dead(deadBy, exploration->Sequence());
      case Exploration::End::kTooLarge:
        tooLarge_ = true;
        exploration.reset();
        break;
      case Exploration::End::kLimit:
        if (exploration->Bytes() >= limits_.bytes) exploration.reset();
        break;
      case Exploration::End::kStopped:
        break;
    }
    return false;
  }

  /// Markings and firings looked at.
  int64_t Looked() const {
    return (breadthFirst_ ? breadthFirst_->Markings() : 0) + (reduced_ ? reduced_->Markings() : 0) +
           (walks_ ? walks_->Firings() : 0);
  }

  bool Walk(int64_t work) {
    return walks_ && walks_->Run(work, stop_) && Dead(Ground::kWalk, walks_->Sequence());
  }

  bool FollowGuide(int64_t walks) {
    if (!walks_ || !verdict_.candidate) return false;
    for (int64_t i = 0; i < walks && !stop_(); ++i) {
      if (walks_->FollowGuide(stop_)) return Dead(Ground::kWalk, walks_->Sequence());
    }
    return false;
  }

  /// Decides by the reduced net, if there is less to it.
  bool ReduceNet() {
    if (!limits_.reductions || !firingNet_.Exact()) return false;
    const ReducedNet reduced(net_, stop_);
    const PetriNet& net = reduced.Net();
    const bool isLess =
        net.places.size() != net_.places.size() || net.transitions.size() != net_.transitions.size();
    if (!reduced.KeepingTrap().empty()) {
      Verdict verdict;
      verdict.ground = Ground::kReductions;
      verdict.refutations.traps = {reduced.KeepingTrap()};
      if (isLess) verdict.reduced = net;
      return FreeAs(std::move(verdict));
    }
    if (!isLess) return false;
    VerdictLimits limits = limits_;
    limits.reductions = false;
    const int64_t before = Looked();
    Verdict verdict =
        Decision(net, limits, [this, before](int64_t looked) { return question_(before + looked); }).Run();
    if (verdict.finding == Finding::kDeadlockFree) {
      verdict.reduced = net;
      return FreeAs(std::move(verdict));
    }
    if (verdict.finding == Finding::kUndecided) return false;
    const auto sequence = reduced.Unfolded(verdict.sequence, kMostUnfolded);
    if (!sequence) return false;
    const bool possible = firingNet_.LevelCount() == 1 || Replay(net_, *sequence);
    return possible && Dead(Ground::kReducedSearch, *sequence);
  }

  bool FreeAs(Verdict verdict) {
    verdict_ = std::move(verdict);
    return Free(verdict_.ground);
  }

  /// Goes on with the proofs where the last round left them.
  bool Prove(int64_t factor) {
    while (!ProofOver() && !stop_()) {
      const ProofKind& kind = kProofs[proofNumber_];
      if (!proof_) proof_.emplace(net_, kind.numbers, kind.search, firingNet_.Exact());
      const int64_t steps = kind.steps > 0 ? kind.steps : factor * kSolverSteps;
      const Proof::State state = proof_->Go(steps, finder_, traps_, stop_);
      if (state == Proof::State::kProved) {
        verdict_.refutations = limits_.onlyNeeded ? proof_->Needed(traps_, stop_) : proof_->Given(traps_);
        return Free(kind.ground);
      }
      if (state == Proof::State::kOpen && kind.steps == 0) return false;
      ++proofNumber_;
      if (state == Proof::State::kCandidate && kind.ground != Ground::kTraps) {
        while (!ProofOver() && kProofs[proofNumber_].ground == kind.ground) ++proofNumber_;
        verdict_.candidate = proof_->ItsCandidate();
        if (walks_) walks_->SetGuide(verdict_.candidate->firings);
        if (reduced_) reduced_->SetGoal(verdict_.candidate->marking);
        if (FollowGuide(kGuidedWalks)) return true;
      }
      proof_.reset();
    }
    return false;
  }

  bool ProofOver() const { return !limits_.proof || proofNumber_ == std::size(kProofs); }

  bool Free(Ground ground) {
    verdict_.finding = Finding::kDeadlockFree;
    verdict_.ground = ground;
    verdict_.candidate.reset();
    return true;
  }

  bool Dead(Ground ground, std::vector<int32_t> sequence) {
    if (ground != Ground::kBreadthFirst) sequence = Shortened(firingNet_, std::move(sequence), stop_);
    const auto marking = Replay(net_, sequence);
    if (!marking || !IsDead(net_, *marking)) std::abort();  // the search and the net disagree
    verdict_.finding = Finding::kDeadlock;
    verdict_.ground = ground;
    verdict_.sequence = std::move(sequence);
    verdict_.dead = *marking;
    return true;
  }

  std::string ReasonOfDoubt() const {
    if (!firingNet_.Exact()) {
      return "enabling functions or marking-dependent arcs keep the firings from being followed, and the "
             "state equation with traps does not rule a dead marking out";
    }
    std::string reason =
        ProofOver() ? "the state equation has a dead marking that no trap refutes and no firings reach"
                    : "neither proof nor dead marking within the limits";
    if (tooLarge_) reason += "; numbers of tokens leave 64 bits";
    return reason + "; " + std::to_string(verdict_.markings) + " markings and " +
           std::to_string(verdict_.firings) + " firings looked at";
  }

  const PetriNet& net_;
  VerdictLimits limits_;
  StopQuestion question_;
  std::function<bool()> stop_;
  FiringNet firingNet_;
  TrapFinder finder_;
  std::optional<Walks> walks_;
  std::optional<Exploration> breadthFirst_, reduced_;
  std::optional<Proof> proof_;
  size_t proofNumber_ = 0;  ///< in kProofs
  std::vector<PlaceList> traps_;
  bool tooLarge_ = false;
  Verdict verdict_;
};

}  // namespace

Verdict Decide(const PetriNet& net, const VerdictLimits& limits, const StopQuestion& stop) {
  return Decision(net, limits, stop).Run();
}

}  // namespace siphons
