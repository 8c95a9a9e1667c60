// How an enumeration is divided among machines that know nothing of each other: every one cuts all jobs into
// the same small ones, and takes its share of these.
#pragma once

#include <cstdint>
#include <vector>

#include "netkit/siphons/siphon_job.h"

namespace siphons {

/// The jobs of one part, 1 to `parts`; the parts together are what `jobs` are, and no siphon is in two.
std::vector<SiphonJob> JobsOfPart(std::vector<SiphonJob> jobs, int32_t part, int32_t parts);

}  // namespace siphons
