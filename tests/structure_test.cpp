// The structural tables, built from a net file; sparse rows; definition info.
#include <gtest/gtest.h>

#include <sstream>

#include "net/load_net.h"
#include "net/memory.h"
#include "structure/definition_info.h"
#include "structure/pmf_file.h"
#include "structure/single_access.h"
#include "structure/sparse.h"
#include "structure/struct_IO.h"
#include "structure/struct_vars.h"
#include "tests/files.h"
#include "tests/rows.h"

namespace siphons {
namespace {

using Entries = std::vector<std::array<int32_t, 4>>;  // index, value, mark, md_func

Entries EntriesOf(const sp_entry* row) {
  Entries entries;
  for (; row != nullptr; row = row->next)
    entries.push_back({row->index, row->value, row->mark, row->md_func});
  return entries;
}

/// The tables of a net file, as the process has them after reading it.
class Structure : public testing::Test {
 protected:
  void Build(const std::string& places, const std::string& transitions) {
    const auto count = [](const std::string& text, const std::string& word) {
      int found = 0;
      for (size_t at = 0; (at = text.find(word, at)) != std::string::npos; ++at) ++found;
      return std::to_string(found);
    };
    WriteFile(model_.path() / "net.PD",
              "DEFINITION_PARAMETERS: 2\nDEFINITION_PARAMETER m 2.9 0 0\nDEFINITION_PARAMETER d <MD> 0 0\n"
              "REWARD_MEASURES: 0\nPLACES: " +
                  count(places, "PLACE ") + "\nTRANSITIONS: " + count(transitions, "TRANSITION ") + "\n" +
                  places + transitions);
    GiveUpTables();
    no_timed_trans = 0;
    read_net((model_.path() / "net").c_str());
  }
  void TearDown() override { GiveUpTables(); }
  const fs::path& Directory() const { return model_.path(); }

 private:
  /// The tables are built once per process and never released; here every test builds its own.
  static void GiveUpTables() {
    void* const tables[] = {places,   transitions, i_matrix, o_matrix, h_matrix,
                            c_matrix, r_par,       md_arcs,  model};
    for (void* table : tables) Abandon(table);
    c_matrix = nullptr;
    md_arcs = nullptr;
    no_md_arcs = 0;
  }

