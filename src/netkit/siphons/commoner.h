// Commoner's condition: every siphon holds a trap that is marked initially. It is enough to look at the
// minimal siphons, and at the greatest trap within each.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "netkit/siphons/arc_sets.h"

namespace siphons {

/// A minimal siphon without an initially marked trap.
struct CommonerViolation {
  PlaceList siphon;
  PlaceList trap;  ///< the greatest trap within it, which may be empty
};

struct CommonerResult {
  int64_t siphons = 0;   ///< minimal siphons looked at
  bool complete = true;  ///< these were all
  std::vector<CommonerViolation> violations;
};

/// Looks at the minimal siphons, until `stop` returns true; `seen` is called after each. `marked` tells, by
/// place, whether it has tokens initially.
CommonerResult CheckCommoner(const ArcSets& arcs, const std::vector<bool>& marked,
                             const std::function<void()>& seen, const std::function<bool()>& stop);

}  // namespace siphons
