// Pictures of nets: what a picture shows must be true of the net, whatever the net's file says about
// positions and whatever its names are. The browser looks at the page in tests/page/.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "netkit/formats/dot_writer.h"
#include "netkit/formats/drawing.h"
#include "netkit/formats/layout.h"
#include "netkit/formats/markup_text.h"
#include "netkit/formats/picture.h"
#include "netkit/formats/svg_writer.h"
#include "tests/nets.h"

namespace siphons {
namespace {

/// Two places and a timed transition between them, which tests a third place.
PetriNet SmallNet() {
  PetriNet net = MakeNet({3, 0, 12}, {MakeTransition({{0, 2}, {2, 1}}, {{1, 1}, {2, 1}})});
  net.name = "small";
  const std::pair<const char*, Point> places[] = {{"from", {0, 0}}, {"to", {200, 0}}, {"free", {100, 80}}};
  for (size_t p = 0; p < net.places.size(); ++p)
    std::tie(net.places[p].name, net.places[p].position) = places[p];
  Transition& move = net.transitions[0];
  move.name = "move";
  move.position = Point{100, 0};
  move.inhibitors = MakeArcs({{1, 7}});
  return net;
}

size_t CountOf(const std::string& part, const std::string& text) {
  size_t count = 0;
  for (size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++count;
  return count;
}

/// Expects that the text holds every part.
void ExpectParts(const std::string& text, const std::vector<std::string>& parts) {
  for (const std::string& part : parts) EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
}

double Distance(Point a, Point b) {
  return std::hypot(a.x - b.x, a.y - b.y);
}

void ExpectApart(const Drawing& drawing, double least) {
  std::vector<DrawnNode> nodes = drawing.places;
  nodes.insert(nodes.end(), drawing.transitions.begin(), drawing.transitions.end());
  for (size_t i = 0; i < nodes.size(); ++i) {
    const Point centre = nodes[i].centre;
    EXPECT_TRUE(centre.x >= 0 && centre.x <= drawing.width && centre.y <= drawing.height);
    for (size_t j = 0; j < i; ++j) EXPECT_GT(Distance(centre, nodes[j].centre), least);
  }
}

TEST(Pictures, NamesAreText) {
  const std::string good = "\u00e9\u20ac\U0001F600", x = "\xEF\xBF\xBD";
  const std::pair<std::string, std::string> cases[] = {
      {"a<b>&\"c\"", "a&lt;b&gt;&amp;&quot;c&quot;"},
      {good, good},
      {"a\x01z", "a" + x + "z"},
      // A lone byte, a form that is too long, a surrogate, a code point that is too great, U+FFFF, a cut end.
      {"\xFFz", x + "z"},
      {"\xC0\xAF", x + x},
      {"\xE0\x80\xAF", x + x + x},
      {"\xED\xA0\x80", x + x + x},
      {"\xF4\x90\x80\x80", x + x + x + x},
      {"\xEF\xBF\xBF", x + x + x},
      {"\xE2\x82", x + x}};
  for (const auto& [name, markup] : cases) EXPECT_EQ(MarkupText(name), markup);
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
    ExpectApart(drawing, 63);
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
  ExpectParts(
      svg,
      {R"(<g class="place marked siphon siphon-1 siphon-2" id="p0"><title>from: 3 tokens</title>)",
       R"(<g class="place siphon siphon-2" id="p1"><title>&lt;to&gt;: 0 tokens</title>)",
       R"(<g class="place marked monitor" id="p2">)", R"(<g class="transition exponential drains" id="t0">)",
       ">12</text>", ">2</text></g>", ">7</text></g>"});
  const std::pair<const char*, size_t> counts[] = {{R"(r="2.8")", 3},  // dots; twelve tokens are a number
                                                   {R"(class="arc input")", 2},
                                                   {R"(class="arc output")", 2},
                                                   {R"(class="arc inhibitor")", 1},
                                                   {R"(r="3.5")", 1},
                                                   {"url(#arrow)", 4},
                                                   {"<script", 0},
                                                   {R"(style=")", 0}};
  for (const auto& [part, count] : counts) EXPECT_EQ(CountOf(part, svg), count) << part;
}

TEST(Pictures, DotQuotesNames) {
  PetriNet net = SmallNet();
  net.places[0].name = "a\"b\\n";
  ExpectParts(DotOf(net, {{{"siphon-1", {0}}}, {}}),
              {R"(xlabel="a\"b\\n", style=filled)", R"(p0 -> t0 [label="2"];)", "t0 -> p1;",
               R"(p1 -> t0 [arrowhead=odot, label="7"];)"});
}

TEST(Pictures, LayoutPlacesEveryNodeOnItsOwn) {
  PetriNet net = SmallNet();
  for (Place& place : net.places) place.position.reset();
  const std::optional<Drawing> drawing = LaidOut(net);
  ASSERT_EQ(drawing.has_value(), CanLayOut());
  if (!drawing) GTEST_SKIP() << "this build has no layout";
  ExpectApart(*drawing, 2 * kPlaceRadius);
  for (const DrawnArc& arc : drawing->arcs) {
    ASSERT_TRUE(arc.curved);
    EXPECT_EQ(arc.line.size() % 3, 1U);
    const Point atPlace = arc.kind == DrawnArcKind::kOutput ? arc.line.back() : arc.line.front();
    EXPECT_NEAR(Distance(atPlace, drawing->places[static_cast<size_t>(arc.place)].centre), kPlaceRadius, 1);
  }
}

}  // namespace
}  // namespace siphons
