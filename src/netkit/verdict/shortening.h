// Shorter sequences into a dead marking: what a walk did in vain is taken out.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "netkit/verdict/firing_net.h"

namespace siphons {

/// A sequence of the given one's firings, in their order, that leads into a dead marking, too: first without
/// the parts that end where they began, then without runs of firings that can be left out, from long to short
/// ones. The given sequence must be one; the net is exact.
std::vector<int32_t> Shortened(const FiringNet& net, std::vector<int32_t> sequence,
                               const std::function<bool()>& stop);

}  // namespace siphons
