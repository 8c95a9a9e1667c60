// The keyword table and its handlers. A handler receives the net, the section's text behind the keyword and
// how many sections of its keyword came before; it fills the net, reports faults through the net's error
// function and leaves the section without further effect when that returns. The result is 0 and nobody reads
// it.
//
// place_sections.cpp reads the header sections and the places; transition_sections.cpp the transitions with
// their arcs; definition_sections.cpp parameters, marking-dependent texts and measures.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "net/net.h"

namespace siphons {

using Handler = int32_t (*)(Net& net, const char* text, int32_t occurrence);

int32_t f_nettype(Net& net, const char* text, int32_t occurrence);
int32_t f_descr(Net& net, const char* text, int32_t occurrence);
int32_t f_nplaces(Net& net, const char* text, int32_t occurrence);
int32_t f_ntrans(Net& net, const char* text, int32_t occurrence);
int32_t f_ndelaypar(Net& net, const char* text, int32_t occurrence);
int32_t f_nrewards(Net& net, const char* text, int32_t occurrence);
int32_t f_place(Net& net, const char* text, int32_t occurrence);
int32_t f_trans(Net& net, const char* text, int32_t occurrence);
int32_t f_delaypar(Net& net, const char* text, int32_t occurrence);
int32_t f_delaypar_def(Net& net, const char* text, int32_t occurrence);
int32_t f_delay(Net& net, const char* text, int32_t occurrence);
int32_t f_md_enable(Net& net, const char* text, int32_t occurrence);
int32_t f_md_arc_mult(Net& net, const char* text, int32_t occurrence);
int32_t f_reward(Net& net, const char* text, int32_t occurrence);

struct Keyword {
  std::string_view text;
  Handler handler;
  int32_t count;  ///< sections handled in this load
};

inline constexpr size_t nkeywords = 17;

/// The first row that is a prefix of a line wins, so a keyword stands before those that are its prefixes.
extern std::array<Keyword, nkeywords> keylist;

}  // namespace siphons
