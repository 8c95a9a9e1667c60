// What comes before the search. Places that no siphon can hold go first: what is left is the greatest siphon.
// Places that are a siphon alone are told and go, too, since no other minimal siphon holds them. What is left
// falls into parts, each strongly connected, and each is searched by itself (job_search.h).
#include "netkit/siphons/minimal_siphons.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

#include "netkit/siphons/component.h"
#include "netkit/siphons/cubes.h"
#include "netkit/siphons/job_order.h"
#include "netkit/siphons/job_split.h"
#include "netkit/siphons/siphon_parts.h"

namespace siphons {

namespace {

/// Those of the places that are a siphon alone: every transition that fills one takes from it, too.
PlaceList SinglesOf(const ArcSets& arcs, const PlaceList& places) {
  std::vector<bool> isFilled(static_cast<size_t>(arcs.placeCount));
  for (const ArcSets::Transition& transition : arcs.transitions) {
    for (const int32_t p : transition.outputs) {
      if (!std::binary_search(transition.inputs.begin(), transition.inputs.end(), p))
        isFilled[static_cast<size_t>(p)] = true;
    }
  }
  PlaceList singles;
  std::copy_if(places.begin(), places.end(), std::back_inserter(singles),
               [&isFilled](int32_t p) { return !isFilled[static_cast<size_t>(p)]; });
  return singles;
}

/// The jobs of the siphons of two places or more.
std::vector<SiphonJob> JobsOf(const ArcSets& arcs, const PlaceList& places, PlaceList containing) {
  std::vector<SiphonJob> jobs;
  const ArcSets reduced = WithoutDominatedArcs(arcs, places);
  SiphonParts parts(reduced);
  if (containing.empty()) {
    for (Component& component : ComponentsOf(reduced, parts.Split(places)))
      jobs.push_back(WholeJob(std::move(component)));
    return jobs;
  }
  PlaceList around = parts.Around(places, containing);
  if (around.empty()) return jobs;
  for (int32_t& p : containing)
    p = static_cast<int32_t>(std::lower_bound(around.begin(), around.end(), p) - around.begin());
  std::vector<PlaceList> one;
  one.push_back(std::move(around));
  jobs.push_back(WholeJob(std::move(ComponentsOf(reduced, std::move(one))[0])));
  jobs[0].held = std::move(containing);
  return jobs;
}

}  // namespace

bool EnumerateMinimalSiphons(const ArcSets& arcs, const SiphonQuery& query, int32_t threads,
                             const std::function<bool(std::span<const int32_t>)>& found,
                             const std::function<bool()>& stop) {
  if (stop()) return false;
  PlaceList places, containing = query.containing;
  {
    SiphonWithin greatest(arcs);
    greatest.Assign(query.within);
    places = greatest.Places();
  }
  std::sort(containing.begin(), containing.end());
  containing.erase(std::unique(containing.begin(), containing.end()), containing.end());
  if (!std::includes(places.begin(), places.end(), containing.begin(), containing.end())) return true;

  const PlaceList singles = SinglesOf(arcs, places);
  for (size_t i = 0; i < singles.size(); ++i) {
    const bool isWanted = containing.empty() || containing == PlaceList{singles[i]};
    const bool isOfPart = static_cast<int32_t>(i % static_cast<size_t>(query.parts)) == query.part - 1;
    if (isWanted && isOfPart && (stop() || !found(std::span(&singles[i], 1)))) return false;
  }
  PlaceList others;
  std::set_difference(places.begin(), places.end(), singles.begin(), singles.end(),
                      std::back_inserter(others));

  std::vector<SiphonJob> jobs = JobsOf(arcs, others, std::move(containing));
  if (query.parts > 1) jobs = JobsOfPart(std::move(jobs), query.part, query.parts);
  JobLimits limits;
  limits.mostPlaces = query.mostPlaces;
  limits.smallestFirst = query.smallestFirst;
  limits.work = query.work;
  return RunJobs(
      std::move(jobs), limits, threads, [&found](const PlaceList& siphon) { return found(siphon); }, stop);
}

bool ForEachMinimalSiphon(const ArcSets& arcs, const SiphonQuery& query,
                          const std::function<bool(std::span<const int32_t>)>& found,
                          const std::function<bool()>& stop) {
  return EnumerateMinimalSiphons(arcs, query, 1, found, stop);
}

bool ShorterOrEarlier(const PlaceList& a, const PlaceList& b) {
  return a.size() != b.size() ? a.size() < b.size() : a < b;
}

PlaceList AllPlaces(const ArcSets& arcs) {
  PlaceList places(static_cast<size_t>(arcs.placeCount));
  std::iota(places.begin(), places.end(), 0);
  return places;
}

}  // namespace siphons
