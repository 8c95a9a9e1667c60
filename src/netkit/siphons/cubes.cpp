// Jobs are cut (cube and conquer; Heule et al. 2011) at a place that about half of a small sample of their
// siphons have, the first ones that a search meets, until there are many for each part. The job with the most
// places left goes first, since the number of siphons grows with these. A job that is done within its sample
// is left whole. The parts get the jobs in turn. Every machine does all of the cutting, about 1 ms for a job,
// so there are no more jobs than a fair division needs; what the samples find is found again by the part that
// the job falls to.
#include "netkit/siphons/cubes.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "netkit/siphons/job_search.h"
#include "netkit/siphons/job_split.h"
#include "netkit/siphons/last_parts.h"

namespace siphons {

namespace {

constexpr size_t kSample = 16;
constexpr size_t kJobsPerPart = 32;

/// What the job becomes when it is cut; the job itself when it is small.
std::vector<SiphonJob> Cut(SiphonJob job, SiphonParts& parts, bool& isSmall) {
  std::vector<PlaceList> sample;
  const auto take = [&sample](const PlaceList& siphon) {
    sample.push_back(siphon);
    return sample.size() < kSample;
  };
  const JobEnd end = JobSearch(job, JobLimits(), parts).Run(take, [] { return false; });
  std::vector<SiphonJob> cut;
  const std::optional<int32_t> place = MiddlePlace(sample, job.component->arcs.placeCount);
  isSmall = end == JobEnd::kExhausted || !place;
  if (isSmall) {
    cut.push_back(std::move(job));
    return cut;
  }
  AppendWith(job, job.places, *place, {}, parts, cut);
  AppendWithout(job, job.places, *place, {}, parts, cut);
  return cut;
}

bool HasFewerPlacesLeft(const SiphonJob& a, const SiphonJob& b) {
  return a.places.size() - a.held.size() < b.places.size() - b.held.size();
}

}  // namespace

std::vector<SiphonJob> JobsOfPart(std::vector<SiphonJob> jobs, int32_t part, int32_t parts) {
  const size_t wanted = kJobsPerPart * static_cast<size_t>(parts);
  std::vector<SiphonJob> open = std::move(jobs);  // a heap
  std::make_heap(open.begin(), open.end(), HasFewerPlacesLeft);
  LastParts lastParts;
  std::vector<SiphonJob> small;
  while (!open.empty() && open.size() + small.size() < wanted) {
    std::pop_heap(open.begin(), open.end(), HasFewerPlacesLeft);
    SiphonJob job = std::move(open.back());
    open.pop_back();
    SiphonParts& partsOfJob = lastParts.Of(job.component);
    bool isSmall = false;
    std::vector<SiphonJob> pieces = Cut(std::move(job), partsOfJob, isSmall);
    for (SiphonJob& piece : pieces) {
      if (isSmall) {
        small.push_back(std::move(piece));
      } else {
        open.push_back(std::move(piece));
        std::push_heap(open.begin(), open.end(), HasFewerPlacesLeft);
      }
    }
  }
  std::move(open.begin(), open.end(), std::back_inserter(small));
  std::vector<SiphonJob> mine;
  for (size_t i = static_cast<size_t>(part - 1); i < small.size(); i += static_cast<size_t>(parts))
    mine.push_back(std::move(small[i]));
  return mine;
}

}  // namespace siphons
