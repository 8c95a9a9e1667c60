// The decomposition of a net into subnets, for analyses that treat immediate transitions apart: one subnet of
// all timed transitions with the independent places (those that no immediate transition touches), and one for
// each connected group of immediate transitions and the places that they touch.
#pragma once

#include <cstdint>

#include "structure/struct_vars.h"

namespace siphons {

/// A set of small numbers: the first byte is their count. Null counts as empty.
using byte_set = uint8_t*;

/// An extended conflict set, by positions of transitions within the subnet.
struct ecs_rec {
  byte_set set;
  ecs_rec* next;
};

/// One subnet. place_list has one entry per place of the subnet, every other table one per transition.
/// Nothing is ever released.
struct subnet_rec {
  int32_t number;  ///< 1 for the timed transitions, then 2, 3, … in the order found
  int32_t ntrans;
  int32_t nplaces;
  int32_t necs;
  int32_t* trans;
  int32_t* place_list;
  byte_set* tsets_a;  ///< per transition, or null: an analysis outside this program would fill them
  byte_set* tsets_b;
  ecs_rec* ecs;  ///< null, for the same reason
  sp_matrix i_rows, o_rows, h_rows;
  sp_matrix c_rows;  ///< O - I
  subnet_rec* next;
};

extern subnet_rec* subnets;
extern int32_t no_subnets;  ///< subnets of immediate transitions: the first record is not counted

/// Builds the subnets; once, after the tables of struct_vars.h with c_matrix. Returns 0.
/// The rows of the timed transitions are moved into the first subnet: from then on i_matrix, o_matrix,
/// h_matrix and c_matrix hold those of the immediate transitions only. The rows of the other subnets are
/// copies whose indices are positions in place_list.
int32_t calc_subnets();

/// In which sense a transition and a place are connected.
enum Connection : int32_t {
  kByInputArc = 0,
  kByOutputArc = 1,
  kByInhibitorArc = 2,
  kByFirstDefinition = 10,   ///< dep1_places
  kBySecondDefinition = 11,  ///< dep2_places
  kByMultiplicity = 12,  ///< a marking-dependent input or inhibitor multiplicity that depends on the place
  kInAnySense = 255,
};

/// 1 when transition t and place p are connected in the sense of `mode`, else 0.
int32_t is_connected(int32_t t, int32_t p, int32_t mode);

/// Makes transition t entry j of the subnet, with its global rows (shared).
void found_transition(subnet_rec* subnet, int32_t t, int32_t j);

/// Orders place_list by bound, places without a bound last; ties keep their order.
void sort_places(subnet_rec* subnet);

/// Copies a row with indices renumbered to positions in place_list; a place that is not in the list keeps its
/// number.
void inner_matrix(const subnet_rec* subnet, sp_entry** out, const sp_entry* row);

/// Replaces the subnet's arc rows by renumbered copies of the global rows of its transitions.
void get_subnet_matrices(subnet_rec* subnet);

}  // namespace siphons
