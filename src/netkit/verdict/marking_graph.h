// The reachable markings of a net, as many as a limit allows, and from which of them it can go on for ever.
//
// A net need not block at a marking from which some way on never ends. Markings without a way on are taken
// out, then those whose ways all lead into what was taken out, and so on; from what is left the net need not
// block. When some transitions cannot be held up, the net can be kept from blocking at fewer markings: a
// marking at which one of these leads into what was taken out goes, too, and with it those that then have no
// way on. Linear in the firings of the graph. Where the limit is met, the markings that were not expanded
// count as blocking: what is left is then a part of the truth, and nothing else.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "netkit/verdict/firing_net.h"
#include "netkit/verdict/marking_store.h"

namespace siphons {

class MarkingGraph {
 public:
  /// Explores breadth first until all markings are there, a limit is met, or `stop` ends it: `most` markings,
  /// and memory for some hundred megabytes of them and of their firings. The net is exact.
  MarkingGraph(const FiringNet& net, int32_t most, const std::function<bool()>& stop);

  /// Whether all reachable markings and firings are there.
  bool Complete() const { return complete_; }
  /// Markings have numbers in the order in which they were found.
  int32_t Size() const { return store_.Size(); }
  void Get(int32_t number, Marking& marking) const { store_.Unpack(number, marking); }

  /// By marking: whether the net can go on from it for ever within the markings of `within`, and keeps to
  /// such markings whatever the given transitions do, by transition.
  std::vector<bool> NeedNotBlock(const std::vector<bool>& uncontrollable, std::vector<bool> within) const;

 private:
  bool Explore(const FiringNet& net, int32_t most, const std::function<bool()>& stop);

  struct Firing {
    int32_t from, transition, to;
  };
  MarkingStore store_;
  std::vector<Firing> firings_;
  bool complete_;
};

}  // namespace siphons
