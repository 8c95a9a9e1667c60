// The keyword table. A handler receives the net, the section's text behind the keyword and how many sections
// of its keyword came before; it fills the net, reports faults through the net's error function and leaves
// the section without further effect when that returns. Its result is always 0 and is not used.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "net/net.h"

namespace siphons {

using Handler = int32_t (*)(Net& net, const char* text, int32_t occurrence);

struct Keyword {
  std::string_view text;
  Handler handler;
  int32_t count;  ///< sections handled in this load
};

inline constexpr size_t nkeywords = 17;

/// The first row that is a prefix of a line wins, so a keyword stands before those that are its prefixes.
extern std::array<Keyword, nkeywords> keylist;

}  // namespace siphons
