// The SAT engine against brute force and against the cone method: siphons, traps, queries, and Commoner's
// condition.
#include "netkit/siphons/minimal_siphons.h"

#include <gtest/gtest.h>

#include "netkit/siphons/commoner.h"
#include "netkit/siphons/siphon_within.h"
#include "solver/sharedVars.h"
#include "tests/brute_force.h"
#include "tests/reference/program.h"

namespace siphons {
namespace {

/// A random net and its arcs, 1 where there is one.
struct RandomNet {
  Rows O, I;
  ArcSets arcs;

  RandomNet(uint32_t seed, uint32_t mostPlaces) {
    std::mt19937 random(seed);
    const size_t placeCount = 1 + Below(random, mostPlaces), transitionCount = 1 + Below(random, 10);
    const uint32_t rarity = 2 + Below(random, 4);
    for (Rows* rows : {&O, &I}) {
      *rows = RandomRows(random, transitionCount, placeCount, 0, static_cast<int32_t>(rarity));
      for (Row& row : *rows)
        std::transform(row.begin(), row.end(), row.begin(), [](int32_t x) { return x == 1; });
    }
    arcs.placeCount = static_cast<int32_t>(placeCount);
    for (size_t t = 0; t < transitionCount; ++t) arcs.transitions.push_back({Numbers(I[t]), Numbers(O[t])});
  }

