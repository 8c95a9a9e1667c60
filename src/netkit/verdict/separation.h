// A weighted sum of tokens that tells a marking apart from others.
//
// Wanted are weights of places and a bound such that the sum stays at or above the bound at the markings to
// be kept, and is below it at the one to be cut off. Solved over the rationals by Z3 and multiplied up to
// whole numbers. Markings to be kept enter one by one, the one furthest below the bound first; where one
// cannot be kept together with those before, it is given up. In the end places that can do without a weight
// lose it, so that a person can read the sum.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "netkit/siphons/arc_sets.h"
#include "netkit/verdict/firing_net.h"

namespace siphons {

/// The sum of weight times tokens is `least` at least.
struct MarkingBound {
  std::vector<PlaceTokens> weights;  ///< places ascending, no weight 0
  int64_t least = 0;
};

/// The weighted sum at a marking; nothing where it leaves 64 bits.
std::optional<int64_t> SumAt(const MarkingBound& bound, const Marking& marking);

struct SeparationTask {
  PlaceList places;                                       ///< that may have a weight
  bool anySign = false;                                   ///< weights may be negative
  Marking initial;                                        ///< kept in any case
  Marking away;                                           ///< to be cut off
  std::span<const Marking> keep;                          ///< as many as possible of these are kept
  std::vector<std::span<const PlaceTokens>> mayNotLower;  ///< firings that leave the sum or raise it
};

/// How many of the markings do not meet the bound.
size_t CutOff(const MarkingBound& bound, std::span<const Marking> markings);

/// Nothing where there is no such sum, its numbers are large, or `stop` asks for an end.
std::optional<MarkingBound> Separate(const SeparationTask& task, const std::function<bool()>& stop);

}  // namespace siphons
