#include "netkit/siphons/job_split.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <numeric>
#include <utility>

namespace siphons {

namespace {

/// Appends the job around what is held, which is not empty.
void AppendAround(const SiphonJob& job, const PlaceList& places, PlaceList held,
                  const std::vector<PlaceList>& known, SiphonParts& parts, std::vector<SiphonJob>& jobs) {
  PlaceList around = parts.Around(places, held);
  if (around.empty()) return;
  SiphonJob part{job.component, std::move(around), std::move(held), {}, job.splits};
  std::vector<int8_t> among(static_cast<size_t>(job.component->arcs.placeCount));
  for (const int32_t p : part.places) among[static_cast<size_t>(p)] = 1;
  const auto belongs = [&](const PlaceList& siphon) {
    const auto has = [&siphon](int32_t p) { return std::binary_search(siphon.begin(), siphon.end(), p); };
    const auto isAmong = [&among](int32_t p) { return among[static_cast<size_t>(p)] != 0; };
    return std::all_of(part.held.begin(), part.held.end(), has) &&
           std::all_of(siphon.begin(), siphon.end(), isAmong);
  };
  std::copy_if(known.begin(), known.end(), std::back_inserter(part.known), belongs);
  jobs.push_back(std::move(part));
}

}  // namespace

std::optional<int32_t> MiddlePlace(const std::vector<PlaceList>& siphons, int32_t placeCount) {
  std::vector<int64_t> counts(static_cast<size_t>(placeCount));
  for (const PlaceList& siphon : siphons) {
    for (const int32_t p : siphon) ++counts[static_cast<size_t>(p)];
  }
  const int64_t all = static_cast<int64_t>(siphons.size());
  const auto fromMiddle = [all](int64_t count) { return std::abs(2 * count - all); };
  const auto middle = std::min_element(counts.begin(), counts.end(),
                                       [&](int64_t a, int64_t b) { return fromMiddle(a) < fromMiddle(b); });
  if (middle == counts.end() || fromMiddle(*middle) == all) return std::nullopt;
  return static_cast<int32_t>(middle - counts.begin());
}

SiphonJob WholeJob(Component component) {
  SiphonJob job;
  job.places.resize(component.places.size());
  std::iota(job.places.begin(), job.places.end(), 0);
  job.component = std::make_shared<const Component>(std::move(component));
  return job;
}

void AppendWith(const SiphonJob& job, const PlaceList& places, int32_t place,
                const std::vector<PlaceList>& known, SiphonParts& parts, std::vector<SiphonJob>& jobs) {
  PlaceList held = job.held;
  held.insert(std::lower_bound(held.begin(), held.end(), place), place);
  AppendAround(job, places, std::move(held), known, parts, jobs);
}

void AppendWithout(const SiphonJob& job, PlaceList places, int32_t place, const std::vector<PlaceList>& known,
                   SiphonParts& parts, std::vector<SiphonJob>& jobs) {
  places.erase(std::remove(places.begin(), places.end(), place), places.end());
  if (job.held.empty()) {
    AppendParts(job, std::move(places), known, parts, jobs);
  } else {
    AppendAround(job, places, job.held, known, parts, jobs);
  }
}

void AppendParts(const SiphonJob& job, PlaceList places, const std::vector<PlaceList>& known,
                 SiphonParts& parts, std::vector<SiphonJob>& jobs) {
  for (Component& component : ComponentsOf(job.component->arcs, parts.Split(std::move(places)))) {
    const PlaceList own = component.places;
    for (int32_t& p : component.places) p = job.component->places[static_cast<size_t>(p)];
    jobs.push_back(WholeJob(std::move(component)));
    for (PlaceList siphon : known) {
      if (!std::includes(own.begin(), own.end(), siphon.begin(), siphon.end())) continue;
      for (int32_t& p : siphon)
        p = static_cast<int32_t>(std::lower_bound(own.begin(), own.end(), p) - own.begin());
      jobs.back().known.push_back(std::move(siphon));
    }
  }
}

}  // namespace siphons
