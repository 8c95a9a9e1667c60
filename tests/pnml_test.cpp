// PNML: nets as editors write them, what is refused, and nets that go to another format and come back.
#include <gtest/gtest.h>

#include "netkit/formats/pd_reader.h"
#include "netkit/formats/pd_writer.h"
#include "netkit/formats/pnml_reader.h"
#include "netkit/formats/pnml_writer.h"
#include "netkit/formats/whole_file.h"
#include "netkit/model/same_net.h"
#include "tests/files.h"
#include "tests/nets.h"

namespace siphons {
namespace {

/// The net of a file with this inside <net>; what is told instead, when it is refused.
std::optional<PetriNet> Read(const std::string& inside, std::string* told = nullptr,
                             const std::string& type = "http://www.pnml.org/version-2009/grammar/ptnet") {
  Diagnostics diagnostics("net.pnml");
  std::optional<PetriNet> net =
      ReadPnml("<pnml><net id='n' type='" + type + "'>\n" + inside + "\n</net></pnml>\n", diagnostics);
  EXPECT_EQ(net.has_value(), !diagnostics.HasErrors());
  if (told != nullptr) *told = diagnostics.Text();
  return net;
}

/// Places, tokens and arcs in one line: "p=1 q=0 | t: 2p !3q > q".
std::string Shape(const std::optional<PetriNet>& net) {
  if (!net) return "refused";
  std::string shape;
  for (const Place& place : net->places) shape += place.name + "=" + std::to_string(place.tokens) + " ";
  const auto arcs = [&](const std::vector<Arc>& list, const char* mark) {
    for (const Arc& arc : list) {
      shape += std::string(" ") + mark + std::to_string(arc.weight) +
               net->places[static_cast<size_t>(arc.place)].name;
    }
  };
  for (const Transition& transition : net->transitions) {
    shape += "| " + transition.name + (transition.kind == TransitionKind::kImmediate ? " imm:" : ":");
    arcs(transition.inputs, "");
    arcs(transition.inhibitors, "!");
    arcs(transition.outputs, ">");
  }
  return shape;
}

TEST(Pnml, ReadsTheNotationsOfEditors) {
  const auto file = [](const std::string& name) {
    const std::string path = std::string(TESTS_DIRECTORY) + "/pnml/" + name + ".pnml";
    Diagnostics diagnostics(name);
    std::optional<PetriNet> net = ReadPnml(*ReadFile(path), diagnostics);
    EXPECT_TRUE(net) << diagnostics.Text();
    return net;
  };
  // Pages within pages, references to references, parallel arcs, labels with blanks and labels used twice.
  const auto pages = file("pages");
  EXPECT_EQ(Shape(pages), "idle now=9000000000 p2=0 p3=0 | go: 3idle now >1p2");
  EXPECT_EQ(pages->places[0].labelPosition->y, 22);
  EXPECT_EQ(pages->transitions[0].inputs[0].path.size(), 2u);
  EXPECT_EQ(pages->places[0].where.line, 6);
  // Values instead of texts, tokens of a class, immediate transitions, inhibitor arcs by an element.
  EXPECT_EQ(Shape(file("token_classes")), "P0=2 | T0 imm: !3P0 >1P0");
  // Everything in attributes, inhibitor arcs by an attribute.
  EXPECT_EQ(Shape(file("attributes")), "A=4 | T: 1A !5A >2A");
  // No graphics, kinds of arcs as texts, parts of other tools, a final marking.
  EXPECT_EQ(Shape(file("event_log")),
            "source=1 ([take order],[pack])=0 | take order: 1source >1([take order],[pack])"
            "| n4: 1([take order],[pack])| n5: !1source");
  // Parts of other tools within nodes, arcs and the net, a label that is another node's id, decimal places.
  const auto workflow = file("workflow");
  EXPECT_EQ(Shape(workflow), "order & pay=1 p2=0 | t1_op_1: 1order & pay >1p2| t1_op_2: 1order & pay");
  EXPECT_EQ(workflow->places[0].labelPosition->y, 200.75);
}

TEST(Pnml, RefusesWhatIsNoPlaceTransitionNet) {
  const std::string nodes = "<place id='p'/><transition id='t'/>";
  std::string told;
  int refused = 0;
  for (const std::string& line : Split(*ReadFile(TESTS_DIRECTORY "/pnml/refused.txt"))) {
    if (line.starts_with("#")) continue;
    const size_t bar = line.find(" | ");
    EXPECT_FALSE(Read(nodes + line.substr(bar + 3), &told)) << line;
    EXPECT_NE(told.find(line.substr(0, bar)), std::string::npos) << told;
    EXPECT_EQ(told.rfind("net.pnml:", 0), 0u) << told;
    ++refused;
  }
  EXPECT_GT(refused, 20);
  EXPECT_FALSE(Read("<place id='p'/>", &told));
  EXPECT_NE(told.find("the net has no transition"), std::string::npos) << told;
  EXPECT_FALSE(Read(nodes, &told, "http://www.pnml.org/version-2009/grammar/symmetricnet"));
  EXPECT_NE(told.find("a high-level net"), std::string::npos) << told;
}

// Files made to take all memory are in netkit_reading_test.cpp.
TEST(Pnml, DamagedFilesEndInAnError) {
  const std::string text = "<pnml><net id='n'><place id='p'/><transition id='t'/></net></pnml>\n";
  const std::string cases[] = {std::string("\xff\xfe<\0p", 5),
                               "<pnml/>",
                               "<?xml version='1.0' encoding='UTF-16'?>" + text,
                               text + text,
                               "<!-- " + text,
                               "\xc3\x28" + text,
                               ""};
  for (const std::string& file : cases) {
    Diagnostics diagnostics("f");
    EXPECT_FALSE(ReadPnml(file, diagnostics)) << file.substr(0, 100);
    EXPECT_TRUE(diagnostics.HasErrors());
  }
  for (size_t length = 0; length + 8 < text.size(); ++length) {
    Diagnostics diagnostics("f");
    EXPECT_FALSE(ReadPnml(text.substr(0, length), diagnostics)) << length;
  }
  Diagnostics diagnostics("f");
  EXPECT_TRUE(ReadPnml("<?xml version='1.0' encoding='ISO-8859-1'?>" + text, diagnostics))
      << diagnostics.Text();
  EXPECT_EQ(Decompressed(Compressed(text)), text);
  EXPECT_FALSE(Decompressed(Compressed(text).substr(0, 30)));
}

/// A random net with everything that a .PD file can say.
PetriNet RandomModel(std::mt19937& random) {
  const auto below = [&random](uint32_t n) { return static_cast<int32_t>(random() % n); };
  const int32_t scale = below(4) == 0 ? 0 : 1;  // 0: all is at the origin
  const auto point = [&below, scale] {
    return Point{scale * below(4000) / 100.0, scale * (below(4000) - 2000) / 1000.0};
  };
  RandomFeatures features;
  features.unknown = true;
  PetriNet net = RandomNet(random, features);
  net.type = static_cast<NetClass>(below(4));
  net.description = below(2) == 0 ? "" : "a <net> & \"more\"\nof it";
  net.parameters.push_back({"N", below(100) / 8.0, {}, point(), {}});
  net.parameters.push_back({"count", 2, {}, point(), {}});
  net.parameters.push_back({"M", 0, "#p0 * 2", point(), {}});
  net.measures.push_back({"mean", "E{#p0}", {}});
  for (Place& place : net.places) {
    if (place.tokens == 2 && below(2) == 0) place.markingParameter = "count";
    if (scale == 0 || below(2) == 0) place.position = point();
    if (place.position && (scale == 0 || below(2) == 0)) place.labelPosition = point();
  }
  for (Transition& transition : net.transitions) {
    using Delay = TransitionDelay::Kind;
    if (transition.kind != TransitionKind::kImmediate)
      transition.kind = static_cast<TransitionKind>(1 + below(3));
    transition.delay.kind =
        transition.kind == TransitionKind::kGeneral ? Delay::kDistribution : static_cast<Delay>(below(3));
    const std::string texts[] = {"", "N", "1 + #p0\n+ 2", "UNIFORM(0, <2>)"};
    transition.delay.text = texts[static_cast<size_t>(transition.delay.kind)];
    if (transition.delay.kind == Delay::kNumber) transition.delay.value = below(1000) / 7.0;
    if (transition.enablingFunction) transition.enablingFunction = "#p0 > 0 && #p1 < 2";
    transition.infiniteServer = below(2) == 0;
    transition.policy = static_cast<MemoryPolicy>(below(3));
    transition.orientation = static_cast<Orientation>(below(4));
    if (below(3) == 0) transition.auxiliary = {static_cast<int16_t>(below(9)), below(9), below(9) / 4.0};
    transition.position = point();
    transition.labelPosition = point();
    transition.delayPosition = point();
    for (auto* arcs : {&transition.inputs, &transition.outputs, &transition.inhibitors}) {
      for (Arc& arc : *arcs) {
        for (int32_t points = below(3); points > 0; --points) arc.path.push_back(point());
        if (arc.markingDependent) arc = {arc.place, 1, true, "#p0 - \"1\"", arc.path, {}};
      }
    }
  }
  return net;
}

TEST(Convert, ThereAndBackLosesNothing) {
  for (uint32_t seed = 0; seed < 1000; ++seed) {
    std::mt19937 random(seed);
    const PetriNet net = RandomModel(random);
    Diagnostics diagnostics("f");
    const std::optional<std::string> text = WritePd(net, diagnostics);
    ASSERT_TRUE(text) << "seed " << seed << ": " << diagnostics.Text();
    const std::optional<PetriNet> viaXml =
        ReadPnml(WritePnml(*ReadPd(*text, "net", diagnostics)), diagnostics);
    ASSERT_TRUE(viaXml) << "seed " << seed << ": " << diagnostics.Text();
    EXPECT_EQ(DifferenceOf(net, *viaXml), "") << "seed " << seed;
    EXPECT_EQ(WritePd(*viaXml, diagnostics), text) << "seed " << seed << ", positions and all";
  }
}

TEST(Convert, NamesBecomeLegalAndDependenciesAreFound) {
  PetriNet net;
  for (const char* name :
       {"a b", "a_b", "100%", "a very long name of more than 29 characters",
        "a very long name of more than 29 letters", "", "exactly thirty characters long"}) {
    net.places.emplace_back().name = name;
  }
  std::string names;
  const std::vector<NameChange> changes = MakeNamesLegal(net);
  for (const Place& place : net.places) names += place.name + " ";
  EXPECT_EQ(names,
            "a_2 a_b 100_ a_very_long_name_of_more_than a_very_long_name_of_more_2 _ "
            "exactly_thirty_characters_lon ");
  EXPECT_EQ(changes.size(), 6u);
  net.places[3].tokens = 3'000'000'000;
  Diagnostics diagnostics("f");
  EXPECT_FALSE(WritePd(net, diagnostics));

  Diagnostics none("f");
  const auto dependent = ReadPd(
      "PLACES: 2\nTRANSITIONS: 1\nPLACE a 1\nPLACE ab 0\nTRANSITION t <MD> SS EXP RE 0 0 0 0 0 0 0 0 INPARCS "
      "1 <MD> a 0\n"
      "OUTPARCS 0 INHARCS 0\nCARDINALITY INPARC t a #ab+#a+#ab;\nEXP_DELAY t 2*#a;\nFUNCTION t 1;\n",
      "n", none);
  ASSERT_TRUE(dependent) << none.Text();
  EXPECT_EQ(WriteDefinitionInfo(*dependent),
            "MD_ARCS: 1\nMD_ARC 1 0 0 0 PLACES 2 1 0\nEND_MD_ARCS\nMD_DELAYS: 1\nMD_DELAY 1 0 PLACES 1 0\n"
            "MD_ENABLING: 1\nMD_ENABLE 1 0 PLACES 0\n");
}

}  // namespace
}  // namespace siphons
