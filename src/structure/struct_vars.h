// The structural tables: places and transitions numbered from 0 in the order of the net, and the arcs as
// sparse rows, one per transition. They are built once per process by config_net, extended by read_info, and
// never released. A place takes 64 bytes, a transition 96 and an arc, with what the
// allocator adds, 32: 50,000 of each of the first two with 150,000 arcs make 13 MB. Most transitions have
// fewer than ten arcs, so that rows are short lists.
#pragma once

#include <cstdint>
#include <fstream>

#include "net/net.h"

namespace siphons {

inline constexpr size_t kNameBuffer = 30;  ///< names have at most 29 characters

struct struct_place {
  char name[kNameBuffer];
  int32_t init_mark;      ///< initial tokens
  const char* mark_text;  ///< the marking in decimal digits, or the parameter's name (the net's own text)
  int32_t bound;          ///< token bound, 0 when none is known; nothing here computes it
  int32_t subnet;         ///< subnet that holds the place, 0 while it has none
  int32_t md_arc;         ///< 1 when an arc with a marking-dependent multiplicity touches the place
};

/// What kind a transition of the structural table is. Deterministic and exponential have the numbers 1 and 2
/// here, and 2 and 1 in the net model (TransitionType).
enum StructuralKind : int32_t {
  kKindImmediate = 0,
  kKindDeterministic = 1,
  kKindExponential = 2,
  kKindGeneral = 3,
};

struct struct_trans {
  char name[kNameBuffer];
  StructuralKind kind;
  int32_t md_delay;  ///< transition number + 1 when the delay is marking dependent, else 0
  int32_t md_arc;    ///< 1 when an arc was written as marking dependent
  int32_t inf_server;
  double delay;  ///< set when the delay is a number
  int32_t priority;
  int32_t subnet;  ///< subnet that holds the transition, 0 while it has none
  int32_t index;   ///< the transition's own number
  // Marking-dependent definitions and, as no_places flags, the places they depend on; 0 and null when there
  // are none.
  int32_t dep1_id;
  int32_t* dep1_places;
  int32_t dep2_id;
  int32_t* dep2_places;
};

struct rate_par {
  const char* name;  ///< the net's own text
  int32_t md;        ///< 1: a marking-dependent text; 0: value holds the number
  double value;
};

/// An element of a sparse row. Rows are lists in ascending order of `index`; an arc row may hold an index
/// twice.
struct sp_entry {
  int32_t index;    ///< place number
  int32_t value;    ///< multiplicity, or a difference of multiplicities
  int32_t mark;     ///< 0 in an arc row; in a difference: md_func of the subtracted arc
  int32_t md_func;  ///< identifier of the marking-dependent multiplicity, else 0
  sp_entry* next;
};

/// One row head per transition; null is an empty row.
using sp_matrix = sp_entry**;

enum ArcKind : int32_t { kInputArc = 0, kOutputArc = 1, kInhibitorArc = 2 };

struct md_arc_def {
  ArcKind kind;
  int32_t place;
  int32_t trans;
  int32_t func;      ///< identifier of the multiplicity
  int32_t* depends;  ///< no_places flags
};

extern struct_place* places;
extern int32_t no_places;
extern struct_trans* transitions;
extern int32_t no_trans;
extern int32_t no_timed_trans;  ///< transitions that are not immediate

extern sp_matrix i_matrix;  ///< input arcs
extern sp_matrix o_matrix;  ///< output arcs
extern sp_matrix h_matrix;  ///< inhibitor arcs
extern sp_matrix c_matrix;  ///< incidence O - I

extern rate_par* r_par;  ///< one per definition parameter of the net
extern md_arc_def* md_arcs;
extern int32_t no_md_arcs;

// Switches, 0 at the start; nothing in the siphon run sets them.
extern int32_t pmf_bit;     ///< read_net writes the .pmf file
extern int32_t subnet_bit;  ///< the subnets are summed up on standard output
extern int32_t ecs_bit;     ///< their extended conflict sets are summed up too

extern std::ifstream inf_file;  ///< definition info file
extern char model_name[1000];   ///< the net's name
extern const char* modeldir;    ///< value of MODELDIR
extern Net* model;              ///< the loaded net; the tables share texts with it

}  // namespace siphons