 private:
  static PlaceList Numbers(const Row& row) {
    PlaceList numbers;
    for (size_t p = 0; p < row.size(); ++p) {
      if (row[p] != 0) numbers.push_back(static_cast<int32_t>(p));
    }
    return numbers;
  }
};

PlaceSet SetOf(std::span<const int32_t> places) {
  PlaceSet set = 0;
  for (const int32_t p : places) set |= PlaceSet{1} << p;
  return set;
}

PlaceList ListOf(PlaceSet set) {
  PlaceList places;
  for (int32_t p = 0; p < 32; ++p) {
    if ((set >> p & 1) != 0) places.push_back(p);
  }
  return places;
}

PlaceSet RandomSet(std::mt19937& random) {
  return static_cast<PlaceSet>(random());
}

constexpr auto kNever = [] { return false; };

std::set<PlaceSet> Enumerated(const ArcSets& arcs, const SiphonQuery& query) {
  std::set<PlaceSet> found;
  const bool complete = ForEachMinimalSiphon(
      arcs, query,
      [&found](std::span<const int32_t> siphon) {
        EXPECT_TRUE(std::is_sorted(siphon.begin(), siphon.end()));
        EXPECT_TRUE(found.insert(SetOf(siphon)).second) << "a siphon comes twice";
        return true;
      },
      kNever);
  EXPECT_TRUE(complete);
  return found;
}

TEST(MinimalSiphons, EqualBruteForceAndTrapsToo) {
  int queriesWithAnswers = 0;
  for (uint32_t seed = 0; seed < 600; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    const RandomNet net(seed, 12);
    const PlaceList all = AllPlaces(net.arcs);
    const std::set<PlaceSet> siphons = MinimalSiphons(net.O, net.I);
    EXPECT_EQ(Enumerated(net.arcs, {all, {}}), siphons);
    EXPECT_EQ(Enumerated(Reversed(net.arcs), {all, {}}), MinimalSiphons(net.I, net.O));

    std::mt19937 random(seed);
    const PlaceSet everything = SetOf(all);
    const PlaceSet within = Below(random, 2) == 0 ? everything : RandomSet(random) & everything;
    PlaceSet containing = PlaceSet{1} << Below(random, static_cast<uint32_t>(all.size()));
    if (Below(random, 2) == 0) containing |= PlaceSet{1} << Below(random, static_cast<uint32_t>(all.size()));
    for (const PlaceSet held : {PlaceSet{0}, containing}) {
      std::set<PlaceSet> wanted;
      for (const PlaceSet s : siphons) {
        if ((s & ~within) == 0 && (held & ~s) == 0) wanted.insert(s);
      }
      EXPECT_EQ(Enumerated(net.arcs, {ListOf(within), ListOf(held)}), wanted);
      queriesWithAnswers += wanted.empty() ? 0 : 1;
    }
  }
  EXPECT_GT(queriesWithAnswers, 300);
}

TEST(MinimalSiphons, EqualThoseOfTheCone) {
  int compared = 0;
  for (uint32_t seed = 1000; seed < 1400; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    const RandomNet net(seed, 16);
    const reference::Answer cone = reference::SolveNetByProgram({net.O, net.I});
    std::set<PlaceSet> siphons;
    for (const Row& row : cone.supports) {
      PlaceSet set = 0;
      for (size_t p = 0; p < row.size(); ++p) set |= static_cast<PlaceSet>(row[p]) << p;
      siphons.insert(set);
    }
    if (siphons.empty() || ArithmeticWrapped) continue;  // one support alone is dropped there
    EXPECT_EQ(Enumerated(net.arcs, {AllPlaces(net.arcs), {}}), siphons);
    ++compared;
  }
  EXPECT_GT(compared, 200);
}

/// Whether every transition that puts tokens into the set takes some from it.
bool IsSiphon(const ArcSets& arcs, PlaceSet set) {
  return std::all_of(arcs.transitions.begin(), arcs.transitions.end(), [set](const auto& t) {
    return (SetOf(t.outputs) & set) == 0 || (SetOf(t.inputs) & set) != 0;
  });
}

TEST(Commoner, EqualsTheConditionOverAllSiphonsAndTraps) {
  int violated = 0, trapsUnmarked = 0;
  for (uint32_t seed = 0; seed < 300; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    const RandomNet net(seed, 8);
    const ArcSets reversed = Reversed(net.arcs);
    std::mt19937 random(seed);
    PlaceSet markedSet = RandomSet(random);
    markedSet &= RandomSet(random);  // a quarter of the places
    std::vector<bool> marked;
    for (int32_t p = 0; p < net.arcs.placeCount; ++p) marked.push_back((markedSet >> p & 1) != 0);
    const auto greatestTrap = [&](PlaceSet siphon) {
      PlaceSet greatest = 0;
      for (PlaceSet s = siphon; s != 0; s = (s - 1) & siphon) greatest |= IsSiphon(reversed, s) ? s : 0;
      return greatest;
    };
    bool holds = true;
    for (PlaceSet s = 1; s < PlaceSet{1} << net.arcs.placeCount; ++s)
      holds = holds && (!IsSiphon(net.arcs, s) || (greatestTrap(s) & markedSet) != 0);

    const CommonerResult result = CheckCommoner(
        net.arcs, marked, [] {}, kNever);
    EXPECT_TRUE(result.complete);
    EXPECT_EQ(result.violations.empty(), holds);
    const std::set<PlaceSet> minimal = MinimalSiphons(net.O, net.I);
    EXPECT_EQ(result.siphons, static_cast<int64_t>(minimal.size()));
    const auto violates = [&](PlaceSet s) { return (greatestTrap(s) & markedSet) == 0; };
    EXPECT_EQ(result.violations.size(), std::count_if(minimal.begin(), minimal.end(), violates));
    for (const CommonerViolation& violation : result.violations) {
      EXPECT_TRUE(violates(SetOf(violation.siphon)));
      EXPECT_EQ(SetOf(violation.trap), greatestTrap(SetOf(violation.siphon)));
      trapsUnmarked += violation.trap.empty() ? 0 : 1;
    }
    violated += holds ? 0 : 1;
  }
  EXPECT_GT(violated, 50);
  EXPECT_LT(violated, 290);
  EXPECT_GT(trapsUnmarked, 10);
}

TEST(MinimalSiphons, EndEarlyWhenAsked) {
  const RandomNet net(3, 12);
  const auto take = [](std::span<const int32_t>) { return false; };
  ASSERT_FALSE(MinimalSiphons(net.O, net.I).empty());
  EXPECT_FALSE(ForEachMinimalSiphon(net.arcs, {AllPlaces(net.arcs), {}}, take, kNever));
  EXPECT_FALSE(ForEachMinimalSiphon(net.arcs, {AllPlaces(net.arcs), {}}, take, [] { return true; }));
  EXPECT_TRUE(ForEachMinimalSiphon(net.arcs, {{}, {}}, take, kNever)) << "no places, no siphon";
}

TEST(SiphonWithin, IsTheGreatestAndShrinksAroundKeptPlaces) {
  for (uint32_t seed = 0; seed < 300; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    const RandomNet net(seed, 8);
    SiphonWithin siphon(net.arcs);
    std::mt19937 random(seed);
    const auto greatest = [&net](PlaceSet within) {
      PlaceSet result = 0;
      for (PlaceSet s = within; s != 0; s = (s - 1) & within) result |= IsSiphon(net.arcs, s) ? s : 0;
      return result;
    };
    for (int round = 0; round < 3; ++round) {
      const PlaceSet within = RandomSet(random) & SetOf(AllPlaces(net.arcs));
      siphon.Assign(ListOf(within));
      PlaceSet now = greatest(within), kept = 0;
      PlaceList gone;
      EXPECT_EQ(SetOf(siphon.Places()), now);
      for (const int32_t p : ListOf(within)) {
        if (!siphon.Holds(p)) continue;
        const PlaceSet without = greatest(now & ~(PlaceSet{1} << p));
        const bool goes = without != 0 && (kept & ~without) == 0;
        EXPECT_EQ(siphon.TryRemove(p, gone), goes);
        if (goes) {
          now = without;
        } else {
          kept |= PlaceSet{1} << p;
          siphon.Keep(p);
        }
        EXPECT_EQ(SetOf(siphon.Places()), now);
      }
    }
  }
}

}  // namespace
}  // namespace siphons
