// The adjacency test of one pair, row by row.
#pragma once

#include <cstdint>

#include "solver/adjacency_search.h"

namespace siphons {

/// Tests a pair against the rows from TTEST on, at the constraint that AdjWCount and AdjBitmask belong to.
/// Costs one look at every ray. Sat is as before when it returns.
Adjacency TestPair(uint32_t violator, uint32_t satisfier);

}  // namespace siphons
