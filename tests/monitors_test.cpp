// Monitors against literal listings: the net with them has no dead marking when that is said, reaches no
// marking of the old places that the old net does not, and each monitor holds what it says. The number of
// random nets can be raised by MONITOR_NETS.
#include "netkit/verdict/monitors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <set>

#include "netkit/formats/net_file.h"
#include "netkit/verdict/explanation.h"
#include "netkit/verdict/siphon_status.h"
#include "tests/nets.h"

namespace siphons {
namespace {

const auto kNever = [](int64_t = 0) { return false; };

/// What is wrong with what is said about the monitored net, by literal listings; "not listed" where one of
/// them has more markings than that.
std::string FaultOf(const PetriNet& net, const MonitoredNet& monitored, size_t most,
                    const std::vector<int32_t>& uncontrollable = {}) {
  for (const int32_t t : uncontrollable) {
    const std::vector<Arc>& inputs = monitored.net.transitions[static_cast<size_t>(t)].inputs;
    if (inputs.size() > net.transitions[static_cast<size_t>(t)].inputs.size()) return "an uncontrollable one";
  }
  const Listing before = ListMarkings(net, most), after = ListMarkings(monitored.net, most);
  if (!before.complete || !after.complete) return "not listed";
  const bool free = monitored.verdict.finding == Finding::kDeadlockFree;
  if (after.dead && free) return "a dead marking";
  if (!free && monitored.reason.empty()) return "no reason";
  for (const auto& marking : after.markings) {
    const Marking old(marking.begin(), marking.begin() + static_cast<std::ptrdiff_t>(net.places.size()));
    if (!before.markings.contains(old)) return "a marking that the old net does not reach";
    for (size_t i = 0; i < monitored.monitors.size(); ++i) {
      const MarkingBound& keeps = monitored.monitors[i].keeps;
      if (marking[net.places.size() + i] != SumAt(keeps, old).value() - keeps.least) return "a wrong sum";
    }
  }
  return "";
}

int WantedNets(int usual) {
  const char* const wanted = std::getenv("MONITOR_NETS");
  return wanted != nullptr ? std::atoi(wanted) : usual;
}

/// Processes that pass through steps, each of which holds units of a resource: a step's resource is taken
/// before that of the step before is given back.
PetriNet RandomCell(std::mt19937& random, int32_t greatestWeight) {
  const auto from1To = [&random](int32_t n) {
    return 1 + static_cast<int32_t>(random() % static_cast<uint32_t>(n));
  };
  PetriNet net;
  const int32_t resources = 1 + from1To(2), processes = 1 + from1To(2);
  const auto addPlace = [&net](int64_t tokens) {
    net.places.emplace_back().tokens = tokens;
    return static_cast<int32_t>(net.places.size()) - 1;
  };
  for (int32_t r = 0; r < resources; ++r) addPlace(greatestWeight + from1To(2) - 1);
  for (int32_t i = 0; i < processes; ++i) {
    const int32_t idle = addPlace(from1To(3));
    int32_t at = idle, held = -1;
    int64_t units = 0;
    for (int32_t step = 1 + from1To(3); step >= 0; --step) {
      Ends inputs = {{at, 1}}, outputs;
      if (held >= 0) outputs.push_back({held, units});
      at = step > 0 ? addPlace(0) : idle;
      outputs.push_back({at, 1});
      const int32_t next = (std::max(held, 0) + from1To(resources - 1)) % resources;
      held = step > 0 ? next : -1;
      units = from1To(greatestWeight);
      if (held >= 0) inputs.push_back({held, units});
      net.transitions.push_back(MakeTransition(inputs, outputs));
    }
  }
  return net;
}

TEST(Monitors, KeepWhatTheyPromiseOnRandomNets) {
  const int cells = WantedNets(30), others = WantedNets(300);
  struct Outcomes {
    int blocked = 0, proved = 0;
  };
  const auto check = [](const auto& makeNet, uint32_t seed, int nets) {
    Outcomes outcomes;
    std::mt19937 random(seed);
    for (int i = 0; i < nets && !testing::Test::HasFailure(); ++i) {
      SCOPED_TRACE("seed " + std::to_string(seed) + ", net " + std::to_string(i));
      const PetriNet net = makeNet(random, i);
      const Listing listing = ListMarkings(net, 3000);
      if (!listing.complete || !listing.dead) continue;
      const MonitoredNet monitored = AddMonitors(net, {}, kNever);
      EXPECT_EQ(FaultOf(net, monitored, 10'000), "");
      const std::vector<int32_t> one = {static_cast<int32_t>(random() % net.transitions.size())};
      const MonitoredNet held = AddMonitors(net, {.uncontrollable = one}, kNever);
      EXPECT_EQ(FaultOf(net, held, 10'000, one), "");
      ++outcomes.blocked;
      outcomes.proved += monitored.verdict.finding == Finding::kDeadlockFree ? 1 : 0;
    }
    testing::Test::RecordProperty("seed" + std::to_string(seed), std::to_string(outcomes.proved) + " of " +
                                                                     std::to_string(outcomes.blocked));
    return outcomes;
  };
  for (const int32_t weight : {1, 3}) {
    const auto cell = [weight](std::mt19937& random, int) { return RandomCell(random, weight); };
    const Outcomes outcomes = check(cell, static_cast<uint32_t>(weight), cells);
    EXPECT_GT(outcomes.blocked, cells / 10);
    EXPECT_EQ(outcomes.proved, outcomes.blocked) << "each process alone goes on for ever";
  }
  int proved = 0;
  for (const bool priorities : {false, true}) {
    const auto any = [priorities](std::mt19937& random, int i) {
      return RandomNet(random, {.inhibitors = i % 4 == 0, .priorities = priorities});
    };
    proved += check(any, priorities ? 6 : 5, others).proved;
  }
  EXPECT_GT(proved, 0) << "random nets that block seldom have another way to go";
}

PetriNet Philosophers(int32_t n) {
  PetriNet net;
  for (int32_t i = 0; i < n; ++i) {
    const int32_t think = 4 * i, half = think + 1, eat = think + 2, left = think + 3,
                  right = (left + 4) % (4 * n);
    for (const int64_t tokens : {1, 0, 0, 1}) net.places.emplace_back().tokens = tokens;
    net.transitions.push_back(MakeTransition({{think, 1}, {left, 1}}, {{half, 1}}));
    net.transitions.push_back(MakeTransition({{half, 1}, {right, 1}}, {{eat, 1}}));
    net.transitions.push_back(MakeTransition({{eat, 1}}, {{think, 1}, {left, 1}, {right, 1}}));
  }
  return net;
}

TEST(Monitors, FaultsAreSeen) {
  const PetriNet net = Philosophers(3);
  const MonitoredNet sound = AddMonitors(net, {}, kNever);
  ASSERT_EQ(sound.monitors.size(), 1U);
  EXPECT_EQ(FaultOf(net, sound, 1000), "");

  MonitoredNet oneTokenMore = sound;
  ++oneTokenMore.net.places.back().tokens;
  EXPECT_NE(FaultOf(net, oneTokenMore, 1000), "");
  MonitoredNet withoutMonitor = sound;
  withoutMonitor.net = net;
  withoutMonitor.monitors.clear();
  EXPECT_EQ(FaultOf(net, withoutMonitor, 1000), "a dead marking");
  MonitoredNet arcLost = sound;
  for (Transition& transition : arcLost.net.transitions) {
    if (transition.inputs.back().place == 12) transition.inputs.pop_back();
  }
  EXPECT_NE(FaultOf(net, arcLost, 1000), "");

  // Held up, a transition with priority would let others fire that the old net keeps back.
  PetriNet ranked = net;
  ranked.transitions[0].kind = TransitionKind::kImmediate;
  MonitoredNet holdsUp{ranked, {}, {}, {}, "planted", {}};
  holdsUp.net.places.emplace_back();
  holdsUp.net.transitions[0].inputs.emplace_back().place = 12;
  EXPECT_EQ(FaultOf(ranked, holdsUp, 1000), "a marking that the old net does not reach");
}

TEST(Monitors, KeepAllThatNeedNotBlock) {
  struct Case {
    const char* net;  ///< of bench/nets
    size_t mostMonitors;
    int32_t kept;
  };
  const Case cases[] = {{"s3ladder_3", 3, 15},   {"s3ladder_4", 6, 31},   {"s3ladder_6", 15, 127},
                        {"s3pr_3_3_11", 3, 191}, {"s3pr_4_4_3", 7, 3700}, {"s4pr_2_3_3", 3, 68},
                        {"s4pr_3_4_9", 2, 386},  {"s4pr_3_3_4", 3, 76}};
  for (const auto& [name, mostMonitors, kept] : cases) {
    SCOPED_TRACE(name);
    const NetReading reading = ReadNet(std::string(SOURCE_DIRECTORY "/bench/nets/") + name + ".PD");
    ASSERT_TRUE(reading.net) << reading.diagnostics.Text();
    const MonitoredNet monitored = AddMonitors(*reading.net, {}, kNever);
    EXPECT_EQ(monitored.verdict.finding, Finding::kDeadlockFree);
    EXPECT_LE(monitored.monitors.size(), mostMonitors);
    ASSERT_TRUE(monitored.kept);
    EXPECT_EQ(monitored.kept->before, kept);
    EXPECT_EQ(monitored.kept->kept, kept);
    EXPECT_EQ(FaultOf(*reading.net, monitored, 10'000), "");
  }
}

TEST(Monitors, KeepWithinTheirLimits) {
  const PetriNet net = Philosophers(5);
  const MonitoredNet monitored = AddMonitors(net, {}, kNever);
  EXPECT_EQ(monitored.monitors.size(), 1U);
  ASSERT_TRUE(monitored.kept);
  EXPECT_EQ(monitored.kept->before, 81);
  EXPECT_EQ(monitored.kept->kept, 81);

  // Nobody may be kept from taking the first fork: the second one is too late.
  MonitorOptions options;
  for (int32_t i = 0; i < 5; ++i) options.uncontrollable.push_back(3 * i);
  const MonitoredNet none = AddMonitors(net, options, kNever);
  EXPECT_EQ(none.verdict.finding, Finding::kDeadlock);
  EXPECT_TRUE(none.monitors.empty());
  EXPECT_EQ(none.uncontrolled.size(), 10U);
  EXPECT_EQ(none.reason, "whatever is held up, uncontrollable transitions can lead into a deadlock");
  // One who may be held up saves the others.
  options.uncontrollable.pop_back();
  const MonitoredNet one = AddMonitors(net, options, kNever);
  EXPECT_EQ(one.verdict.finding, Finding::kDeadlockFree);
  EXPECT_EQ(FaultOf(net, one, 10'000, options.uncontrollable), "");

  EXPECT_EQ(AddMonitors(net, {.most = 0}, kNever).reason, "the greatest number of monitors is reached");
  PetriNet unknown = net;
  unknown.transitions[0].enablingFunction = "unknown";
  const MonitoredNet undecided = AddMonitors(unknown, {}, kNever);
  EXPECT_EQ(undecided.verdict.finding, Finding::kUndecided);
  EXPECT_EQ(undecided.reason.rfind("enabling functions", 0), 0U) << undecided.reason;
  PetriNet ending = net;  // every way on ends when all have eaten once
  for (int32_t i = 0; i < 5; ++i) ending.transitions[static_cast<size_t>(3 * i + 2)].outputs.clear();
  EXPECT_EQ(AddMonitors(ending, {}, kNever).reason,
            "every way on from the initial marking ends in a deadlock");
}

TEST(SiphonStatus, TellsTheFourApart) {
  // Philosophers beside a ring that holds its token, and a place that nothing fills.
  PetriNet net = Philosophers(3);
  const int32_t a = 12, b = 13, empty = 14;
  for (const int64_t tokens : {1, 0, 0}) net.places.emplace_back().tokens = tokens;
  for (const auto& [from, to] : {std::pair{a, b}, {b, a}, {empty, empty}}) {
    net.transitions.push_back(MakeTransition({{from, 1}}, {{to, 1}}));
  }
  SiphonStatuses statuses(net);
  EXPECT_EQ(statuses.Of({empty}, kNever), SiphonStatus::kEmpty);
  EXPECT_EQ(statuses.Of({a, b}, kNever), SiphonStatus::kMarkedTrap);
  EXPECT_EQ(statuses.Of({2, 3, 6, 7, 10, 11}, kNever), SiphonStatus::kMayRunDry);
  // With weight 2 the ring's places are short with a token each; of 3 tokens one place keeps 2.
  net.places[a].tokens = 3;
  net.transitions[9].inputs[0].weight = net.transitions[9].outputs[0].weight = 2;
  net.transitions[10].inputs[0].weight = net.transitions[10].outputs[0].weight = 2;
  SiphonStatuses weighted(net);
  EXPECT_EQ(weighted.Of({a, b}, kNever), SiphonStatus::kNeverRunsDry);
}

}  // namespace
}  // namespace siphons
