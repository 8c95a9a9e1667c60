// Variables and literals of the search: a literal is a variable or its negation, both small numbers that
// serve as indices.
#pragma once

#include <cstdint>

namespace siphons {

using Variable = uint32_t;
using Literal = uint32_t;

constexpr Literal Holds(Variable variable) {
  return 2 * variable;
}
constexpr Literal Lacks(Variable variable) {
  return 2 * variable + 1;
}
constexpr Literal Negated(Literal literal) {
  return literal ^ 1U;
}
constexpr Variable VariableOf(Literal literal) {
  return literal >> 1;
}

}  // namespace siphons
