#include "netkit/siphons/commoner.h"

#include <algorithm>
#include <span>
#include <utility>

#include "netkit/siphons/minimal_siphons.h"
#include "netkit/siphons/siphon_within.h"

namespace siphons {

CommonerResult CheckCommoner(const ArcSets& arcs, const std::vector<bool>& marked,
                             const std::function<void()>& seen, const std::function<bool()>& stop) {
  const ArcSets reversed = Reversed(arcs);
  SiphonWithin trap(reversed);
  CommonerResult result;
  const auto look = [&](std::span<const int32_t> siphon) {
    ++result.siphons;
    seen();
    trap.Assign(siphon);
    PlaceList places = trap.Places();
    const bool holds = std::any_of(places.begin(), places.end(),
                                   [&marked](int32_t p) { return marked[static_cast<size_t>(p)]; });
    if (!holds) result.violations.push_back({{siphon.begin(), siphon.end()}, std::move(places)});
    return true;
  };
  result.complete = ForEachMinimalSiphon(arcs, {AllPlaces(arcs), {}}, look, stop);
  return result;
}

}  // namespace siphons
