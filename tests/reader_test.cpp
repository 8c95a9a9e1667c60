// The net reader, with an error function that records and returns, so that one process survives many faults.
// What a whole run shows is for golden/, defects/ and netkit/ to say.
#include <memory>

#include "net/load_net.h"
#include "tests/messages.h"
#include "tests/rows.h"

namespace siphons {
namespace {

using Messages = std::vector<std::string>;
Messages messages;

int32_t Record(const char* message, int32_t fatal) {
  messages.push_back((fatal != 0 ? "F " : "W ") + std::string(message));
  return 0;
}

/// The reports and a captured standard output, as the default error function writes the former.
Outcome Told(const std::string& out) {
  std::string err;
  for (const std::string& message : messages) {
    err += (message[0] == 'F' ? "Fatal: " : "Warning: ") + message.substr(2) + "\n";
  }
  return {out, err, 0};
}

/// Loads a file of this text; what it reports is in `messages`.
OwnedNet Load(const std::string& text, bool warnSingleServer = false) {
  const TemporaryDirectory model;
  WriteFile(model.path() / "net.PD", text);
  messages.clear();
  return OwnedNet(load_net((model.path() / "net").c_str(), Record, warnSingleServer));
}

const std::string kNoLists = "DEFINITION_PARAMETERS: 0\nREWARD_MEASURES: 0\n";
const std::string kArcs = "INPARCS 0 OUTPARCS 0 INHARCS 0\n";

TEST(Reader, FillsWhatNoListingShows) {
  OwnedNet net = Load(
      "PLACES: 1\nPLACE a\nTRANSITIONS: 3\nDEFINITION_PARAMETERS: 2\nREWARD_MEASURES: 0\n"
      "DEFINITION_PARAMETER .5 7 0 0\nDEFINITION_PARAMETER p 5 0 0\n"
      "TRANSITION g anything SS GEN XX 1 2 70000 5 1.5 1 2 3 4 5 6 " +
      kArcs +
      "TRANSITION d .5 SS DET RS 0 0 1 2 3 4 5 6 INPARCS 2\n0x10 a 2 1 2 3 4\n010 a 0 OUTPARCS 0 INHARCS "
      "-3\n" +
      "TRANSITION i <MD> SS OTHER RE 0 0 1 2 3 4 5 6 INPARCS 0 OUTPARCS 0 INHARCS 1 <MD> a 0\n" +
      "GEN_DELAY g pmf;\nWEIGHT i 1;\nFUNCTION d 1;\nFUNCTION i 1;\nDELAYPAR_DEF p 1;\nDELAYPAR_DEF p 2;\n"
      "CARDINALITY INPARC d a\n #a; rest\nNET_TYPE: GSPN \n");
  EXPECT_EQ(messages, Messages{});
  EXPECT_EQ(net->nettype, kDspn) << "a trailing blank names no type";
  EXPECT_EQ(net->delaypars[1].is_value, 1);
  EXPECT_EQ(net->delaypars[1].value, 0) << "a text has replaced it";
  EXPECT_STREQ(net->delaypars[1].text, "2;");
  NetTransition* const t = net->transitions;
  EXPECT_EQ(t[0].aux_count, 70000 - 65536);
  EXPECT_EQ(t[0].aux_flag, 5);
  EXPECT_EQ(t[0].aux_value, 1.5);
  EXPECT_EQ(t[0].f_policy, kRaceEnable);
  EXPECT_EQ(t[1].aux_count, 1);
  EXPECT_EQ(t[1].delay.parameter, &net->delaypars[0]) << "a number with a leading point is a name";
  EXPECT_EQ(t[1].inarcs[0].multiplicity, 16);
  EXPECT_EQ(t[1].inarcs[0].point[1].y, 4);
  EXPECT_EQ(t[1].has_md_arcs, 0) << "a text that comes later does not count";
  EXPECT_STREQ(t[1].inarcs[1].md_mult, "#a;") << "the later of two arcs takes the text";
  EXPECT_EQ(t[2].type, kImmediate);
  EXPECT_EQ(t[2].has_md_arcs, 1) << "an inhibitor arc counts";

  net.reset();
  EXPECT_STREQ(t[0].delay.text, "pmf;");
  EXPECT_STREQ(t[1].md_enable, "1;");
  EXPECT_EQ(t[2].md_enable, nullptr);
}

// Which report belongs to which defect is for defects/ to say.
TEST(Reader, GoesOnAfterAReportThatReturns) {
  testing::internal::CaptureStdout();
  const OwnedNet net = Load(
      "PLACES: 2\nPLACE a\nTRANSITIONS: 1\n"
      "TRANSITION t 1 SS EXP RS 0 0 1 2 3 4 5 6\nINPARCS 1 1 nowhere 0\n"
      "PLACE c 1\nDELAYPAR_DEF nothing 1;\nMEASURE m 1;\n");
  ExpectRowsOfThisTest({Told(testing::internal::GetCapturedStdout())});
  EXPECT_EQ(messages[0], "F Place not found");
  EXPECT_EQ(messages[2], "F f_delaypar: no definition parameters defined");
  EXPECT_STREQ(net->places[1].name, "c");
  EXPECT_EQ(net->transitions[0].outarcs, nullptr);
  EXPECT_EQ(Load(""), nullptr);
  EXPECT_EQ(messages, (Messages{"F Invalid number of places or transitions"}));
}

/// The first record of the name, by a walk through the table.
template <typename Record>
Record* FirstOf(Record* table, int32_t count, const std::string& name) {
  for (int32_t i = 0; i < count; ++i) {
    if (table[i].name != nullptr && table[i].name == name) return &table[i];
  }
  return nullptr;
}

TEST(Reader, LookupsFindTheFirstOfAName) {
  for (uint32_t seed = 0; seed < 200; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    std::string text = "PLACES: 9\nTRANSITIONS: 9\nDEFINITION_PARAMETERS: 9\nREWARD_MEASURES: 0\n";
    for (uint32_t i = Below(random, 10); i > 0; --i) {
      const std::string name(1, static_cast<char>('a' + Below(random, 5)));
      text += "PLACE " + name + " 1\nDEFINITION_PARAMETER " + name + " 1 0 0\nTRANSITION " + name +
              " 1 SS EXP RS 0 0 1 2 3 4 5 6 " + kArcs;
      // A new table begins behind the slots that the old one had filled.
      if (Below(random, 12) == 0) text += "PLACES: 12\nTRANSITIONS: 11\nDEFINITION_PARAMETERS: 10\n";
    }
    const OwnedNet net = Load(text);
    testing::internal::CaptureStdout();
    for (const char* name : {"a", "b", "c", "d", "e", "f"}) {
      EXPECT_EQ(find_place(*net, name), FirstOf(net->places, net->nplaces, name)) << name;
      EXPECT_EQ(find_trans(*net, name), FirstOf(net->transitions, net->ntrans, name)) << name;
      EXPECT_EQ(find_delaypar(*net, name), FirstOf(net->delaypars, net->ndelaypars, name)) << name;
    }
    testing::internal::GetCapturedStdout();
  }
}

TEST(Reader, LinesAndTheirEnds) {
  const std::string net =
      "PLACES: 1\nPLACE a\nTRANSITIONS: 1\nTRANSITION t 1 SS EXP RS 0 0 1 2 3 4 5 6 " + kArcs + kNoLists;
  testing::internal::CaptureStderr();
  const OwnedNet loaded = Load(" \t-stray \n" + net + "   \n\t-- comment\nDESCRIPTION: x\r\n" +
                               std::string("y\0z\n", 4) + "lost");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Syntax error: -stray \n");
  EXPECT_EQ(messages, Messages{});
  EXPECT_STREQ(loaded->comment, "x\r\ny")
      << "carriage returns stay, a line ends at a NUL, the last line has no end";
  for (const size_t length :
       {254U, 255U, 256U, 257U, 511U, 512U, 513U, 5000U}) {  // around the steps of the buffer
    const std::string line(length, 'l');
    EXPECT_EQ(Load(net + "DESCRIPTION: x\n" + line + "\n" + line)->comment, "x\n" + line);
  }
}

TEST(Reader, FindsItsFile) {
  const std::string text =
      "PLACES: 1\nPLACE a\nTRANSITIONS: 1\nTRANSITION t 1 SS EXP RS 0 0 1 2 3 4 5 6 " + kArcs + kNoLists;
  const TemporaryDirectory model;
  WriteFile(model.path() / "my.PD.net", text);
  WriteFile(model.path() / "net.PD", text);
  ASSERT_EQ(setenv("MODELDIR", model.path().c_str(), 1), 0);
  messages.clear();
  EXPECT_NE(OwnedNet(load_net("net", Record, false)), nullptr) << "below MODELDIR";
  EXPECT_NE(OwnedNet(load_net("my.PD.net", Record, false)), nullptr) << "with .PD in the middle";
  EXPECT_EQ(messages, Messages{});
  ASSERT_EQ(unsetenv("MODELDIR"), 0);
  EXPECT_EQ(load_net("no/net", Record, false), nullptr);
  EXPECT_EQ(messages, (Messages{"W 'MODELDIR' not set", "F Unable to open file: no/net\n"}));
  ExpectRowsOfThisTest({Told("")});
}

TEST(Reader, NamesSingleServersInOneWarning) {
  std::string text = "PLACES: 1\nPLACE a\nTRANSITIONS: 9\n" + kNoLists;
  const std::string name(21, 'n');  // a seventh name would end at the limit of 250
  for (char c = '1'; c <= '9'; ++c) {
    text += "TRANSITION " + name + c + " <MD> IS EXP RS 0 0 1 2 3 4 5 6 " + kArcs + "EXP_DELAY " + name + c +
            " 1;\n";
  }
  Load(text, true);
  ASSERT_EQ(messages.size(), 1u);
  const std::string listed =
      name + "1, " + name + "2, " + name + "3, " + name + "4, " + name + "5, " + name + "6\n";
  EXPECT_EQ(messages[0].substr(messages[0].find(": ") + 2), listed);
  ExpectRowsOfThisTest({Told("")});
}

}  // namespace
}  // namespace siphons
