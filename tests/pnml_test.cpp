// PNML: nets as editors write them, what is refused, and nets that go to another format and come back.
#include <gtest/gtest.h>

#include "netkit/formats/pd_reader.h"
#include "netkit/formats/pd_writer.h"
#include "netkit/formats/pnml_reader.h"
#include "netkit/formats/pnml_writer.h"
#include "netkit/formats/whole_file.h"
#include "netkit/model/same_net.h"
#include "tests/files.h"

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
  // The standard: pages within pages, reference nodes, labels that are unique and that are not.
  const auto standard = Read(R"xml(
<page id="g1"><place id="p1"><name><text> idle
 now </text><graphics><offset x="1" y="2"/></graphics></name><graphics><position x="10" y="20"/></graphics>
  <initialMarking><text> 9000000000 </text></initialMarking></place>
 <page id="g2"><referencePlace id="r1" ref="p1"/><place id="p2"><name><text>same</text></name></place>
 <place id="p3"><name><text>same</text></name></place><transition id="t1"><name><text>go</text></name></transition>
 <arc id="a1" source="r1" target="t1"><inscription><text>2</text></inscription>
  <graphics><position x="1" y="2"/><position x="3" y="4"/></graphics></arc>
 <arc id="a2" source="r1" target="t1"/><arc id="a3" source="t1" target="p2"/></page></page>)xml");
  EXPECT_EQ(Shape(standard), "idle now=9000000000 p2=0 p3=0 | go: 3idle now >1p2");
  EXPECT_EQ(standard->places[0].labelPosition->y, 22);
  EXPECT_EQ(standard->transitions[0].inputs[0].path.size(), 2u);
  EXPECT_EQ(standard->places[0].where.line, 3);

  // Values instead of texts, classes of tokens, untimed transitions with priorities, inhibitor arcs by
  // element.
  EXPECT_EQ(Shape(Read(R"xml(<token id="Default" enabled="true"/>
<place id="P0"><name><value>P0</value></name><initialMarking><value>Default,2</value></initialMarking>
 <capacity><value>0</value></capacity></place>
<transition id="T0"><name><value>T0</value></name><timed><value>false</value></timed><rate><value>1.0</value></rate>
 <infiniteServer><value>false</value></infiniteServer><priority><value>1</value></priority></transition>
<arc id="P0 to T0" source="P0" target="T0"><inscription><value>Default,3</value></inscription>
 <arcpath id="000" x="1" y="1"/><arcpath id="001" x="2" y="2"/><type value="inhibitor"/></arc>
<arc id="T0 to P0" source="T0" target="P0"><inscription><value>Default,1</value></inscription><type value="normal"/></arc>
)xml",
                       nullptr, "P/T net")),
            "P0=2 | T0 imm: !3P0 >1P0");

  // Everything in attributes, inhibitor arcs by the attribute of the arc.
  EXPECT_EQ(
      Shape(Read(
          R"xml(<place id="a" name="A" initialMarking="4" invariant="&lt; inf" positionX="1" positionY="2"/>
<transition id="t" name="T" positionX="3" positionY="4"/>
<arc id="1" source="a" target="t" type="tapnInhibitor" weight="5"/>
<arc id="2" source="a" target="t" inscription="[0,inf)" type="timed" weight="1"/>
<arc id="3" source="t" target="a" inscription="2" type="normal"/>)xml")),
      "A=4 | T: 1A !5A >2A");
}

