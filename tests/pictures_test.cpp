// Pictures of nets: what a picture shows must be true of the net, whatever the net's file says about
// positions and whatever its names are. The browser looks at the page in tests/page/.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "netkit/formats/dot_writer.h"
#include "netkit/formats/drawing.h"
#include "netkit/formats/layout.h"
#include "netkit/formats/markup_text.h"
#include "netkit/formats/picture.h"
#include "netkit/formats/svg_writer.h"

namespace siphons {
namespace {

Place PlaceAt(const std::string& name, int64_t tokens, double x, double y) {
  Place place;
  place.name = name;
  place.tokens = tokens;
  place.position = Point{x, y};
  return place;
}

Arc ArcTo(int32_t place, int64_t weight = 1) {
  Arc arc;
  arc.place = place;
  arc.weight = weight;
  return arc;
}

/// Two places and a timed transition between them, which tests a third place.
PetriNet SmallNet() {
  PetriNet net;
  net.name = "small";
  net.places = {PlaceAt("from", 3, 0, 0), PlaceAt("to", 0, 200, 0), PlaceAt("free", 12, 100, 80)};
  Transition& move = net.transitions.emplace_back();
  move.name = "move";
  move.position = Point{100, 0};
  move.inputs = {ArcTo(0, 2), ArcTo(2)};
  move.outputs = {ArcTo(1), ArcTo(2)};
  move.inhibitors = {ArcTo(1, 7)};
  return net;
}

size_t CountOf(const std::string& part, const std::string& text) {
  size_t count = 0;
  for (size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++count;
  return count;
}

double Distance(Point a, Point b) {
  return std::hypot(a.x - b.x, a.y - b.y);
}

TEST(Pictures, NamesAreText) {
  EXPECT_EQ(MarkupText("a<b>&\"c\""), "a&lt;b&gt;&amp;&quot;c&quot;");
  const std::string good = "\u00e9\u20ac\U0001F600";
  EXPECT_EQ(MarkupText(good), good);
  const std::string wrong = "\xEF\xBF\xBD";
  EXPECT_EQ(MarkupText("a\x01z"), "a" + wrong + "z");
  // A lone byte, a form that is too long, a surrogate, a code point that is too great, U+FFFF, a cut end.
  EXPECT_EQ(MarkupText("\xFFz"), wrong + "z");
  EXPECT_EQ(MarkupText("\xC0\xAF"), wrong + wrong);
  EXPECT_EQ(MarkupText("\xE0\x80\xAF"), wrong + wrong + wrong);
  EXPECT_EQ(MarkupText("\xED\xA0\x80"), wrong + wrong + wrong);
  EXPECT_EQ(MarkupText("\xF4\x90\x80\x80"), wrong + wrong + wrong + wrong);
  EXPECT_EQ(MarkupText("\xEF\xBF\xBF"), wrong + wrong + wrong);
  EXPECT_EQ(MarkupText("\xE2\x82"), wrong + wrong);
}

TEST(Pictures, PositionsAreTakenWhereTheyMakeAPicture) {
  EXPECT_TRUE(HasSensiblePositions(SmallNet()));
  EXPECT_FALSE(HasSensiblePositions(PetriNet{}));
  const auto sensible = [](Point third) {
    PetriNet net = SmallNet();
    net.places[2].position = third;
    return HasSensiblePositions(net);
  };
  EXPECT_TRUE(sensible({101, 0}));
  EXPECT_FALSE(sensible({100, 0}));     // on top of the transition
  EXPECT_FALSE(sensible({100.01, 0}));  // so near that the picture would become as large as a house
  EXPECT_FALSE(sensible({std::numeric_limits<double>::infinity(), 0}));
  EXPECT_FALSE(sensible({0, std::numeric_limits<double>::quiet_NaN()}));
  PetriNet net = SmallNet();
  net.transitions[0].position.reset();
  EXPECT_FALSE(HasSensiblePositions(net));
}

TEST(Pictures, NeighboursKeepADistanceAndArcsEndAtBorders) {
  std::mt19937 random(16);
  for (int32_t round = 0; round < 200; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    PetriNet net = SmallNet();
    std::uniform_real_distribution<double> coordinate(-300, 300);
    for (Place& place : net.places) place.position = Point{coordinate(random), coordinate(random)};
    if (!HasSensiblePositions(net)) continue;
    const Drawing drawing = DrawingByPositions(net);
    std::vector<DrawnNode> nodes = drawing.places;
    nodes.insert(nodes.end(), drawing.transitions.begin(), drawing.transitions.end());
    for (size_t i = 0; i < nodes.size(); ++i) {
      EXPECT_GE(nodes[i].centre.x, 0);
      EXPECT_LE(nodes[i].centre.x, drawing.width);
      EXPECT_LE(nodes[i].centre.y, drawing.height);
      for (size_t j = 0; j < i; ++j) EXPECT_GT(Distance(nodes[i].centre, nodes[j].centre), 63);
    }
    ASSERT_EQ(drawing.arcs.size(), 5U);
    for (const DrawnArc& arc : drawing.arcs) {
      const bool fromPlace = arc.kind != DrawnArcKind::kOutput;
      const Point atPlace = fromPlace ? arc.line.front() : arc.line.back();
      EXPECT_NEAR(Distance(atPlace, drawing.places[static_cast<size_t>(arc.place)].centre), kPlaceRadius,
                  1e-6);
      const Point atBox = fromPlace ? arc.line.back() : arc.line.front();
      const Point box = drawing.transitions[0].centre;
      const bool onSide = std::abs(std::abs(atBox.x - box.x) - kBoxLength / 2) < 1e-6 ||
                          std::abs(std::abs(atBox.y - box.y) - kBoxThickness / 2) < 1e-6;
      EXPECT_TRUE(onSide);
    }
    // The two arcs of the tested place do not hide each other.
    EXPECT_EQ(drawing.arcs[1].line.size(), 3U);
    EXPECT_GT(Distance(drawing.arcs[1].line[1], drawing.arcs[3].line[1]), 1);
  }
}

TEST(Pictures, DrainingTransitionsTakeAndGiveNothingBack) {
  const PetriNet net = SmallNet();
  EXPECT_EQ(DrainingTransitions(net, {0}), std::vector<int32_t>{0});
  EXPECT_TRUE(DrainingTransitions(net, {2}).empty());
  EXPECT_TRUE(DrainingTransitions(net, {0, 1}).empty());
  EXPECT_TRUE(DrainingTransitions(net, {1}).empty());  // an inhibitor arc takes nothing
}

TEST(Pictures, SvgShowsWhatTheNetHas) {
  PetriNet net = SmallNet();
  net.places[1].name = "<to>";
  PictureOptions options;
  options.highlights = {{"siphon-1", {0}}, {"siphon-2", {0, 1}}};
  options.monitors = {false, false, true};
  const std::string svg = SvgOf(net, DrawingByPositions(net), options);
  EXPECT_NE(
      svg.find("<g class=\"place marked siphon siphon-1 siphon-2\" id=\"p0\"><title>from: 3 tokens</title>"),
      std::string::npos);
  EXPECT_NE(svg.find("<g class=\"place siphon siphon-2\" id=\"p1\"><title>&lt;to&gt;: 0 tokens</title>"),
            std::string::npos);
  EXPECT_NE(svg.find("<g class=\"place marked monitor\" id=\"p2\">"), std::string::npos);
  EXPECT_NE(svg.find("<g class=\"transition exponential drains\" id=\"t0\">"), std::string::npos);
  EXPECT_EQ(CountOf("r=\"2.8\"", svg), 3U);  // three dots; twelve tokens are a number
  EXPECT_NE(svg.find(">12</text>"), std::string::npos);
  EXPECT_EQ(CountOf("class=\"arc input\"", svg), 2U);
  EXPECT_EQ(CountOf("class=\"arc output\"", svg), 2U);
  EXPECT_EQ(CountOf("class=\"arc inhibitor\"", svg), 1U);
  EXPECT_EQ(CountOf("r=\"3.5\"", svg), 1U);
  EXPECT_NE(svg.find(">2</text></g>"), std::string::npos);
  EXPECT_NE(svg.find(">7</text></g>"), std::string::npos);
  EXPECT_EQ(svg.find("<script"), std::string::npos);
  EXPECT_EQ(svg.find("style=\""), std::string::npos);
}

TEST(Pictures, DotQuotesNames) {
  PetriNet net = SmallNet();
  net.places[0].name = "a\"b\\n";
  const std::string dot = DotOf(net, {{{"siphon-1", {0}}}, {}});
  EXPECT_NE(dot.find("xlabel=\"a\\\"b\\\\n\", style=filled"), std::string::npos);
  EXPECT_NE(dot.find("p0 -> t0 [label=\"2\"];"), std::string::npos);
  EXPECT_NE(dot.find("t0 -> p1;"), std::string::npos);
  EXPECT_NE(dot.find("p1 -> t0 [arrowhead=odot, label=\"7\"];"), std::string::npos);
}

TEST(Pictures, LayoutPlacesEveryNodeOnItsOwn) {
  PetriNet net = SmallNet();
  for (Place& place : net.places) place.position.reset();
  const std::optional<Drawing> drawing = LaidOut(net);
  ASSERT_EQ(drawing.has_value(), CanLayOut());
  if (!drawing) GTEST_SKIP() << "this build has no layout";
  std::vector<DrawnNode> nodes = drawing->places;
  nodes.insert(nodes.end(), drawing->transitions.begin(), drawing->transitions.end());
  for (size_t i = 0; i < nodes.size(); ++i) {
    for (size_t j = 0; j < i; ++j) EXPECT_GT(Distance(nodes[i].centre, nodes[j].centre), 2 * kPlaceRadius);
  }
  for (const DrawnArc& arc : drawing->arcs) {
    ASSERT_TRUE(arc.curved);
    EXPECT_EQ(arc.line.size() % 3, 1U);
    const Point atPlace = arc.kind == DrawnArcKind::kOutput ? arc.line.back() : arc.line.front();
    EXPECT_NEAR(Distance(atPlace, drawing->places[static_cast<size_t>(arc.place)].centre), kPlaceRadius, 1);
  }
}

}  // namespace
}  // namespace siphons
