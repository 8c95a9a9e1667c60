// The verdict on deadlocks: against a literal listing of all markings on random nets, each of its lines
// alone; what guards a proof and a sequence; numbers at the end of 64 bits; shortest ways, shortening.
#include "netkit/verdict/verdict.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>

#include "netkit/verdict/agglomeration.h"
#include "netkit/verdict/exploration.h"
#include "netkit/verdict/firing_net.h"
#include "netkit/verdict/marking_store.h"
#include "netkit/verdict/reduced_net.h"
#include "netkit/verdict/redundancy.h"
#include "netkit/verdict/replay.h"
#include "netkit/verdict/shortening.h"
#include "netkit/verdict/support_sets.h"
#include "netkit/verdict/traps.h"
#include "netkit/verdict/walker.h"
#include "tests/nets.h"

namespace siphons {
namespace {

const auto kNever = [](int64_t = 0) { return false; };

/// One line of the verdict, with what it can be expected to decide.
struct Line {
  const char* name;
  VerdictLimits limits;
  bool decidesAll;
};

/// Whether a walk from the initial marking on, which has fired `times`, meets a condition of a proof.
bool Meets(const FiringCondition& condition, const Marking& marking, const std::vector<int64_t>& times) {
  const auto fired = [&times](int32_t t) { return times[static_cast<size_t>(t)] > 0; };
  const bool marked = condition.kind == FiringCondition::Kind::kTrap &&
                      std::any_of(condition.places.begin(), condition.places.end(),
                                  [&marking](int32_t p) { return marking[static_cast<size_t>(p)] > 0; });
  return marked || std::any_of(condition.breakers.begin(), condition.breakers.end(), fired) ||
         (condition.cause >= 0 && !fired(condition.cause));
}

/// Refutations of a proof hold in its net, and are enough.
void CheckRefutations(const PetriNet& net, const Verdict& verdict) {
  const PetriNet& itsNet = verdict.reduced ? *verdict.reduced : net;
  for (const PlaceList& trap : verdict.refutations.traps) EXPECT_TRUE(IsMarkedTrap(itsNet, trap));
  const FiringNet firing(itsNet);
  Walker walker(firing);
  std::mt19937 random(1);
  std::vector<int64_t> times(itsNet.transitions.size());
  for (int i = 0; i < 100 && !walker.Dead(); ++i) {
    for (const FiringCondition& condition : verdict.refutations.conditions) {
      EXPECT_TRUE(Meets(condition, walker.At(), times));
    }
    const int32_t t = walker.Enabled()[random() % walker.Enabled().size()];
    if (!walker.Fire(t)) break;
    ++times[static_cast<size_t>(t)];
  }
  const std::map<Ground, StateEquation::Numbers> solved = {
      {Ground::kTraps, StateEquation::Numbers::kNoEquation},
      {Ground::kEquation, StateEquation::Numbers::kRational},
      {Ground::kWholeEquation, StateEquation::Numbers::kWhole}};
  if (solved.count(verdict.ground) == 0) return;
  StateEquation equation(itsNet, solved.at(verdict.ground), StateEquation::Search::kEverything);
  equation.RequireDead();
  for (const PlaceList& trap : verdict.refutations.traps) equation.RequireMarked(trap);
  for (const FiringCondition& condition : verdict.refutations.conditions) equation.Require(condition);
  EXPECT_EQ(equation.Solve(1'000'000, kNever), StateEquation::Answer::kNoSolution);
}

/// Compares verdicts with listings; the number of nets can be raised by VERDICT_NETS.
void CompareWithListings(const RandomFeatures& features, uint32_t seed, int nets) {
  if (const char* const wanted = std::getenv("VERDICT_NETS")) nets = std::atoi(wanted);
  const std::vector<Line> lines = {
      {"all", {.rounds = 2}, true},
      {"proof",
       {.rounds = 1, .breadthFirst = false, .reduced = false, .walks = false, .onlyNeeded = true},
       false},
      {"proof, not reduced",
       {.rounds = 1, .breadthFirst = false, .reduced = false, .walks = false, .reductions = false},
       false},
      {"stubborn",
       {.rounds = 2, .proof = false, .breadthFirst = false, .walks = false},
       !features.priorities},
      {"walks",
       {.rounds = 1, .proof = false, .breadthFirst = false, .reduced = false, .reductions = false},
       false}};
  std::mt19937 random(seed);
  int free = 0, dead = 0;
  for (int i = 0; i < nets; ++i) {
    SCOPED_TRACE("seed " + std::to_string(seed) + ", net " + std::to_string(i));
    const PetriNet net = RandomNet(random, features);
    const Listing listing = ListMarkings(net, 3000);
    if (!listing.complete && !listing.dead) continue;
    for (const Line& line : lines) {
      SCOPED_TRACE(line.name);
      const Verdict verdict = Decide(net, line.limits, kNever);
      free += verdict.finding == Finding::kDeadlockFree ? 1 : 0;
      if (listing.dead) {
        EXPECT_NE(verdict.finding, Finding::kDeadlockFree);
      } else {
        EXPECT_NE(verdict.finding, Finding::kDeadlock);
      }
      if (verdict.finding == Finding::kDeadlock) {
        ++dead;
        EXPECT_EQ(Replay(net, verdict.sequence), verdict.dead);
        EXPECT_TRUE(!listing.complete || listing.markings.count(verdict.dead) > 0);
        EXPECT_TRUE(IsDead(net, verdict.dead));
      }
      CheckRefutations(net, verdict);
      if (!features.unknown && line.decidesAll && listing.complete) {
        EXPECT_NE(verdict.finding, Finding::kUndecided);
      }
      if (testing::Test::HasFailure()) return;
    }
  }
  EXPECT_GT(free, nets / 20);
  if (!features.unknown) {
    EXPECT_GT(dead, nets / 2);
  }
}

TEST(Verdict, AgreesWithListings) {
  CompareWithListings({}, 1, 150);
  CompareWithListings({.inhibitors = false, .priorities = false}, 2, 150);
  CompareWithListings({.priorities = false}, 3, 100);
  CompareWithListings({.unknown = true}, 4, 100);
  CompareWithListings({.machines = true}, 7, 200);
}

// p0 -> p1 -> p0 with 3 tokens, where t1 moves 2 at a time: blocks with 1 token in p1.
const PetriNet kPairs = MakeNet({3, 0}, {MakeTransition({{0, 1}}, {{1, 1}}), MakeTransition({{1, 2}}, {})});

TEST(Verdict, SequencesAreReplayed) {
  const Verdict verdict = Decide(kPairs, {}, kNever);
  EXPECT_EQ(verdict.sequence.size(), 4U);  // a shortest one
  EXPECT_EQ(verdict.dead, (std::vector<int64_t>{0, 1}));
  std::vector<int32_t> oneTooMany = verdict.sequence;
  oneTooMany.push_back(1);
  EXPECT_FALSE(Replay(kPairs, oneTooMany));
  const std::vector<int32_t> oneTooFew(verdict.sequence.begin(), verdict.sequence.end() - 1);
  EXPECT_FALSE(IsDead(kPairs, Replay(kPairs, oneTooFew).value()));

  PetriNet ranked = kPairs;  // t1 goes before t0 as soon as it can
  ranked.transitions[1].kind = TransitionKind::kImmediate;
  EXPECT_FALSE(Replay(ranked, std::vector<int32_t>{0, 0, 0, 1}));
  EXPECT_TRUE(Replay(ranked, std::vector<int32_t>{0, 0, 1, 0}));
  ranked.transitions[0].kind = TransitionKind::kImmediate;
  ranked.transitions[0].priority = 2;
  EXPECT_TRUE(Replay(ranked, std::vector<int32_t>{0, 0, 0, 1}));

  PetriNet timed = kPairs;  // a priority counts among immediate transitions only
  timed.transitions[1].priority = 5;
  EXPECT_TRUE(Replay(timed, std::vector<int32_t>{0, 0, 0, 1}));
  EXPECT_EQ(FiringNet(timed).LevelCount(), 1);
}

TEST(Verdict, TrapsAreTested) {
  PetriNet net =
      MakeNet({1, 0, 0}, {MakeTransition({{0, 1}}, {{1, 1}}), MakeTransition({{1, 1}}, {{0, 1}, {2, 1}}),
                          MakeTransition({{2, 1}}, {})});
  EXPECT_TRUE(IsMarkedTrap(net, {0, 1}));
  EXPECT_FALSE(IsMarkedTrap(net, {0}));
  EXPECT_FALSE(IsMarkedTrap(net, {0, 1, 2}));
  EXPECT_EQ(TrapFinder(net).MarkedTraps({0, 1, 2}, 9), (std::vector<PlaceList>{{0, 1}}));
  EXPECT_EQ(Decide(net, {.breadthFirst = false, .reduced = false, .reductions = false}, kNever).ground,
            Ground::kTraps);
  net.transitions[0].outputs[0].markingDependent = true;  // it may give nothing back
  EXPECT_FALSE(IsMarkedTrap(net, {0, 1}));
  EXPECT_TRUE(TrapFinder(net).MarkedTraps({0, 1, 2}, 9).empty());
  EXPECT_EQ(Decide(net, {.rounds = 1}, kNever).finding, Finding::kUndecided);
}

TEST(Verdict, OrderOfFiringsCounts) {
  // A token goes round in p0 p1; t2 would take it away, but needs p2, which it gives back and nothing else
  // fills. For the equation it can; t3 keeps p0 p1 p2 from being a trap.
  const PetriNet net = MakeNet(
      {1, 0, 0, 0}, {MakeTransition({{0, 1}}, {{1, 1}}), MakeTransition({{1, 1}}, {{0, 1}}),
                     MakeTransition({{0, 1}, {2, 1}}, {{2, 1}, {3, 1}}), MakeTransition({{2, 1}}, {{3, 1}})});
  const VerdictLimits proofOnly = {
      .rounds = 1, .breadthFirst = false, .reduced = false, .walks = false, .reductions = false};
  const Verdict verdict = Decide(net, proofOnly, kNever);
  EXPECT_EQ(verdict.ground, Ground::kEquation);
  EXPECT_FALSE(verdict.refutations.conditions.empty());
  EXPECT_EQ(Breakers(net, {0, 1}, false), (std::vector<int32_t>{2}));
  EXPECT_EQ(Breakers(net, {0, 1, 2}, false), (std::vector<int32_t>{3}));
  EXPECT_EQ(Breakers(net, {1}, true), (std::vector<int32_t>{0}));
  EXPECT_TRUE(Breakers(net, {2}, true).empty());
  PetriNet marked = net;  // now it can
  marked.places[2].tokens = 1;
  EXPECT_EQ(Decide(marked, proofOnly, kNever).finding, Finding::kUndecided);
}

/// Reduces random nets and compares what can block; the number of nets can be raised by VERDICT_NETS.
void CompareReductions(const RandomFeatures& features, uint32_t seed, int nets) {
  if (const char* const wanted = std::getenv("VERDICT_NETS")) nets = std::atoi(wanted);
  std::mt19937 random(seed);
  int smaller = 0, unfolded = 0;
  for (int i = 0; i < nets; ++i) {
    SCOPED_TRACE("seed " + std::to_string(seed) + ", net " + std::to_string(i));
    const PetriNet net = RandomNet(random, features);
    const Listing listing = ListMarkings(net, 3000);
    if (!listing.complete) continue;
    const ReducedNet reduced(net, kNever);
    smaller += reduced.Net().places.size() < net.places.size() ? 1 : 0;
    if (!reduced.KeepingTrap().empty()) {
      ASSERT_FALSE(listing.dead);
      continue;
    }
    const Verdict verdict = Decide(reduced.Net(), {.rounds = 1, .reductions = false}, kNever);
    ASSERT_EQ(verdict.finding, listing.dead ? Finding::kDeadlock : Finding::kDeadlockFree);
    if (!listing.dead) continue;
    const auto marking = Replay(net, reduced.Unfolded(verdict.sequence, 100'000).value());
    ASSERT_TRUE(marking && IsDead(net, *marking));
    unfolded += verdict.sequence.empty() ? 0 : 1;
  }
  EXPECT_GT(smaller, nets / 3);
  EXPECT_GT(unfolded, nets / 50);
}

TEST(ReducedNet, BlocksWhereTheNetBlocks) {
  CompareReductions({.weights = false, .inhibitors = false, .priorities = false}, 5, 400);
  CompareReductions({.priorities = false}, 6, 400);
  CompareReductions({.machines = true}, 8, 400);
  CompareReductions({.inhibitors = false, .priorities = false, .sparse = true}, 9, 3000);
  CompareReductions({.priorities = false, .sparse = true}, 10, 3000);
}

TEST(ReducedNet, WaitsOnlyForWhatNoOtherTakes) {
  // t0 may wait for t1, unless another transition takes from p0 meanwhile.
  PetriNet net =
      MakeNet({1, 0, 0, 1}, {MakeTransition({{0, 1}}, {{1, 1}}), MakeTransition({{1, 1}, {3, 1}}, {{2, 1}})});
  MutableNet alone(net);
  EXPECT_TRUE(AgglomerateBefore(alone, 1));
  net.transitions.push_back(MakeTransition({{0, 1}}, {{2, 1}}));
  MutableNet shared(net);
  EXPECT_FALSE(AgglomerateBefore(shared, 1));
}

TEST(ReducedNet, NoRuleGoesTooFar) {
  // t0 puts into p1, from which t1 or t2 takes at once: unless p1 holds a token, which may go either way, or
  // an inhibitor arc of t3 tests what t1 puts.
  PetriNet net =
      MakeNet({1, 0, 0, 0}, {MakeTransition({{0, 1}}, {{1, 1}}), MakeTransition({{1, 1}}, {{2, 1}}),
                             MakeTransition({{1, 1}}, {{3, 1}}), MakeTransition({{3, 2}}, {})});
  MutableNet empty(net);
  EXPECT_TRUE(AgglomerateAfter(empty, 1));
  PetriNet marked = net;
  marked.places[1].tokens = 1;
  MutableNet withToken(marked);
  EXPECT_FALSE(AgglomerateAfter(withToken, 1));
  net.transitions[3].inhibitors = MakeArcs({{2, 1}});
  MutableNet watched(net);
  EXPECT_FALSE(AgglomerateAfter(watched, 1));

  // t0 takes as many tokens from p0 as from p1, but gives more back to p1.
  MutableNet unequal(MakeNet({1, 1}, {MakeTransition({{0, 1}, {1, 1}}, {{0, 1}, {1, 2}})}));
  EXPECT_FALSE(RemoveEqualPlaces(unequal));

  // t0 and t1 do the same, t1 with up to one token in p1, too.
  net = MakeNet({1, 0, 0}, {MakeTransition({{0, 1}}, {{2, 1}}), MakeTransition({{0, 1}}, {{2, 1}})});
  for (size_t t = 0; t < 2; ++t) net.transitions[t].inhibitors = MakeArcs({{1, static_cast<int64_t>(t) + 1}});
  MutableNet inhibited(net);
  EXPECT_TRUE(RemoveDominatedTransitions(inhibited));
  EXPECT_TRUE(inhibited.At(0).gone && !inhibited.At(1).gone);
}

TEST(ReducedNet, UnfoldsWhatItJoined) {
  // t0 puts 2 into p1, which t1 turns into p2 p3 one by one; t2 needs p4, too, and ends in p5, of which t4
  // would need 3; p6 is a sink. t0 is fired late, t1 and t3 twice.
  PetriNet net = MakeNet({1, 0, 0, 0, 1, 0, 0},
                         {MakeTransition({{0, 1}}, {{1, 2}}), MakeTransition({{1, 1}}, {{2, 1}, {3, 1}}),
                          MakeTransition({{2, 1}, {4, 1}}, {{5, 1}}), MakeTransition({{3, 1}}, {{6, 2}}),
                          MakeTransition({{5, 3}}, {{0, 1}})});
  for (size_t t = 0; t < net.transitions.size(); ++t) net.transitions[t].name = "t" + std::to_string(t);
  const ReducedNet reduced(net, kNever);
  ASSERT_EQ(reduced.Net().transitions.size(), 2U);
  EXPECT_EQ(reduced.Net().transitions[0].name, "t2");
  EXPECT_EQ(reduced.Net().transitions[1].name, "t4+t0+2*t1+2*t3");
  const Verdict verdict = Decide(reduced.Net(), {.reductions = false}, kNever);
  EXPECT_FALSE(reduced.Unfolded(verdict.sequence, 3));
  EXPECT_EQ(Replay(net, reduced.Unfolded(verdict.sequence, 100).value()),
            (std::vector<int64_t>{0, 0, 1, 0, 0, 1, 4}));
}

TEST(Verdict, NumbersDoNotWrap) {
  // p0 grows by 2^62 with each firing of t0; t1 needs p1, which is never marked.
  const int64_t much = int64_t{1} << 62;
  PetriNet net = MakeNet({1, 0}, {MakeTransition({{0, 1}}, {{0, much}}), MakeTransition({{1, 1}}, {})});
  EXPECT_EQ(Decide(net, {.rounds = 1, .proof = false, .reductions = false}, kNever).finding,
            Finding::kUndecided);
  EXPECT_EQ(Decide(net, {}, kNever).finding, Finding::kDeadlockFree);
  EXPECT_FALSE(Replay(net, std::vector<int32_t>{0, 0, 0}));
  Marking marking = {1, 5};
  const FiringNet firing(MakeNet({1, 0}, {MakeTransition({}, {{0, much}, {1, INT64_MAX}})}));
  EXPECT_FALSE(firing.Fire(0, marking));
  EXPECT_EQ(marking, (Marking{1, 5}));
}

TEST(Verdict, NetsWithoutTransitionsAreDead) {
  EXPECT_EQ(Decide(MakeNet({1}, {}), {}, kNever).finding, Finding::kDeadlock);
  EXPECT_EQ(Decide(MakeNet({0}, {MakeTransition({}, {{0, 1}})}), {}, kNever).finding, Finding::kDeadlockFree);
}

TEST(MarkingStore, FindsWhatItHolds) {
  constexpr int32_t kPlaces = 40;
  std::mt19937_64 random(7);
  Marking marking(kPlaces, 1);
  MarkingStore store(marking);
  std::vector<Marking> entered = {marking};
  std::set<Marking> known = {marking};
  int32_t number = 0;
  for (int i = 0; i < 20'000; ++i) {
    const size_t p = random() % kPlaces;
    const int bits = static_cast<int>(random() % (i < 10'000 ? 3 : 64));
    marking[p] = static_cast<int64_t>(random() & ((uint64_t{1} << bits) - 1));
    const PlaceTokens change{static_cast<int32_t>(p), 1};
    const MarkingStore::Entry entry = store.Enter(number, {&change, 1}, marking);
    number = entry.number;
    ASSERT_EQ(entry.isNew, known.insert(marking).second);
    if (entry.isNew) entered.push_back(marking);
    ASSERT_EQ(entered[static_cast<size_t>(number)], marking);
  }
  for (const size_t i : {size_t{0}, entered.size() / 2, entered.size() - 1}) {
    store.Unpack(static_cast<int32_t>(i), marking);
    EXPECT_EQ(marking, entered[i]);
  }
}

TEST(Exploration, FindsTowardsAGoalWhatThereIs) {
  std::mt19937 random(11);
  int dead = 0;
  for (int i = 0; i < 400; ++i) {
    SCOPED_TRACE("net " + std::to_string(i));
    const PetriNet net = RandomNet(random, {.priorities = false, .machines = i % 2 == 0});
    const Listing listing = ListMarkings(net, 1000);
    if (!listing.complete) continue;
    const FiringNet firing(net);
    Exploration exploration(firing, ExplorationOrder::kReduced);
    Exploration::End end = exploration.Run(50, INT64_MAX, kNever);
    exploration.SetGoal(*listing.markings.rbegin());
    if (end == Exploration::End::kLimit) end = exploration.Run(INT64_MAX, INT64_MAX, kNever);
    ASSERT_EQ(end, listing.dead ? Exploration::End::kDeadlock : Exploration::End::kExhausted);
    if (!listing.dead) continue;
    EXPECT_TRUE(IsDead(net, Replay(net, exploration.Sequence()).value()));
    ++dead;
  }
  EXPECT_GT(dead, 50);
}

TEST(Shortening, TakesOutWhatIsInVain) {
  // t2 and t3 go round beside the way into the dead marking; t4 only delays.
  PetriNet net = kPairs;
  net.places.resize(5);
  net.places[2].tokens = net.places[4].tokens = 1;
  net.transitions.push_back(MakeTransition({{2, 1}, {0, 1}}, {{3, 1}, {0, 1}}));
  net.transitions.push_back(MakeTransition({{3, 1}, {0, 1}}, {{2, 1}, {0, 1}}));
  net.transitions.push_back(MakeTransition({{4, 1}, {0, 1}}, {{0, 1}}));
  const FiringNet firing(net);
  const std::vector<int32_t> shorter = Shortened(firing, {2, 3, 4, 2, 0, 3, 2, 0, 1, 0}, kNever);
  EXPECT_EQ(shorter.size(), 4U);
  EXPECT_TRUE(IsDead(net, Replay(net, shorter).value()));
}

}  // namespace
}  // namespace siphons
