// The parts of a set of places in which its minimal siphons lie, one part each.
//
// A minimal siphon is strongly connected: let place q lead to place p when a transition takes from q and puts
// into p. Among the places of a siphon, those of a strongly connected component that no other leads to are a
// siphon by themselves. So every minimal siphon lies within one component of the greatest siphon, and within
// the greatest siphon of that component, and so on until nothing changes. The components are Tarjan's (1972),
// over places and transitions, so that a transition with many arcs costs no more than these; a round costs as
// much as the arcs of the places.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "netkit/siphons/arc_sets.h"
#include "netkit/siphons/siphon_within.h"

namespace siphons {

class SiphonParts {
 public:
  /// The arcs must outlive the object.
  explicit SiphonParts(const ArcSets& arcs);

  /// The parts of the places, disjoint, each ascending, by their first place; each is a siphon and strongly
  /// connected.
  std::vector<PlaceList> Split(PlaceList places);

  /// The part that holds these places, at least one, or nothing when none holds them all.
  PlaceList Around(PlaceList places, const PlaceList& held);

  /// The greatest siphon within a set of places, for other questions.
  SiphonWithin& Within() { return siphon_; }

 private:
  using Node = uint32_t;  ///< a place, or a transition behind all places

  struct Visit {
    Node node;
    size_t next;  ///< of the nodes that lead to it
  };

  bool IsPlace(Node node) const { return node < static_cast<Node>(arcs_.placeCount); }
  std::span<const int32_t> Before(Node node) const;
  Node NodeBefore(const Visit& visit) const;
  void Enter(Node node);
  void Search(Node root, std::vector<PlaceList>& components);
  void Begin(const PlaceList& places);
  std::vector<PlaceList> Components(const PlaceList& places);

  const ArcSets& arcs_;
  SiphonWithin siphon_;
  std::vector<PlaceList> producers_;  ///< transitions by output place
  std::vector<uint32_t> order_;       ///< by node: when it was entered, 0 not yet
  std::vector<uint32_t> low_;
  uint32_t lastOrder_ = 0;
  std::vector<bool> among_, onStack_;
  std::vector<Node> stack_, entered_;
  std::vector<Visit> visits_;
};

}  // namespace siphons
