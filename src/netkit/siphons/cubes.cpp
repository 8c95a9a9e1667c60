// Jobs are cut (cube and conquer; Heule et al. 2011) at a place that about half of a small sample of their
// siphons have, the first ones that a search meets, the oldest jobs first, until there are many for each
// part. A job that is done within its sample is left whole. The parts get them in turn. The samples cost each
// machine a fraction of a second; what they find is found again by the part that the job falls to.
#include "netkit/siphons/cubes.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <optional>
#include <utility>

#include "netkit/siphons/job_search.h"
#include "netkit/siphons/job_split.h"

namespace siphons {

namespace {

constexpr size_t kSample = 64;
constexpr size_t kJobsPerPart = 64;

/// What the job becomes when it is cut; the job itself when it is small.
std::vector<SiphonJob> Cut(SiphonJob job, bool& isSmall) {
  SiphonParts parts(job.component->arcs);
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

}  // namespace

std::vector<SiphonJob> JobsOfPart(std::vector<SiphonJob> jobs, int32_t part, int32_t parts) {
  const size_t wanted = kJobsPerPart * static_cast<size_t>(parts);
  std::deque<SiphonJob> open(std::make_move_iterator(jobs.begin()), std::make_move_iterator(jobs.end()));
  std::vector<SiphonJob> small;
  while (!open.empty() && open.size() + small.size() < wanted) {
    SiphonJob job = std::move(open.front());
    open.pop_front();
    bool isSmall = false;
    std::vector<SiphonJob> pieces = Cut(std::move(job), isSmall);
    for (SiphonJob& piece : pieces) {
      if (isSmall) {
        small.push_back(std::move(piece));
      } else {
        open.push_back(std::move(piece));
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
