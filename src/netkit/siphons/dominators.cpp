#include "netkit/siphons/dominators.h"

#include <cassert>
#include <cstddef>
#include <span>

namespace siphons {

namespace {

using Node = uint32_t;  // a place, or a transition behind all places

constexpr uint32_t kNone = UINT32_MAX;

/// The nodes in an order in which each comes before what leads to the root only through it. A node is called
/// by its rank in this order, the root by 0.
class RankedNodes {
 public:
  RankedNodes(const JobArcs& arcs, Variable root)
      : arcs_(arcs), places_(static_cast<Node>(arcs.producers.size())), rank_(Count(), kNone) {
    SearchFrom(root);
  }

  Node Count() const { return places_ + static_cast<Node>(arcs_.transitions.size()); }
  Node At(uint32_t rank) const { return order_[Count() - 1 - rank]; }

  template <typename Visit>
  void ForEachRankAfter(uint32_t rank, Visit visit) const {
    const Node node = At(rank);
    if (node < places_) {
      for (const uint32_t t : arcs_.consumers[node]) visit(RankOf(places_ + t));
    } else {
      for (const Variable p : arcs_.transitions[node - places_].outputs) visit(RankOf(p));
    }
  }

 private:
  struct Visit {
    Node node;
    size_t next;  ///< of the nodes that lead to it
  };

  uint32_t RankOf(Node node) const { return Count() - 1 - rank_[node]; }

  std::span<const uint32_t> Before(Node node) const {
    return node < places_ ? arcs_.producers[node] : arcs_.transitions[node - places_].inputs;
  }

  /// Against the arcs, in depth; nodes are ordered by when they are left.
  void SearchFrom(Node root) {
    constexpr uint32_t kEntered = kNone - 1;
    std::vector<Visit> visits;
    visits.push_back({root, 0});
    rank_[root] = kEntered;
    while (!visits.empty()) {
      auto& [node, next] = visits.back();
      const std::span<const uint32_t> before = Before(node);
      if (next == before.size()) {
        rank_[node] = static_cast<uint32_t>(order_.size());
        order_.push_back(node);
        visits.pop_back();
        continue;
      }
      const Node from = node < places_ ? places_ + before[next] : before[next];
      ++next;
      if (rank_[from] != kNone) continue;
      rank_[from] = kEntered;
      visits.push_back({from, 0});
    }
    assert(order_.size() == Count());
  }

  const JobArcs& arcs_;
  const Node places_;
  std::vector<uint32_t> rank_;  ///< by node, the last one 0
  std::vector<Node> order_;     ///< the root last
};

/// By rank, the next node on the way up the tree; the root's is itself.
std::vector<uint32_t> ImmediateDominators(const RankedNodes& nodes) {
  std::vector<uint32_t> above(nodes.Count(), kNone);
  above[0] = 0;
  for (bool isChanged = true; isChanged;) {
    isChanged = false;
    for (uint32_t node = 1; node < nodes.Count(); ++node) {
      uint32_t common = kNone;
      nodes.ForEachRankAfter(node, [&](uint32_t next) {
        if (above[next] == kNone) return;
        if (common == kNone) common = next;
        while (common != next) {
          if (common > next) {
            common = above[common];
          } else {
            next = above[next];
          }
        }
      });
      isChanged = isChanged || above[node] != common;
      above[node] = common;
    }
  }
  return above;
}

}  // namespace

// Every node gets a number so that those below it in the tree have the numbers that follow.
Dominators::Dominators(const JobArcs& arcs, Variable root) {
  const RankedNodes nodes(arcs, root);
  const std::vector<uint32_t> above = ImmediateDominators(nodes);
  std::vector<uint32_t> below(nodes.Count(), 1);  // itself and those below
  for (uint32_t node = nodes.Count(); --node > 0;) below[above[node]] += below[node];
  std::vector<uint32_t> number(nodes.Count()), nextNumber(nodes.Count());
  first_.resize(nodes.Count());
  end_.resize(nodes.Count());
  for (uint32_t node = 0; node < nodes.Count(); ++node) {
    if (node > 0) {
      number[node] = nextNumber[above[node]];
      nextNumber[above[node]] += below[node];
    }
    nextNumber[node] = number[node] + 1;
    first_[nodes.At(node)] = number[node];
    end_[nodes.At(node)] = number[node] + below[node];
  }
}

}  // namespace siphons
