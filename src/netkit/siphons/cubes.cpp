// Jobs are cut (cube and conquer; Heule et al. 2011) at a place that about half of a small sample of their
// siphons have, the first ones that a search meets, until there are many for each part. How many siphons a
// piece has is not known; it grows with the number of places that are still undecided when what follows from
// the cut is drawn, which the search of the sample knows. The piece with the most goes first. A job that is
// done within its sample is left whole. The parts get the pieces in turn, the greatest first. Every machine
// does all of the cutting, about 1 ms for a job, so there are no more pieces than a fair division needs; what
// the samples find is found again by the part that the piece falls to.
#include "netkit/siphons/cubes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
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

struct Piece {
  SiphonJob job;
  size_t undecided;  ///< places, at most
};

bool SeemsSmaller(const Piece& a, const Piece& b) {
  return a.undecided < b.undecided;
}

void AppendPieces(std::vector<SiphonJob> jobs, size_t undecided, std::vector<Piece>& pieces) {
  for (SiphonJob& job : jobs) {
    const size_t most = std::min(undecided, job.places.size() - job.held.size());
    pieces.push_back({std::move(job), most});
  }
}

/// What the job becomes when it is cut; nothing when it is small.
std::vector<Piece> Cut(const SiphonJob& job, SiphonParts& parts) {
  std::vector<PlaceList> sample;
  const auto take = [&sample](const PlaceList& siphon) {
    sample.push_back(siphon);
    return sample.size() < kSample;
  };
  JobSearch search(job, JobLimits(), parts);
  if (search.Run(take, [] { return false; }) == JobEnd::kExhausted) return {};
  const std::optional<int32_t> place = MiddlePlace(sample, job.component->arcs.placeCount);
  if (!place) return {};
  std::vector<SiphonJob> with, without;
  AppendWith(job, job.places, *place, {}, parts, with);
  AppendWithout(job, job.places, *place, {}, parts, without);
  std::vector<Piece> pieces;
  AppendPieces(std::move(with), search.UndecidedAfter(*place, true), pieces);
  AppendPieces(std::move(without), search.UndecidedAfter(*place, false), pieces);
  return pieces;
}

}  // namespace

std::vector<SiphonJob> JobsOfPart(std::vector<SiphonJob> jobs, int32_t part, int32_t parts) {
  const size_t wanted = kJobsPerPart * static_cast<size_t>(parts);
  std::vector<Piece> open, small;  // the open ones are a heap
  AppendPieces(std::move(jobs), SIZE_MAX, open);
  std::make_heap(open.begin(), open.end(), SeemsSmaller);
  LastParts lastParts;
  while (!open.empty() && open.size() + small.size() < wanted) {
    std::pop_heap(open.begin(), open.end(), SeemsSmaller);
    Piece piece = std::move(open.back());
    open.pop_back();
    std::vector<Piece> cut = Cut(piece.job, lastParts.Of(piece.job.component));
    if (cut.empty()) small.push_back({std::move(piece.job), 0});
    for (Piece& smaller : cut) {
      open.push_back(std::move(smaller));
      std::push_heap(open.begin(), open.end(), SeemsSmaller);
    }
  }
  std::move(small.begin(), small.end(), std::back_inserter(open));
  std::stable_sort(open.begin(), open.end(),
                   [](const Piece& a, const Piece& b) { return SeemsSmaller(b, a); });
  std::vector<SiphonJob> mine;
  for (size_t i = static_cast<size_t>(part - 1); i < open.size(); i += static_cast<size_t>(parts))
    mine.push_back(std::move(open[i].job));
  return mine;
}

}  // namespace siphons
