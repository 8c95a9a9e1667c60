// One net's siphons by the program's solver and by the plain one, in one process. The plain solver is the
// same code in a namespace of its own, with the files of this folder in place of those that are fast.
#pragma once

#include <cstdint>
#include <vector>

namespace comparison {

using Rows = std::vector<std::vector<int32_t>>;

/// Arc multiplicities, a row per transition and a column per place.
struct Arcs {
  Rows output, input;
};

struct Solution {
  Rows siphons;  ///< 0/1, in the order of the report
  uint64_t rays, pairs, tests;
};

Solution SolveFast(const Arcs& arcs);
Solution SolvePlain(const Arcs& arcs);

}  // namespace comparison
