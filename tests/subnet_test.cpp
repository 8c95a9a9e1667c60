// Parts of the decomposition that no net file reaches: bounds, senses of connection.
#include <gtest/gtest.h>

#include "structure/struct_subnet.h"
#include "structure/structure_file.h"
#include "tests/rows.h"

namespace siphons {
namespace {

TEST(Subnets, BoundsOrderThePlacesAndTakeBits) {
  std::vector<struct_place> table(7);
  Row list{0, 1, 2, 3, 4, 5, 6};
  const int32_t bounds[] = {0, 3, 1, 0, 3, 8, 1};
  for (size_t p = 0; p < table.size(); ++p) table[p].bound = bounds[p];
  places = table.data();
  subnet_rec subnet{};
  subnet.nplaces = 7;
  subnet.place_list = list.data();
  sort_places(&subnet);
  places = nullptr;
  EXPECT_EQ(list, (Row{2, 6, 1, 4, 5, 0, 3}));
  EXPECT_EQ((Row{BitsOfBound(0), BitsOfBound(1), BitsOfBound(7), BitsOfBound(8)}), (Row{1, 1, 3, 4}));
  EXPECT_EQ((Row{WordsOfBits(0), WordsOfBits(16), WordsOfBits(17)}), (Row{0, 1, 2}));
}

TEST(Subnets, SensesOfConnection) {
  sp_entry input{0, 1, 0, 0, nullptr}, output{1, 1, 0, 0, nullptr}, inhibitor{2, 1, 0, 0, nullptr};
  sp_entry *i = &input, *o = &output, *h = &inhibitor;
  int32_t onlyThree[] = {0, 0, 0, 1, 0, 0}, onlyFour[] = {0, 0, 0, 0, 1, 0}, onlyFive[] = {0, 0, 0, 0, 0, 1};
  struct_trans t{};
  t.dep1_id = 1;
  t.dep1_places = onlyThree;
  t.dep2_places = onlyFour;  // without an identifier
  md_arc_def arcs[] = {{kOutputArc, 1, 0, 7, onlyFive}, {kInputArc, 0, 1, 8, onlyFive}};
  i_matrix = &i, o_matrix = &o, h_matrix = &h, transitions = &t, md_arcs = arcs, no_md_arcs = 2;
  const auto connected = [](int32_t mode) {
    Row found;
    for (int32_t p = 0; p < 6; ++p) {
      if (is_connected(0, p, mode) == 1) found.push_back(p);
    }
    return found;
  };
  EXPECT_EQ(connected(kByInputArc), Row{0});
  EXPECT_EQ(connected(kByOutputArc), Row{1});
  EXPECT_EQ(connected(kByInhibitorArc), Row{2});
  EXPECT_EQ(connected(kByFirstDefinition), Row{3});
  EXPECT_EQ(connected(kBySecondDefinition), Row{});
  EXPECT_EQ(connected(kByMultiplicity), Row{}) << "an output multiplicity, and another transition's";
  EXPECT_EQ(connected(kInAnySense), (Row{0, 1, 2, 3}));
  t.dep2_id = 2;
  arcs[0].kind = kInhibitorArc;
  EXPECT_EQ(connected(kInAnySense), (Row{0, 1, 2, 3, 4, 5}));
  i_matrix = o_matrix = h_matrix = nullptr, transitions = nullptr, md_arcs = nullptr, no_md_arcs = 0;
}

}  // namespace
}  // namespace siphons
