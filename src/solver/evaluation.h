// Values of constraints on rays. They are 32-bit sums of 32-bit products, and wrap around.
#pragma once

#include <cstdint>

namespace siphons {

/// Writes the value of the constraint row (Dimension + 1 entries, the first unused) into the status of all
/// rays.
void EvalConstraint(const int32_t* row);

/// For the rays from firstRay on: evaluates constraints firstConstraint to endConstraint - 1 up to the first
/// that the ray violates, sets the Sat bits of those that it does not saturate (clears none), and MinF to the
/// violated one or maxMinF.
void EvalAllConstraints(uint32_t firstRay, int32_t firstConstraint, int32_t endConstraint);

}  // namespace siphons
