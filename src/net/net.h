// The net model: everything that a net description file says, also what the siphon computation never uses
// (drawing positions, delays, functions, measures), so that the reader can serve other analyses.
//
// A table is an array of records, zero-filled and of the announced size, with one slot for each announced
// item; a slot whose name is null has not been filled. The net owns its tables and a copy of every text.
// Pointers to records point into tables of the same net. Where a value may have one of two forms, the field
// `is_value` or `delay_type` says which field holds it.
//
// A place takes 56 bytes, a transition 184, an arc 40, a point 16, besides the names: a net of 50,000 places,
// as many transitions and 150,000 arcs makes 20 MB.
#pragma once

#include <cstdint>

namespace siphons {

struct NetNames;  // name_index.h

/// Reports a message. `fatal` is 0 for a warning, otherwise the exit status with which DefaultError ends the
/// process; another error function may return from a fatal report, too.
using ErrorFunc = int32_t (*)(const char* message, int32_t fatal);

enum NetType : int32_t { kGspn = 0, kDspn = 1, kEdspn = 2, kCdspn = 3 };

enum TransitionType : int32_t { kImmediate = 0, kExponential = 1, kDeterministic = 2, kGeneral = 3 };

enum DelayType : int32_t {
  kDelayNumber = 0,     ///< delay.value
  kDelayParameter = 1,  ///< delay.parameter
  kDelayMarkdep = 2,    ///< delay.text, a marking-dependent definition
  kDelayPmf = 3,        ///< delay.text, a general distribution
};

enum FiringPolicy : int32_t { kResample = 0, kRaceAge = 1, kRaceEnable = 2 };

struct Position {
  double x, y;
};

struct DelayPar {
  char* name;
  uint8_t is_value;  ///< 1: value; 0: text, null until it is defined
  double value;      ///< 0 once a text has been given
  char* text;
  Position pos;
};

struct NetPlace {
  char* name;
  Position pos, name_pos;
  uint8_t is_value;  ///< 1: marking; 0: marking_par
  int32_t marking;   ///< initial tokens
  DelayPar* marking_par;
};

struct NetArc {
  uint8_t is_value;      ///< 1: multiplicity; 0: md_mult
  int32_t multiplicity;  ///< 0 once it is marking dependent
  char* md_mult;         ///< null until it is defined
  NetPlace* place;
  int32_t npoints;
  Position* point;
};

struct Delay {
  double value;
  DelayPar* parameter;
  char* text;  ///< null until it is defined
};

struct NetTransition {
  char* name;
  TransitionType type;
  DelayType delay_type;
  Delay delay;
  uint8_t inf_server;
  FiringPolicy f_policy;
  int32_t priority;
  char* md_enable;  ///< enabling function or null
  int32_t ninarcs, noutarcs, ninharcs;
  NetArc *inarcs, *outarcs, *inharcs;
  Position pos, name_pos, delay_pos;
  int32_t orient;
  int16_t aux_count;  ///< the three auxiliary fields are stored and never read
  int32_t aux_flag;
  double aux_value;
  int32_t has_md_arcs;  ///< 1 when an arc was written as marking dependent
};

struct RewardMeasure {
  char* name;
  char* def;
};

/// Counts are -1 until announced; after loading they are the numbers of named slots. The tables themselves
/// keep all announced slots.
struct Net {
  NetType nettype;
  char* name;     ///< as handed to load_net
  char* comment;  ///< or null
  ErrorFunc error_func;
  int32_t nplaces, place_slots;
  NetPlace* places;
  int32_t ntrans, transition_slots;
  NetTransition* transitions;
  int32_t ndelaypars, delaypar_slots;
  DelayPar* delaypars;
  int32_t nrewards, reward_slots;
  RewardMeasure* rewards;
  NetNames* names;  ///< the slots of places, transitions and parameters by name; owned
};

/// A text of the net, or "" for one that it does not have: a slot that was never filled has no name.
inline const char* TextOrEmpty(const char* text) {
  return text != nullptr ? text : "";
}

}  // namespace siphons
