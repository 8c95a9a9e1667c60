// The search for minimal siphons against brute force: siphons, traps, queries, threads, parts.
#include "netkit/siphons/minimal_siphons.h"

#include <gtest/gtest.h>

#include <bit>

#include "netkit/siphons/dominators.h"
#include "netkit/siphons/job_order.h"
#include "netkit/siphons/job_split.h"
#include "netkit/siphons/siphon_parts.h"
#include "netkit/siphons/siphon_within.h"
#include "netkit/siphons/smallest_siphons.h"
#include "tests/brute_force.h"

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
    O = I = Rows(transitionCount, Row(placeCount));
    arcs = {static_cast<int32_t>(placeCount), std::vector<ArcSets::Transition>(transitionCount)};
    for (size_t t = 0; t < transitionCount; ++t) {
      for (const auto& [row, list] :
           {std::pair{&O[t], &arcs.transitions[t].outputs}, {&I[t], &arcs.transitions[t].inputs}}) {
        for (size_t p = 0; p < placeCount; ++p) {
          if (Below(random, rarity + 1) != 1) continue;
          (*row)[p] = 1;
          list->push_back(static_cast<int32_t>(p));
        }
      }
    }
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

/// What is found with a query on some threads, each siphon once, in the order in which they come.
std::vector<PlaceList> InOrder(const ArcSets& arcs, const SiphonQuery& query, int32_t threads) {
  std::vector<PlaceList> found;
  const auto take = [&found](std::span<const int32_t> siphon) {
    found.emplace_back(siphon.begin(), siphon.end());
    return true;
  };
  EXPECT_TRUE(EnumerateMinimalSiphons(arcs, query, threads, take, kNever));
  return found;
}

/// Places beside and below each other lead to each other around a torus, two to a cell.
ArcSets Torus(int32_t side) {
  ArcSets arcs{2 * side * side, {}};
  const auto across = [side](int32_t row, int32_t column) { return row * side + column % side; };
  const auto down = [side](int32_t row, int32_t column) { return side * side + row % side * side + column; };
  for (int32_t row = 0; row < side; ++row) {
    for (int32_t column = 0; column < side; ++column)
      arcs.transitions.push_back(
          {{across(row, column), down(row, column)}, {across(row, column + 1), down(row + 1, column)}});
  }
  for (ArcSets::Transition& transition : arcs.transitions)
    std::sort(transition.outputs.begin(), transition.outputs.end());
  return arcs;
}

TEST(MinimalSiphons, AreTheSameOnThreadsAndInParts) {
  const ArcSets torus = Torus(5);
  const std::vector<PlaceList> all = InOrder(torus, {AllPlaces(torus), {}}, 1);
  EXPECT_EQ(all.size(), 5665u);
  EXPECT_EQ(std::set<PlaceList>(all.begin(), all.end()).size(), all.size());
  EXPECT_EQ(InOrder(torus, {AllPlaces(torus), {}}, 3), all);

  ArcSets small = Torus(4);
  small.placeCount += 3;  // each a siphon alone
  const std::vector<PlaceList> siphons = InOrder(small, {AllPlaces(small), {}}, 1);
  std::set<PlaceList> together;
  size_t greatest = 0;
  for (int32_t part = 1; part <= 4; ++part) {
    const SiphonQuery query{.within = AllPlaces(small), .containing = {}, .part = part, .parts = 4};
    const std::vector<PlaceList> mine = InOrder(small, query, part % 3);
    greatest = std::max(greatest, mine.size());
    for (const PlaceList& siphon : mine) EXPECT_TRUE(together.insert(siphon).second) << "in two parts";
  }
  EXPECT_EQ(together, std::set<PlaceList>(siphons.begin(), siphons.end()));
  EXPECT_LT(greatest, siphons.size() / 2);
}

TEST(MinimalSiphons, TheSmallestAreTheFirstOfAll) {
  const ArcSets torus = Torus(4);
  for (uint32_t seed = 3000; seed < 3060; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    const ArcSets arcs = seed == 3000 ? torus : RandomNet(seed, 16).arcs;
    std::vector<PlaceList> all = InOrder(arcs, {AllPlaces(arcs), {}}, 1);
    std::sort(all.begin(), all.end(), ShorterOrEarlier);
    for (const size_t count : {size_t{1}, size_t{3}, std::max<size_t>(all.size(), 1), all.size() + 1}) {
      const SmallestSiphons smallest =
          FindSmallestSiphons(arcs, {AllPlaces(arcs), {}}, 1 + static_cast<int32_t>(seed % 2), count, kNever);
      const size_t wanted = std::min(count, all.size());
      EXPECT_EQ(smallest.siphons,
                std::vector<PlaceList>(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(wanted)));
      EXPECT_EQ(smallest.areAll, count >= all.size());
      EXPECT_FALSE(smallest.stopped);
    }
  }
  int asked = 0;  // what is found before there is time to prove it smallest
  const SmallestSiphons early =
      FindSmallestSiphons(torus, {AllPlaces(torus), {}}, 1, 2, [&asked] { return ++asked > 5; });
  EXPECT_TRUE(early.stopped);
  EXPECT_EQ(early.siphons.size(), 2U);
}

