// What must hold between two constraints of the double description iteration, as a check that debug builds
// run.
#pragma once

#include <cstdint>

namespace siphons {

/// Ends the process through assert when, after constraint k, the index tables are not inverse to each other,
/// a pair list names a ray that is gone, or Sat or MinF disagree with the coordinates. Unless
/// RaysAreCertain, only the index tables are looked at. Does nothing under NDEBUG; costs about what
/// evaluating all constraints on all rays costs.
#ifdef NDEBUG
inline void CheckInvariants(uint32_t) {}
#else
void CheckInvariants(uint32_t k);
#endif

}  // namespace siphons