  TemporaryDirectory model_;
};

const std::string kPlaces = "PLACE a 5\nPLACE b m\nPLACE c 1\n";
const std::string kPositions = " 0 0 1 2 3 4 5 6\n";

TEST_F(Structure, TablesOfPlacesAndTransitions) {
  Build(kPlaces, "TRANSITION e 1.5 IS EXP RS" + kPositions + "INPARCS 1 <MD> a 0 OUTPARCS 0 INHARCS 0\n" +
                     "TRANSITION d m SS DET RS" + kPositions + "INPARCS 0 OUTPARCS 0 INHARCS 0\n" +
                     "TRANSITION p d SS IMM RS 7 0 1 2 3 4 5 6\nINPARCS 0 OUTPARCS 0 INHARCS 1 1 c 0\n" +
                     "TRANSITION g - SS GEN RS" + kPositions +
                     "INPARCS 0 OUTPARCS 0 INHARCS 0\nGEN_DELAY g uni(1,2);\n");
  EXPECT_EQ(no_places, 3);
  EXPECT_STREQ(places[0].mark_text, "5");
  EXPECT_EQ(places[0].md_arc, 1);
  EXPECT_EQ(places[1].init_mark, 2);
  EXPECT_STREQ(places[1].mark_text, "m");
  EXPECT_EQ(no_trans, 4);
  EXPECT_EQ(no_timed_trans, 3);
  EXPECT_EQ(transitions[0].kind, kKindExponential);
  EXPECT_EQ(transitions[0].delay, 1.5);
  EXPECT_EQ(transitions[0].md_arc, 1);
  EXPECT_EQ(transitions[0].inf_server, 1);
  EXPECT_EQ(transitions[1].kind, kKindDeterministic);
  EXPECT_EQ(transitions[1].delay, 2.9);
  EXPECT_EQ(transitions[2].md_delay, 3);
  EXPECT_EQ(transitions[2].priority, 7);
  EXPECT_EQ(transitions[3].kind, kKindGeneral);
  EXPECT_EQ(r_par[1].md, 1);
  EXPECT_EQ(EntriesOf(i_matrix[0]), (Entries{{0, 1, 0, 0}})) << "a marking-dependent arc counts as 1";
  EXPECT_EQ(EntriesOf(h_matrix[2]), (Entries{{2, 1, 0, 0}}));

  generate_pmf((Directory() / "net").c_str(), *model);
  EXPECT_EQ(ReadFile(Directory() / "net.pmf"), "TRANSITION g\nuni(1,2);\n\n");
  EXPECT_EXIT(generate_pmf("/no/such/net", *model), testing::ExitedWithCode(1), "");
}

TEST_F(Structure, ParallelArcsStandWhereTheRuleOfInsertionPutsThem) {
  Build(kPlaces, "TRANSITION t 1 SS EXP RS" + kPositions +
                     "INPARCS 6 1 b 0 2 b 0 3 b 0 4 c 0 5 c 0 6 a 0 OUTPARCS 2 7 c 0 3 b 0 INHARCS 0\n");
  EXPECT_EQ(EntriesOf(i_matrix[0]),
            (Entries{{0, 6, 0, 0}, {1, 1, 0, 0}, {1, 3, 0, 0}, {1, 2, 0, 0}, {2, 5, 0, 0}, {2, 4, 0, 0}}));
  EXPECT_EQ(RowsOf(*OwnedMatrix(conv_matrix(i_matrix))), (Rows{{6, 1, 5}}));
  config_arcs(*model, 0, 9);
  config_arcs(*model, 0, kInhibitorArc);
  EXPECT_EQ(h_matrix[0], nullptr);

  c_matrix = sparse_function(o_matrix, i_matrix, no_trans, minus);
  EXPECT_EQ(
      EntriesOf(c_matrix[0]),
      (Entries{{0, -6, 0, 0}, {1, 2, 0, 0}, {1, -3, 0, 0}, {1, -2, 0, 0}, {2, 2, 0, 0}, {2, -4, 0, 0}}));
  EXPECT_EQ(sp_access(i_matrix, 0, 2), 5);
  EXPECT_EQ(sp_access(o_matrix, 0, 0), 0);
  EXPECT_EQ(sp_access(h_matrix, 0, 0), 0);
  sp_input(i_matrix, 0, 1, 9);
  EXPECT_EQ(sp_access(i_matrix, 0, 1), 9);
}

TEST_F(Structure, DefinitionInfoIsAttached) {
  Build(kPlaces, "TRANSITION t 1 SS EXP RS" + kPositions + "INPARCS 1 1 a 0 OUTPARCS 1 1 a 0 INHARCS 0\n");
  std::istringstream info(
      "arcs 1 arc 42 1 0 0 places 2 0 2 end delays 2 d 5 0 p 1 1 d 6 0 p 1 2 enabling 1 e 7 0 p 0");
  read_info(info);
  ASSERT_EQ(no_md_arcs, 1);
  EXPECT_EQ(Row(md_arcs[0].depends, md_arcs[0].depends + 3), (Row{1, 0, 1}));
  EXPECT_EQ(transitions[0].dep2_id, 6) << "the later entry stays";
  EXPECT_EQ(Row(transitions[0].dep2_places, transitions[0].dep2_places + 3), (Row{0, 0, 1}));
  EXPECT_EQ(transitions[0].dep1_id, 7);
  // The self-loop cancels, but the marking-dependent arc stays visible.
  c_matrix = sparse_function(o_matrix, i_matrix, no_trans, minus);
  EXPECT_EQ(EntriesOf(c_matrix[0]), (Entries{{0, 0, 0, 42}}));
  sp_entry marked{0, 1, 3, 0, nullptr}, out{};
  EXPECT_EXIT(minus(&marked, &marked, &out), testing::ExitedWithCode(1), "");

  std::istringstream set("label 2 1 1");
  int32_t* flags = nullptr;
  deter_in(set, &flags);
  EXPECT_EQ(Row(flags, flags + 3), (Row{0, 1, 0}));
  std::free(flags);
}

TEST_F(Structure, ShortInfoRepeatsItsLastWordAndKeepsOneOfTheRecordsThatRepeat) {
  Build(kPlaces, "TRANSITION t 1 SS EXP RS" + kPositions + "INPARCS 2 1 a 0 1 b 0 OUTPARCS 0 INHARCS 0\n");
  std::istringstream info("arcs 10000000 arc 0");
  read_info(info);
  EXPECT_EQ(no_md_arcs, 2);
  EXPECT_EQ(md_arcs[1].kind, kInputArc);
  EXPECT_NE(md_arcs[1].depends, nullptr);
  EXPECT_EQ(transitions[0].dep1_places, nullptr) << "0 entries";
}

TEST_F(Structure, NamesAreNeverCut) {
  const std::string transition = "TRANSITION t 1 SS EXP RS" + kPositions + "INPARCS 0 OUTPARCS 0 INHARCS 0\n";
  Build("PLACE " + std::string(29, 'p') + "\n", transition);
  EXPECT_EQ(std::string(places[0].name), std::string(29, 'p'));
  EXPECT_DEATH(Build("PLACE " + std::string(30, 'p') + "\n", transition), "too long");
}

TEST_F(Structure, AnArcToAPlaceBehindTheUsedSlotsEndsTheProcess) {
  EXPECT_EXIT(Build("PLACE a\nPLACES: 2\nPLACE x\n",
                    "TRANSITION t 1 SS EXP RS" + kPositions + "INPARCS 1 1 x 0 OUTPARCS 0 INHARCS 0\n"),
              testing::ExitedWithCode(1), "");
}

}  // namespace
}  // namespace siphons
