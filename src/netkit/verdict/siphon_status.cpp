#include "netkit/verdict/siphon_status.h"

#include <algorithm>
#include <cstdlib>

#include "netkit/verdict/explanation.h"

namespace siphons {

const char* TextOf(SiphonStatus status) {
  switch (status) {
    case SiphonStatus::kEmpty:
      return "empty from the start";
    case SiphonStatus::kMarkedTrap:
      return "marked trap inside";
    case SiphonStatus::kNeverRunsDry:
      return "never runs dry";
    case SiphonStatus::kMayRunDry:
      break;
  }
  return "may run dry";
}

SiphonStatuses::SiphonStatuses(const PetriNet& net)
    : net_(net),
      shortBelow_(ShortBelow(net)),
      finder_(net),
      equation_(net, StateEquation::Numbers::kRational, StateEquation::Search::kNeeded) {}

SiphonStatus SiphonStatuses::Of(const PlaceList& siphon, const std::function<bool()>& stop) {
  const auto isEmpty = [this](int32_t p) { return net_.places[static_cast<size_t>(p)].tokens == 0; };
  const auto needsOne = [this](int32_t p) { return shortBelow_[static_cast<size_t>(p)] <= 1; };
  if (std::all_of(siphon.begin(), siphon.end(), isEmpty)) return SiphonStatus::kEmpty;
  if (std::all_of(siphon.begin(), siphon.end(), needsOne) && !finder_.MarkedTraps(siphon, 1).empty()) {
    return SiphonStatus::kMarkedTrap;
  }
  return MayBeShort(siphon, stop) ? SiphonStatus::kMayRunDry : SiphonStatus::kNeverRunsDry;
}

/// Whether the equation has a marking with all places short that no marked trap refutes. Traps hold for every
/// siphon, so they are kept.
bool SiphonStatuses::MayBeShort(const PlaceList& siphon, const std::function<bool()>& stop) {
  constexpr int64_t kSteps = 20'000'000;
  constexpr size_t kTraps = 50;
  std::vector<PlaceList> traps;
  equation_.Push();
  for (const int32_t p : siphon) {
    const int64_t below = shortBelow_[static_cast<size_t>(p)];
    if (below < INT64_MAX) equation_.RequireAtMost(p, below - 1);
  }
  StateEquation::Answer answer = equation_.Solve(kSteps, stop);
  while (answer == StateEquation::Answer::kSolution) {
    const auto found = finder_.MarkedTraps(equation_.EmptyPlaces(), kTraps);
    if (found.empty()) break;
    for (const PlaceList& trap : found) {
      if (!IsMarkedTrap(net_, trap)) std::abort();  // a proof on it would be worthless
      equation_.RequireMarked(trap);
      traps.push_back(trap);
    }
    answer = equation_.Solve(kSteps, stop);
  }
  equation_.Pop();
  for (const PlaceList& trap : traps) equation_.RequireMarked(trap);
  return answer != StateEquation::Answer::kNoSolution;
}

}  // namespace siphons
