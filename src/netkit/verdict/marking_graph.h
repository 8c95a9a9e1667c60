// The reachable markings of a net, as many as a limit allows, and from which of them it can go on for ever.
//
// A net need not block at a marking from which some way on never ends. Markings without a way on are taken
// out, then those whose ways all lead into what was taken out, and so on; from what is left the net need not
// block. Linear in the firings of the graph. Where the limit is met, the markings that were not expanded
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
  bool NeedNotBlock(int32_t number) const { return goesOn_[static_cast<size_t>(number)]; }

 private:
  bool Explore(const FiringNet& net, int32_t most, const std::function<bool()>& stop);
  void FindWhatGoesOn();

  struct Firing {
    int32_t from, to;
  };
  MarkingStore store_;
  std::vector<Firing> firings_;
  std::vector<bool> goesOn_;
  bool complete_;
};

}  // namespace siphons
