// The classes of nets and the structural bounds, against their definitions read literally.
#include "netkit/model/net_class.h"

#include <gtest/gtest.h>

#include <map>

#include "netkit/model/structural_bounds.h"
#include "tests/nets.h"

namespace siphons {
namespace {

using Numbers = std::set<int32_t>;

Numbers PlacesOf(const std::vector<Arc>& arcs) {
  Numbers places;
  for (const Arc& arc : arcs) places.insert(arc.place);
  return places;
}

/// The definitions, one sentence each.
struct Literal {
  explicit Literal(const PetriNet& net) : places(net.places.size()) {
    for (const Transition& t : net.transitions) {
      inputs.push_back(PlacesOf(t.inputs));
      outputs.push_back(PlacesOf(t.outputs));
      ordinary = ordinary && t.inhibitors.empty() && !t.enablingFunction;
      for (const auto* arcs : {&t.inputs, &t.outputs}) {
        for (const Arc& arc : *arcs) ordinary = ordinary && arc.weight == 1 && !arc.markingDependent;
      }
    }
  }
  size_t Producers(int32_t p) const { return Having(outputs, p); }
  size_t Consumers(int32_t p) const { return Having(inputs, p); }
  static size_t Having(const std::vector<Numbers>& sets, int32_t p) {
    return static_cast<size_t>(
        std::count_if(sets.begin(), sets.end(), [p](const Numbers& s) { return s.contains(p); }));
  }
  bool StateMachine() const {
    bool is = ordinary;
    for (size_t t = 0; t < inputs.size(); ++t) is = is && inputs[t].size() == 1 && outputs[t].size() == 1;
    return is;
  }
  bool MarkedGraph() const {
    bool is = ordinary;
    for (int32_t p = 0; p < Places(); ++p) is = is && Producers(p) == 1 && Consumers(p) == 1;
    return is;
  }
  /// Transitions that share an input place have no other one, or, extended, the same ones.
  bool FreeChoice(bool extended) const {
    bool is = ordinary;
    for (size_t a = 0; a < inputs.size(); ++a) {
      for (size_t b = 0; b < a; ++b) {
        const bool share =
            std::any_of(inputs[a].begin(), inputs[a].end(), [&](int32_t p) { return inputs[b].contains(p); });
        if (share) is = is && inputs[a] == inputs[b] && (extended || inputs[a].size() == 1);
      }
    }
    return is;
  }
  /// Places have their numbers, transitions follow them.
  bool StronglyConnected() const {
    const size_t n = places + inputs.size();
    std::vector<std::vector<bool>> reaches(n, std::vector<bool>(n));
    for (size_t i = 0; i < n; ++i) reaches[i][i] = true;
    for (size_t t = 0; t < inputs.size(); ++t) {
      for (const int32_t p : inputs[t]) reaches[static_cast<size_t>(p)][places + t] = true;
      for (const int32_t p : outputs[t]) reaches[places + t][static_cast<size_t>(p)] = true;
    }
    for (size_t k = 0; k < n; ++k) {
      for (size_t i = 0; i < n; ++i) {
        for (size_t j = 0; j < n; ++j) reaches[i][j] = reaches[i][j] || (reaches[i][k] && reaches[k][j]);
      }
    }
    return std::all_of(reaches.begin(), reaches.end(),
                       [](const auto& row) { return std::find(row.begin(), row.end(), false) == row.end(); });
  }
  int32_t Places() const { return static_cast<int32_t>(places); }

  size_t places;
  std::vector<Numbers> inputs, outputs;
  bool ordinary = true;
};

TEST(NetClass, IsWhatTheDefinitionsSay) {
  std::map<std::string, int> met;
  for (uint32_t seed = 0; seed < 4000; ++seed) {
    std::mt19937 random(seed);
    RandomFeatures features;
    features.weights = features.inhibitors = features.unknown = seed % 8 == 0;
    PetriNet net = RandomNet(random, features);
    net.transitions.resize(std::min<size_t>(net.transitions.size(), 1 + seed % 4));
    const Literal literal(net);
    const NetStructure structure = StructureOf(net);
    const auto check = [&](const char* what, bool found, bool defined) {
      EXPECT_EQ(found, defined) << what << ", seed " << seed;
      met[what] += defined ? 1 : 0;
    };
    check("ordinary", structure.ordinary, literal.ordinary);
    check("state machine", structure.stateMachine, literal.StateMachine());
    check("marked graph", structure.markedGraph, literal.MarkedGraph());
    check("free choice", structure.freeChoice, literal.FreeChoice(false));
    check("extended free choice", structure.extendedFreeChoice, literal.FreeChoice(true));
    check("strongly connected", structure.stronglyConnected, literal.StronglyConnected());
    for (int32_t p = 0; p < literal.Places(); ++p) {
      const auto lists = [p](const std::vector<int32_t>& list) {
        return std::count(list.begin(), list.end(), p) > 0;
      };
      check("source place", lists(structure.sourcePlaces), literal.Producers(p) == 0);
      check("sink place", lists(structure.sinkPlaces), literal.Consumers(p) == 0);
    }
  }
  for (const auto& [what, count] : met) EXPECT_GT(count, 5) << what << " was hardly met";
}

TEST(StructuralBounds, HoldInReachableMarkings) {
  int bounded = 0, unbounded = 0;
  for (uint32_t seed = 0; seed < 60; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    PetriNet net = RandomNet(random, {.inhibitors = false});
    net.transitions.resize(std::min<size_t>(net.transitions.size(), 3));
    const StructuralBounds found = BoundsOf(net, [] { return false; });
    ASSERT_TRUE(found.complete);
    const Listing reachable = ListMarkings(net, 500);
    for (size_t p = 0; p < net.places.size(); ++p) {
      ++(found.bounds[p] ? bounded : unbounded);
      for (const std::vector<int64_t>& marking : reachable.markings) {
        EXPECT_TRUE(!found.bounds[p] || marking[p] <= *found.bounds[p]) << "place " << p;
      }
    }
  }
  EXPECT_GT(bounded, 50);
  EXPECT_GT(unbounded, 50);
}

// The bounds of examples/cell.PD, the least that there are, are in netkit/commands.md.
TEST(StructuralBounds, KnowWhatDependsOnTheMarking) {
  PetriNet net = MakeNet({5, 0, 0}, {MakeTransition({{0, 2}}, {{1, 3}, {2, 1}})});
  net.transitions[0].outputs[1].markingDependent = true;
  const StructuralBounds found = BoundsOf(net, [] { return false; });
  EXPECT_EQ(found.bounds, (std::vector<std::optional<int64_t>>{5, 7, std::nullopt})) << "5 / 2 * 3 is 7.5";
  EXPECT_FALSE(BoundsOf(net, [] { return true; }).complete);
}

}  // namespace
}  // namespace siphons
