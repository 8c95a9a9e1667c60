// The net reader, with an error function that records and returns, so that one process survives many faults.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "net/load_net.h"
#include "net/memory.h"
#include "tests/messages.h"

namespace siphons {
namespace {

std::vector<std::string> messages;

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

const std::string kCounts = "PLACES: 2\nTRANSITIONS: 1\nDEFINITION_PARAMETERS: 2\nREWARD_MEASURES: 1\n";
const std::string kParameters = "DEFINITION_PARAMETER m 2.9 1 2\nDEFINITION_PARAMETER d <MD> 3 4\n";
const std::string kPlaces = "PLACE a +3 1 2 3 4\nPLACE b m 5\n";
const std::string kTransition =
    "TRANSITION t 0.5 IS EXP RA 1 2 1 2 3 4 5 6\nINPARCS 2\n0x10 a 2 1 2 3 4\n010 a 0\nOUTPARCS 1 <MD> b "
    "0\nINHARCS 0\n";
const std::string kMeasure = "MEASURE r P{#a>1};\n";
const std::string kNet = kCounts + kParameters + kPlaces + kTransition + kMeasure;

using Messages = std::vector<std::string>;

TEST(Reader, FillsTheModel) {
  const OwnedNet net =
      Load("NET_TYPE: EDSPN\nDESCRIPTION: one\n\t-- dropped\n  two \n\n" + kNet +
           "CARDINALITY OUTPARC t b #a\n  +1; rest\nCARDINALITY INPARC t a #b;\n"
           "CARDINALITY INPARC t b 9;\nDELAYPAR_DEF d 2*#a;\nFUNCTION t #a>0;\nEXP_DELAY t 7;\n");
  EXPECT_EQ(messages, (Messages{"W Redefining transition 't' by '7;'\n"}));
  EXPECT_EQ(net->nettype, kEdspn);
  EXPECT_STREQ(net->comment, "one\ntwo ");
  EXPECT_EQ(net->places[0].marking, 3);
  EXPECT_EQ(net->places[0].name_pos.y, 4);
  EXPECT_EQ(net->places[1].is_value, 0);
  EXPECT_EQ(net->places[1].marking_par, &net->delaypars[0]);
  EXPECT_EQ(net->places[1].pos.x, 5);
  EXPECT_EQ(net->places[1].name_pos.x, 0);
  EXPECT_EQ(net->delaypars[0].value, 2.9);
  EXPECT_STREQ(net->delaypars[1].text, "2*#a;");
  const NetTransition& t = net->transitions[0];
  EXPECT_EQ(t.type, kExponential);
  EXPECT_EQ(t.inf_server, 1);
  EXPECT_EQ(t.f_policy, kRaceAge);
  EXPECT_EQ(t.aux_count, 1);
  EXPECT_EQ(t.aux_value, 1.0);
  EXPECT_EQ(t.delay_pos.y, 6);
  EXPECT_EQ(t.delay_type, kDelayMarkdep);
  EXPECT_STREQ(t.delay.text, "7;");
  EXPECT_STREQ(t.md_enable, "#a>0;");
  EXPECT_EQ(t.has_md_arcs, 1);
  ASSERT_EQ(t.ninarcs, 2);
  EXPECT_EQ(t.inarcs[0].multiplicity, 16);
  EXPECT_EQ(t.inarcs[0].point[1].y, 4);
  EXPECT_STREQ(t.inarcs[1].md_mult, "#b;") << "the later of two arcs takes the text";
  EXPECT_EQ(t.inarcs[0].is_value, 1);
  EXPECT_STREQ(t.outarcs[0].md_mult, "#a\n+1;");
  EXPECT_STREQ(net->rewards[0].def, "P{#a>1};");
}

TEST(Reader, LongHeadsAndTypes) {
  const std::string arcs = "INPARCS 0 OUTPARCS 0 INHARCS -3\n";
  const OwnedNet net = Load(
      "PLACES: 1\nPLACE a\nTRANSITIONS: 3\nDEFINITION_PARAMETERS: 1\nREWARD_MEASURES: 0\n"
      "DEFINITION_PARAMETER .5 7 0 0\n"
      "TRANSITION g anything SS GEN XX 1 2 70000 5 1.5 1 2 3 4 5 6 " +
      arcs + "TRANSITION p .5 SS DET RS 0 0 1 2 3 4 5 6 " + arcs +
      "TRANSITION i 1 SS OTHER RE 0 0 1 2 3 4 5 6 " + arcs + "WEIGHT g pmf;\nNET_TYPE: GSPN \n");
  EXPECT_EQ(messages, Messages{});
  EXPECT_EQ(net->nettype, kDspn) << "a trailing blank names no type";
  const NetTransition* const t = net->transitions;
  EXPECT_EQ(t[0].delay_type, kDelayPmf);
  EXPECT_EQ(t[0].aux_count, 70000 - 65536);
  EXPECT_EQ(t[0].aux_flag, 5);
  EXPECT_EQ(t[0].aux_value, 1.5);
  EXPECT_EQ(t[0].f_policy, kRaceEnable);
  EXPECT_EQ(t[1].type, kDeterministic);
  EXPECT_EQ(t[1].delay.parameter, &net->delaypars[0]) << "a number with a leading point is a name";
  EXPECT_EQ(t[2].type, kImmediate);
  EXPECT_EQ(t[2].ninharcs, 0);
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
}

TEST(Reader, CountsAreSettledAtTheEnd) {
  const OwnedNet net = Load("PLACES: 3\nPLACE a\nTRANSITIONS: 2\n");
  EXPECT_EQ(messages,
            (Messages{"W 3 places announced, but only 1 used", "W 2 transitions announced, but only 0 used",
                      "W -1 delay parameters announced, but only 0 used",
                      "W -1 rewards announced, but only 0 used"}));
  EXPECT_EQ(net->nplaces, 1);
  EXPECT_EQ(net->nrewards, 0);
  EXPECT_EQ(Load(""), nullptr);
  EXPECT_EQ(messages, (Messages{"F Invalid number of places or transitions"}));
  const OwnedNet unresolved =
      Load(kCounts + kPlaces + kParameters + "TRANSITION t <MD> SS IMM RS 0 0 1 2 3 4 5 6\n");
  EXPECT_EQ(messages.back(), "F Unresolved MD/PMF-reference in transition 't'");
}

TEST(Reader, ASecondAnnouncementStartsANewTable) {
  const OwnedNet net = Load(
      "PLACES: 2\nPLACE a 1\nTRANSITIONS: 1\nTRANSITION t 1 SS EXP RS 0 0 1 2 3 4 5 6\n"
      "INPARCS 1 1 a 0 OUTPARCS 0 INHARCS 0\nPLACES: 3\nPLACE b 2\n");
  EXPECT_EQ(net->nplaces, 1);
  EXPECT_EQ(net->places[0].name, nullptr);
  EXPECT_STREQ(net->places[1].name, "b");
  EXPECT_STREQ(net->transitions[0].inarcs[0].place->name, "a") << "arcs still name places of the old table";
}

TEST(Reader, ATextReplacesTheNumberOfAParameter) {
  const OwnedNet net = Load(
      "PLACES: 1\nPLACE a\nTRANSITIONS: 1\nDEFINITION_PARAMETERS: 1\nDEFINITION_PARAMETER p 5 0 0\n"
      "DELAYPAR_DEF p 1;\nDELAYPAR_DEF p 2;\n");
  EXPECT_EQ(net->delaypars[0].is_value, 1);
  EXPECT_EQ(net->delaypars[0].value, 0);
  EXPECT_STREQ(net->delaypars[0].text, "2;");
}

TEST(Reader, LinesAndTheirEnds) {
  testing::internal::CaptureStderr();
  const OwnedNet net = Load(" \tstray \n" + kNet + "   \n\t-- comment\nDESCRIPTION: x\r\n" +
                            std::string("y\0z\n", 4) + "lost");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Syntax error: stray \n");
  EXPECT_EQ(messages, Messages{});
  EXPECT_STREQ(net->comment, "x\r\ny")
      << "carriage returns stay, a line ends at a NUL, the last line has no end";
}

TEST(Reader, FindsItsFile) {
  const TemporaryDirectory model;
  WriteFile(model.path() / "my.PD.net", kNet);
  WriteFile(model.path() / "net.PD", kNet);
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
  std::string text = "PLACES: 1\nPLACE a\nTRANSITIONS: 9\nDEFINITION_PARAMETERS: 0\nREWARD_MEASURES: 0\n";
  const std::string name(25, 'n');
  for (char c = '1'; c <= '9'; ++c) {
    text += "TRANSITION " + name + c + " <MD> IS EXP RS 0 0 1 2 3 4 5 6\nINPARCS 0 OUTPARCS 0 INHARCS 0\n";
    text += "EXP_DELAY " + name + c + " 1;\n";
  }
  Load(text, true);
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(
      messages[0],
      "W Using a marking dependent delay forces transition to behave as a single server. Applied for : " +
          name + "1, " + name + "2, " + name + "3, " + name + "4, " + name + "5\n");
  ExpectRowsOfThisTest({Told("")});
}

TEST(Memory, BlocksAndTheirEnds) {
  EXPECT_EQ(nMalloc(0), nullptr);
  char* block = static_cast<char*>(nRealloc(nullptr, 8));
  EXPECT_EQ(block[7], 0);
  block[7] = 'x';
  block = static_cast<char*>(nRealloc(block, 4000));
  EXPECT_EQ(block[7], 'x');
  Free(block);
  EXPECT_EXIT(TableBytes(0x80000000U, 2), testing::ExitedWithCode(255),
              "^Unable to malloc 4294967295 bytes\n$");
  EXPECT_EXIT(DefaultError("gone", 3), testing::ExitedWithCode(3), "^Fatal: gone\n$");
}

}  // namespace
}  // namespace siphons
