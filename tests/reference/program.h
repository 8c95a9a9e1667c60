// The program's solver on the reference's inputs, its answers in the reference's form.
#pragma once

#include "tests/reference/reference.h"

namespace reference {

/// As Solve and SolveNet; counters are those of this solve, what is printed goes to standard output. Pairs
/// are recorded where asked for.
Answer SolveByProgram(const Rows& constraints, uint32_t maxRays);
Answer SolveNetByProgram(const Arcs& arcs, bool withPairs = true);

}  // namespace reference
