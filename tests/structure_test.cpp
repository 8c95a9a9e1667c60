// The structural tables, built from a net file; sparse rows; definition info. What the tables say of a net
// with links of every kind is for netkit/structure.expected to say.
#include <sstream>

#include "net/load_net.h"
#include "net/memory.h"
#include "structure/definition_info.h"
#include "structure/single_access.h"
#include "structure/sparse.h"
#include "structure/struct_IO.h"
#include "structure/struct_vars.h"
#include "tests/messages.h"
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

/// The tables of a net of three places and one transition with these arcs, as the process has them after
/// reading its file.
class Structure : public testing::Test {
 protected:
  void Build(const std::string& arcs) {
    WriteFile(model_.path() / "net.PD",
              "DEFINITION_PARAMETERS: 2\nDEFINITION_PARAMETER m 2.9 0 0\nDEFINITION_PARAMETER d <MD> 0 0\n"
              "REWARD_MEASURES: 0\nPLACES: 3\nPLACE a 5\nPLACE b m\nPLACE c 1\nTRANSITIONS: 1\n"
              "TRANSITION t 1 SS EXP RS 0 0 1 2 3 4 5 6\n" +
                  arcs);
    GiveUpTables();
    no_timed_trans = 0;
    read_net((model_.path() / "net").c_str());
  }
  void TearDown() override { GiveUpTables(); }

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

TEST_F(Structure, HoldsWhatNoFileShows) {
  Build("INPARCS 1 <MD> a 0 OUTPARCS 0 INHARCS 0\n");
  EXPECT_STREQ(places[0].mark_text, "5");
  EXPECT_EQ(places[0].md_arc, 1);
  EXPECT_EQ(places[1].init_mark, 2);
  EXPECT_STREQ(places[1].mark_text, "m");
  EXPECT_EQ(transitions[0].md_arc, 1);
  EXPECT_EQ(r_par[1].md, 1);
  EXPECT_EQ(EntriesOf(i_matrix[0]), (Entries{{0, 1, 0, 0}})) << "a marking-dependent arc counts as 1";
}

TEST_F(Structure, ParallelArcsStandWhereTheRuleOfInsertionPutsThem) {
  Build("INPARCS 6 1 b 0 2 b 0 3 b 0 4 c 0 5 c 0 6 a 0 OUTPARCS 2 7 c 0 3 b 0 INHARCS 0\n");
  EXPECT_EQ(EntriesOf(i_matrix[0]),
            (Entries{{0, 6, 0, 0}, {1, 1, 0, 0}, {1, 3, 0, 0}, {1, 2, 0, 0}, {2, 5, 0, 0}, {2, 4, 0, 0}}));
  EXPECT_EQ(RowsOf(*OwnedMatrix(conv_matrix(i_matrix))), (Rows{{6, 1, 5}}));
  config_arcs(*model, 0, 9);
  EXPECT_EQ(h_matrix[0], nullptr);
  c_matrix = sparse_function(o_matrix, i_matrix, no_trans, minus);
  EXPECT_EQ(
      EntriesOf(c_matrix[0]),
      (Entries{{0, -6, 0, 0}, {1, 2, 0, 0}, {1, -3, 0, 0}, {1, -2, 0, 0}, {2, 2, 0, 0}, {2, -4, 0, 0}}));
}

TEST_F(Structure, OperationsThatNoProgramCalls) {
  Build("INPARCS 2 1 a 0 5 c 0 OUTPARCS 0 INHARCS 0\n");
  EXPECT_EQ(sp_access(i_matrix, 0, 2), 5);
  EXPECT_EQ(sp_access(i_matrix, 0, 1), 0);
  EXPECT_EQ(sp_access(h_matrix, 0, 0), 0);
  sp_input(i_matrix, 0, 2, 9);
  sp_input(i_matrix, 0, 1, 9);
  EXPECT_EQ(EntriesOf(i_matrix[0]), (Entries{{0, 1, 0, 0}, {2, 9, 0, 0}}));
  std::istringstream set("label 2 1 1");
  int32_t* flags = nullptr;
  deter_in(set, &flags);
  EXPECT_EQ(Row(flags, flags + 3), (Row{0, 1, 0}));
  std::free(flags);
  const ErrorFunc goesOn = [](const char*, int32_t) { return 0; };
  sp_entry difference{0, 1, 3, 0, nullptr}, out{};
  ExpectRowsOfThisTest({InChild([&] { LoadModel("no such net", goesOn); }),
                        InChild([&] { minus(&difference, &difference, &out); })});
}

TEST_F(Structure, DefinitionInfoIsAttached) {
  Build("INPARCS 1 1 a 0 OUTPARCS 1 1 a 0 INHARCS 0\n");
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
}

TEST(SparseRows, ManyElementsAreInsertedAsOneByOne) {
  for (uint32_t seed = 0; seed < 500; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    std::vector<sp_entry> plain;
    for (uint32_t i = Below(random, 30); i > 0; --i) {
      const auto index = static_cast<int32_t>(Below(random, 1 + seed % 9));
      plain.push_back({index, static_cast<int32_t>(i), 0, 0, nullptr});
    }
    std::vector<sp_entry> fast = plain;
    sp_entry *expected = nullptr, *row = nullptr;
    for (sp_entry& element : plain) sp_insert(&expected, &element);
    const size_t first = Below(random, static_cast<uint32_t>(fast.size()) + 1);
    std::vector<sp_entry*> elements;
    for (size_t i = 0; i <= fast.size(); ++i) {
      if (i == first || i == fast.size()) sp_insert_all(&row, elements), elements.clear();
      if (i < fast.size()) elements.push_back(&fast[i]);
    }
    EXPECT_EQ(EntriesOf(row), EntriesOf(expected));
  }
}

}  // namespace
}  // namespace siphons
