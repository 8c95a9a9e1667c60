// The end of a net.
#pragma once

#include <memory>

#include "net/net.h"

namespace siphons {

/// Releases a net and what it owns; null is ignored. On purpose the transition table stays, with the texts of
/// general distributions (kDelayPmf) and the enabling functions of timed transitions: they remain reachable
/// until the process ends.
void free_net(Net* net);

struct NetDeleter {
  void operator()(Net* net) const { free_net(net); }
};

using OwnedNet = std::unique_ptr<Net, NetDeleter>;

}  // namespace siphons
