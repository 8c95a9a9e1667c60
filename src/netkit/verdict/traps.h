// Marked traps among the places that are empty in a candidate: what shows that no reachable marking has them
// all empty.
//
// A trap is a set of places such that every transition that takes from it gives back to it; once it holds a
// token, it always does. Unions of traps are traps, so every set of places holds a greatest one, found in
// time linear in the arcs: the greatest siphon of the net with all arcs turned (netkit/siphons). Marking-
// dependent output arcs may give nothing back, so no trap rests on them.
#pragma once

#include <cstdint>
#include <vector>

#include "netkit/model/petri_net.h"
#include "netkit/siphons/siphon_within.h"

namespace siphons {

/// Whether the places (each once) are a trap that holds a token initially, told arc by arc from the record.
bool IsMarkedTrap(const PetriNet& net, const PlaceList& places);

class TrapFinder {
 public:
  /// The net must outlive the object.
  explicit TrapFinder(const PetriNet& net);
  TrapFinder(const TrapFinder&) = delete;
  TrapFinder& operator=(const TrapFinder&) = delete;
  ~TrapFinder() = default;

  /// Initially marked traps among the places, none of whose places is in another one, each with few places;
  /// `most` at most. None exactly when no trap among the places is marked.
  std::vector<PlaceList> MarkedTraps(const PlaceList& places, size_t most);

 private:
  PlaceList Shrunk(const PlaceList& trap, int32_t marked);

  const PetriNet& net_;
  ArcSets reversed_;
  SiphonWithin greatest_;
};

}  // namespace siphons