// A ring of choices between one place and two: 2^40 siphons, which nobody can look at.
TEST(MinimalSiphons, TheSmallestAreFoundAmongTooMany) {
  constexpr int32_t kStages = 40;
  ArcSets arcs{4 * kStages, {}};
  PlaceList shortest;
  for (int32_t start = 0; start < arcs.placeCount; start += 4) {
    const int32_t next = (start + 4) % arcs.placeCount;
    arcs.transitions.push_back({{start}, {start + 1, start + 2}});
    arcs.transitions.push_back({{start + 2}, {start + 3}});
    arcs.transitions.push_back({{start + 1, start + 3}, {next}});
    shortest.insert(shortest.end(), {start, start + 1});
  }
  std::vector<PlaceList> wanted{shortest};
  for (int32_t start = arcs.placeCount - 4; start >= 0; start -= 4) {
    PlaceList longer = shortest;
    const auto choice = std::find(longer.begin(), longer.end(), start + 1);
    longer.insert(longer.erase(choice), {start + 2, start + 3});
    wanted.push_back(longer);
  }
  for (const int32_t threads : {1, 2})
    EXPECT_EQ(FindSmallestSiphons(arcs, {AllPlaces(arcs), {}}, threads, wanted.size(), kNever).siphons,
              wanted);
}

/// The jobs of all minimal siphons of two places or more.
std::vector<SiphonJob> WholeJobs(const ArcSets& net) {
  const ArcSets arcs = WithoutDominatedArcs(net, AllPlaces(net));
  PlaceList others;  // a place that is a siphon alone is in no other minimal one
  for (const int32_t p : AllPlaces(net)) {
    const bool isAlone = std::none_of(arcs.transitions.begin(), arcs.transitions.end(), [p](const auto& t) {
      return std::binary_search(t.outputs.begin(), t.outputs.end(), p);
    });
    if (!isAlone) others.push_back(p);
  }
  std::vector<SiphonJob> jobs;
  for (Component& component : ComponentsOf(arcs, SiphonParts(arcs).Split(others)))
    jobs.push_back(WholeJob(std::move(component)));
  return jobs;
}

TEST(Dominators, AreTheOnesWithoutWhichThereIsNoPath) {
  int dominated = 0;
  for (uint32_t seed = 4000; seed < 5000; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    for (const SiphonJob& job : WholeJobs(RandomNet(seed, 16).arcs)) {
      const JobArcs arcs(job);
      const Variable places = static_cast<Variable>(job.places.size()), root = seed % places;
      const Dominators dominators(arcs, root);
      for (Variable p = 0; p < places; ++p) {
        std::vector<Variable> reached;  // what leads to the root without p
        if (p != root) reached.push_back(root);
        for (size_t next = 0; next < reached.size(); ++next) {
          for (const uint32_t t : arcs.producers[reached[next]]) {
            for (const Variable q : arcs.transitions[t].inputs) {
              if (q != p && std::find(reached.begin(), reached.end(), q) == reached.end())
                reached.push_back(q);
            }
          }
        }
        for (Variable q = 0; q < places; ++q) {
          const bool leads = std::find(reached.begin(), reached.end(), q) != reached.end();
          EXPECT_EQ(dominators.Dominates(p, q), !leads) << p << " and " << q << ", root " << root;
          dominated += leads || p == q || p == root ? 0 : 1;
        }
      }
    }
  }
  EXPECT_GT(dominated, 300);
}

// Jobs that are split after every few answers, so that small nets are cut to the last place.
TEST(MinimalSiphons, AreThoseOfJobsSplitToTheLast) {
  int splits = 0;
  for (uint32_t seed = 2000; seed < 2300; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    const RandomNet net(seed, 14);
    std::set<PlaceSet> wanted;
    for (const PlaceSet siphon : MinimalSiphons(net.O, net.I)) {
      if (std::popcount(siphon) > 1) wanted.insert(siphon);
    }
    std::set<PlaceSet> found;
    const auto take = [&](const PlaceList& siphon) {
      EXPECT_TRUE(found.insert(SetOf(siphon)).second) << "a siphon comes twice";
      return true;
    };
    JobLimits limits;
    limits.answers = 1 + seed % 3;
    limits.conflicts = 2;
    limits.steps = 10;
    const std::atomic<int32_t> mostPlaces = 14;
    if (seed % 5 < 2) limits.mostPlaces = &mostPlaces;  // none is greater
    limits.smallestFirst = seed % 5 == 0;
    EXPECT_TRUE(RunJobs(WholeJobs(net.arcs), limits, 1 + static_cast<int32_t>(seed % 2), take, kNever));
    EXPECT_EQ(found, wanted);
    splits += wanted.size() > limits.answers ? 1 : 0;
  }
  EXPECT_GT(splits, 30);
}

/// Whether every transition that puts tokens into the set takes some from it.
bool IsSiphon(const ArcSets& arcs, PlaceSet set) {
  return std::all_of(arcs.transitions.begin(), arcs.transitions.end(), [set](const auto& t) {
    return (SetOf(t.outputs) & set) == 0 || (SetOf(t.inputs) & set) != 0;
  });
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
      for (const int32_t p : siphon.Places()) {
        EXPECT_FALSE(siphon.TryRemove(p, gone)) << "a kept place goes";
        EXPECT_EQ(SetOf(siphon.Places()), now);
      }
      siphon.Assign(ListOf(within));
      for (const int32_t p : siphon.Places()) {
        siphon.KeepNothing();
        siphon.Keep(p);
        EXPECT_FALSE(siphon.TryRemove(p, gone)) << "a kept place goes, which nothing else needs";
      }
    }
  }
}

}  // namespace
}  // namespace siphons