TEST(Pnml, RefusesWhatIsNoPlaceTransitionNet) {
  const std::string nodes = "<place id='p'/><transition id='t'/>";
  const struct {
    std::string inside, told;
  } cases[] = {
      {nodes + "<arc id='a' source='p' target='p'/>", "an arc from a place to a place"},
      {nodes + "<arc id='a' source='p' target='x'/>", "the target of the arc is 'x'"},
      {nodes + "<arc id='a' source='p' target='t'><inscription><text>0</text></inscription></arc>",
       "out of range"},
      {nodes + "<arc id='a' source='p' target='t'><inscription><text>x</text></inscription></arc>",
       "no plain number"},
      {nodes + "<arc id='a' source='t' target='p' type='inhibitor'/>", "an inhibitor arc from a transition"},
      {nodes + "<arc id='a' source='p' target='t' type='reset'/>", "an arc of type 'reset'"},
      {nodes + "<arc id='a' source='p' target='t' inscription='[0,3]'/>", "an age interval"},
      {nodes + "<place id='p'/>", "the id 'p' is taken in line 2"},
      {nodes + "<place/>", "has no id"},
      {nodes + "<place id='q' id='r'/>", "the attribute 'id' stands twice"},
      {nodes + "<place id='q'><capacity><value>3</value></capacity></place>", "a capacity of '3'"},
      {nodes + "<place id='q'><initialMarking><text>-1</text></initialMarking></place>", "no plain number"},
      {nodes + "<place id='q'><initialMarking><value>Default,1,Red,2</value></initialMarking></place>",
       "more than one class"},
      {nodes + "<place id='q'><hlinitialMarking/></place>", "belongs to high-level nets"},
      {nodes + "<transportArc id='a' source='p' target='t'/>", "another class of nets"},
      {nodes + "<referencePlace id='r' ref='s'/><referencePlace id='s' ref='r'/><arc id='a' source='r' "
               "target='t'/>",
       "stands for itself"},
      {"<place id='p'/>", "the net has no transition"},
      {nodes + "<place id='q'><name><text>&foo;</text></name></place>", "an entity that nobody declares"},
      {nodes + "<place id='q'>", "the XML is faulty"},
      {nodes + "<place id='q", "a tag without its end"},
  };
  for (const auto& test : cases) {
    std::string told;
    EXPECT_FALSE(Read(test.inside, &told)) << test.inside;
    EXPECT_NE(told.find(test.told), std::string::npos) << told;
    EXPECT_EQ(told.rfind("net.pnml:", 0), 0u) << told;
  }
  std::string told;
  EXPECT_FALSE(Read(nodes, &told, "http://www.pnml.org/version-2009/grammar/symmetricnet"));
  EXPECT_NE(told.find("a high-level net"), std::string::npos) << told;
}

TEST(Pnml, DamagedAndHostileFilesEndInAnError) {
  std::string nested, text = "<pnml><net id='n'><place id='p'/><transition id='t'/></net></pnml>\n";
  for (int i = 0; i < 1'000'000; ++i) nested += "<a>";
  const std::string cases[] = {nested,
                               R"(<!DOCTYPE lolz [<!ENTITY lol "lol"><!ENTITY lol2 "&lol;&lol;">]>)" + text,
                               std::string("\xff\xfe<\0p", 5),
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

TEST(Convert, ThereAndBackIsTheSameNet) {
  int nets = 0;
  for (const char* directory : {TESTS_DIRECTORY, EXAMPLES_DIRECTORY}) {
    for (const auto& entry : fs::recursive_directory_iterator(directory)) {
      if (entry.path().extension() != ".PD") continue;
      Diagnostics diagnostics(entry.path());
      const std::optional<PetriNet> net = ReadPd(*ReadFile(entry.path()), "net", diagnostics);
      if (!net) continue;
      ++nets;
      const std::optional<PetriNet> viaXml = ReadPnml(WritePnml(*net), diagnostics);
      ASSERT_TRUE(viaXml) << diagnostics.Text();
      EXPECT_EQ(DifferenceOf(*net, *viaXml), "") << entry.path();
      EXPECT_EQ(viaXml->description, net->description);
      const std::optional<std::string> text = WritePd(*viaXml, diagnostics);
      EXPECT_TRUE(text) << diagnostics.Text();
    }
  }
  EXPECT_GT(nets, 50);
}

TEST(Convert, NamesBecomeLegalAndDependenciesAreFound) {
  PetriNet net;
  for (const char* name : {"a b", "a_b", "100%", "a very long name of more than 29 characters",
                           "a very long name of more than 29 letters", ""}) {
    net.places.emplace_back().name = name;
  }
  std::string names;
  const std::vector<NameChange> changes = MakeNamesLegal(net);
  for (const Place& place : net.places) names += place.name + " ";
  EXPECT_EQ(names, "a_2 a_b 100_ a_very_long_name_of_more_than a_very_long_name_of_more_2 _ ");
  EXPECT_EQ(changes.size(), 5u);
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
