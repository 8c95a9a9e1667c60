#include "netkit/verdict/marking_graph.h"

#include <algorithm>

namespace siphons {

MarkingGraph::MarkingGraph(const FiringNet& net, int32_t most, const std::function<bool()>& stop)
    : store_(net.Initial()) {
  constexpr int32_t kMostNumbers = 20'000'000;  // of tokens, in all markings together
  complete_ = Explore(net, std::min(most, kMostNumbers / std::max(1, net.PlaceCount())), stop);
}

bool MarkingGraph::Explore(const FiringNet& net, int32_t most, const std::function<bool()>& stop) {
  constexpr int32_t kBetweenQuestions = 64;
  constexpr size_t kMostFirings = 10'000'000;
  bool all = true;
  Marking marking = net.Initial();
  std::vector<int32_t> enabled;
  for (int32_t number = 0; number < Size(); ++number) {
    if (Size() > most || firings_.size() > kMostFirings) return false;
    if (number % kBetweenQuestions == 0 && stop()) return false;
    Get(number, marking);
    net.Enabled(marking, enabled);
    for (const int32_t t : enabled) {
      if (!net.Fire(t, marking)) {  // a number of tokens leaves 64 bits
        all = false;
        continue;
      }
      firings_.push_back({number, t, store_.Enter(number, net.Changes(t), marking).number});
      net.Unfire(t, marking);
    }
  }
  return all;
}

std::vector<bool> MarkingGraph::NeedNotBlock(const std::vector<bool>& uncontrollable,
                                             std::vector<bool> within) const {
  std::vector<std::vector<const Firing*>> before(static_cast<size_t>(Size()));
  std::vector<int32_t> waysOn(before.size());
  for (const Firing& firing : firings_) {
    before[static_cast<size_t>(firing.to)].push_back(&firing);
    ++waysOn[static_cast<size_t>(firing.from)];
  }
  std::vector<int32_t> out;
  for (size_t number = 0; number < within.size(); ++number) {
    if (within[number] && waysOn[number] > 0) continue;
    within[number] = false;
    out.push_back(static_cast<int32_t>(number));
  }
  for (size_t next = 0; next < out.size(); ++next) {
    for (const Firing* firing : before[static_cast<size_t>(out[next])]) {
      const bool isLast = --waysOn[static_cast<size_t>(firing->from)] == 0;
      if (!isLast && !uncontrollable[static_cast<size_t>(firing->transition)]) continue;
      if (!within[static_cast<size_t>(firing->from)]) continue;
      within[static_cast<size_t>(firing->from)] = false;
      out.push_back(firing->from);
    }
  }
  return within;
}

}  // namespace siphons
