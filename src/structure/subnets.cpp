// The decomposition. Groups of immediate transitions grow by passes: the places of the transitions found
// last, then the transitions of those places, until a pass adds nothing. Connection is looked up pair by
// pair, so a decomposition costs transitions times places times the length of a row.
#include <algorithm>
#include <cstdio>
#include <utility>

#include "net/memory.h"
#include "structure/sparse.h"
#include "structure/struct_subnet.h"

namespace siphons {

subnet_rec* subnets = nullptr;
int32_t no_subnets = 0;

namespace {

constexpr int32_t kTimedSubnet = 1;

bool RowHolds(const sp_entry* row, int32_t place) {
  while (row != nullptr && row->index != place) row = row->next;
  return row != nullptr;
}

bool DependsOn(int32_t id, const int32_t* dependsOn, int32_t place) {
  return id != 0 && dependsOn != nullptr && dependsOn[place] != 0;
}

/// What an output multiplicity depends on does not connect.
bool MultiplicityDependsOn(int32_t t, int32_t place) {
  return std::any_of(md_arcs, md_arcs + std::max(no_md_arcs, 0), [t, place](const md_arc_def& arc) {
    return arc.trans == t && arc.kind != kOutputArc && arc.depends[place] != 0;
  });
}

/// A record with room for so many transitions and places.
subnet_rec* NewSubnet(int32_t number, int32_t transitionRoom, int32_t placeRoom) {
  subnet_rec* const subnet = NewTable<subnet_rec>(1);
  subnet->number = number;
  subnet->trans = NewTable<int32_t>(transitionRoom);
  subnet->place_list = NewTable<int32_t>(placeRoom);
  for (sp_matrix* rows : {&subnet->i_rows, &subnet->o_rows, &subnet->h_rows, &subnet->c_rows}) {
    *rows = NewTable<sp_entry*>(transitionRoom);
  }
  return subnet;
}

/// The first record: the timed transitions, their rows moved out of the global matrices.
subnet_rec* TimedSubnet() {
  subnet_rec* const subnet = NewSubnet(kTimedSubnet, no_timed_trans, no_places);
  for (int32_t t = 0; t < no_trans; ++t) {
    if (transitions[t].kind == kKindImmediate) continue;
    const int32_t j = subnet->ntrans++;
    found_transition(subnet, t, j);
    subnet->c_rows[j] = c_matrix[t];
    for (const sp_matrix matrix : {i_matrix, o_matrix, h_matrix, c_matrix}) matrix[t] = nullptr;
  }
  return subnet;
}

/// Gives the places that no immediate transition touches to the first record.
void TakeIndependentPlaces(subnet_rec* timed) {
  for (int32_t p = 0; p < no_places; ++p) {
    bool touched = false;
    for (int32_t t = 0; t < no_trans && !touched; ++t) {
      touched = transitions[t].kind == kKindImmediate && is_connected(t, p, kInAnySense) != 0;
    }
    places[p].subnet = touched ? 0 : kTimedSubnet;
    if (!touched) timed->place_list[timed->nplaces++] = p;
  }
  sort_places(timed);
}

void TakePlacesOf(subnet_rec* subnet, int32_t t) {
  for (int32_t p = 0; p < no_places; ++p) {
    if (places[p].subnet != 0 || is_connected(t, p, kInAnySense) == 0) continue;
    places[p].subnet = subnet->number;
    subnet->place_list[subnet->nplaces++] = p;
  }
}

void TakeTransitionsOf(subnet_rec* subnet, int32_t p) {
  for (int32_t t = 0; t < no_trans; ++t) {
    if (transitions[t].subnet == 0 && is_connected(t, p, kInAnySense) != 0) {
      found_transition(subnet, t, subnet->ntrans++);
    }
  }
}

/// The transitive closure of connection: adds everything that is connected with the subnet's first
/// transition, directly or through others.
void TakeConnected(subnet_rec* subnet) {
  int32_t nextTransition = 0;
  int32_t nextPlace = 0;
  while (nextTransition < subnet->ntrans) {
    const int32_t transitionEnd = subnet->ntrans;
    while (nextTransition < transitionEnd) TakePlacesOf(subnet, subnet->trans[nextTransition++]);
    const int32_t placeEnd = subnet->nplaces;
    while (nextPlace < placeEnd) TakeTransitionsOf(subnet, subnet->place_list[nextPlace++]);
  }
}

/// The subnet of an immediate transition.
subnet_rec* ImmediateSubnet(int32_t seed) {
  ++no_subnets;
  const int32_t transitionRoom = static_cast<int32_t>(std::count_if(
      transitions, transitions + no_trans, [](const struct_trans& t) { return t.subnet == 0; }));
  const int32_t placeRoom = static_cast<int32_t>(
      std::count_if(places, places + no_places, [](const struct_place& p) { return p.subnet == 0; }));
  subnet_rec* const subnet = NewSubnet(no_subnets + 1, transitionRoom, placeRoom);
  found_transition(subnet, seed, subnet->ntrans++);
  TakeConnected(subnet);
  sort_places(subnet);
  get_subnet_matrices(subnet);
  for (int32_t j = 0; j < subnet->ntrans; ++j) {
    subnet->c_rows[j] = sparse_function_row(subnet->o_rows[j], subnet->i_rows[j], minus);
  }
  return subnet;
}

}  // namespace

int32_t calc_subnets() {
  if (subnet_bit != 0) std::puts("\nCalculating immediate transition subnets...");
  std::for_each(transitions, transitions + no_trans, [](struct_trans& t) { t.subnet = 0; });
  no_subnets = 0;
  subnets = TimedSubnet();
  TakeIndependentPlaces(subnets);
  subnet_rec* last = subnets;
  for (int32_t t = 0; t < no_trans; ++t) {
    if (transitions[t].subnet != 0) continue;
    last->next = ImmediateSubnet(t);
    last = last->next;
  }
  return 0;
}

int32_t is_connected(int32_t t, int32_t p, int32_t mode) {
  const struct_trans& transition = transitions[t];
  const auto asked = [mode](Connection sense) { return mode == sense || mode == kInAnySense; };
  const bool connected =
      (asked(kByInputArc) && RowHolds(i_matrix[t], p)) || (asked(kByOutputArc) && RowHolds(o_matrix[t], p)) ||
      (asked(kByInhibitorArc) && RowHolds(h_matrix[t], p)) ||
      (asked(kByFirstDefinition) && DependsOn(transition.dep1_id, transition.dep1_places, p)) ||
      (asked(kBySecondDefinition) && DependsOn(transition.dep2_id, transition.dep2_places, p)) ||
      (asked(kByMultiplicity) && MultiplicityDependsOn(t, p));
  return connected ? 1 : 0;
}

void found_transition(subnet_rec* subnet, int32_t t, int32_t j) {
  subnet->trans[j] = t;
  subnet->i_rows[j] = i_matrix[t];
  subnet->o_rows[j] = o_matrix[t];
  subnet->h_rows[j] = h_matrix[t];
  transitions[t].subnet = subnet->number;
}

void sort_places(subnet_rec* subnet) {
  // Exchanges of neighbours, repeated until a pass makes none: the order of bounds below 0 follows from the
  // passes.
  int32_t* const list = subnet->place_list;
  bool swapped = true;
  while (swapped) {
    swapped = false;
    for (int32_t k = 1; k < subnet->nplaces; ++k) {
      const int32_t a = places[list[k - 1]].bound;
      const int32_t b = places[list[k]].bound;
      if (b == 0 || (a != 0 && a <= b)) continue;
      std::swap(list[k - 1], list[k]);
      swapped = true;
    }
  }
}

void inner_matrix(const subnet_rec* subnet, sp_entry** out, const sp_entry* row) {
  *out = nullptr;
  const int32_t* const end = subnet->place_list + subnet->nplaces;
  for (; row != nullptr; row = row->next) {
    sp_entry* const copy = NewTable<sp_entry>(1);
    *copy = *row;
    const int32_t* const found = std::find(static_cast<const int32_t*>(subnet->place_list), end, row->index);
    if (found != end) copy->index = static_cast<int32_t>(found - subnet->place_list);
    sp_insert(out, copy);
  }
}

void get_subnet_matrices(subnet_rec* subnet) {
  for (int32_t j = 0; j < subnet->ntrans; ++j) {
    const int32_t t = subnet->trans[j];
    inner_matrix(subnet, &subnet->i_rows[j], i_matrix[t]);
    inner_matrix(subnet, &subnet->o_rows[j], o_matrix[t]);
    inner_matrix(subnet, &subnet->h_rows[j], h_matrix[t]);
  }
}

}  // namespace siphons
