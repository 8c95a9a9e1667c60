// The greatest siphon within a set of places, and how it shrinks when places leave it.
//
// Unions of siphons are siphons, so every set of places holds a greatest one. It is what is left when places
// that no siphon within the set can hold have gone: an output place of a transition without an input place in
// the set. Every transition counts its input places in the set; when a count drops to 0 its output places
// follow. A removal costs at most as much as the arcs of the places that go.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "netkit/siphons/arc_sets.h"

namespace siphons {

class SiphonWithin {
 public:
  /// Empty at first. The arcs must outlive the object.
  explicit SiphonWithin(const ArcSets& arcs);

  /// Becomes the greatest siphon within these places (each once). No place is kept.
  void Assign(std::span<const int32_t> places);

  /// From now on the place, which it holds, is kept.
  void Keep(int32_t place) { kept_[static_cast<size_t>(place)] = true; }

  /// From now on no place is kept.
  void KeepNothing() { kept_.assign(kept_.size(), false); }

  /// Becomes the greatest siphon without this place, which it holds, and returns true; or stays as it is and
  /// returns false when a kept place would go, or all places. `gone` is then what went until that was clear,
  /// each after a place that it follows; the first is the place itself.
  bool TryRemove(int32_t place, PlaceList& gone);

  /// Becomes a siphon within itself that loses no further place without losing a kept one or all; without
  /// kept places, a minimal one. What it holds then is kept. False when `stop`, asked often, returned true.
  bool Shrink(const std::function<bool()>& stop);

  bool Keeps(int32_t place) const { return kept_[static_cast<size_t>(place)]; }
  bool Holds(int32_t place) const { return holds_[static_cast<size_t>(place)]; }
  /// Its places, ascending.
  PlaceList Places() const;

 private:
  void Drop(int32_t place);
  bool Settle(size_t from);
  void TakeBack(size_t removals);

  const ArcSets& arcs_;
  std::vector<std::vector<int32_t>> consumers_, producers_;  ///< transitions by input and by output place
  std::vector<int32_t> inputsHeld_;                          ///< by transition
  std::vector<bool> holds_, kept_;                           ///< by place
  PlaceList assigned_;
  PlaceList removed_;  ///< since Assign, in order
};

}  // namespace siphons
