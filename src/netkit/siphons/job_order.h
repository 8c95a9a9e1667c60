// Runs jobs and what they are split into, on several threads, with answers in an order that does not depend
// on the threads: a job's own answers come first, then those of the jobs that it was split into, then those
// of the next job.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "netkit/siphons/siphon_job.h"

namespace siphons {

/// Calls found(places) for every siphon of the jobs, places of the net, ascending, from the calling thread.
/// Ends early when `found` returns false or `stop`, asked often from the calling thread, returns true. With
/// more than one thread the answers of jobs that run ahead wait in memory.
bool RunJobs(std::vector<SiphonJob> jobs, const JobLimits& limits, int32_t threads,
             const std::function<bool(const PlaceList&)>& found, const std::function<bool()>& stop);

}  // namespace siphons
