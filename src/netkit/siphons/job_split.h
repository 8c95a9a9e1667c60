// How jobs become smaller ones: at a place, into the siphons that hold it and those that do not.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "netkit/siphons/siphon_job.h"
#include "netkit/siphons/siphon_parts.h"

namespace siphons {

/// The place that the number of siphons with it is nearest to half of them all, the least of several; nothing
/// when every place is in all of them or in none. Places are below placeCount.
std::optional<int32_t> MiddlePlace(const std::vector<PlaceList>& siphons, int32_t placeCount);

/// The jobs of the whole component of a net.
SiphonJob WholeJob(Component component);

/// Appends the job of the siphons that hold the place besides what is held, among the remaining places of the
/// job. Those of the known siphons that belong to it are handed on. Appends nothing when there can be none.
void AppendWith(const SiphonJob& job, const PlaceList& places, int32_t place,
                const std::vector<PlaceList>& known, SiphonParts& parts, std::vector<SiphonJob>& jobs);

/// Appends the jobs of the siphons that do not hold the place, in the same way. Where nothing is held these
/// are one for each part of the rest, a component of its own.
void AppendWithout(const SiphonJob& job, PlaceList places, int32_t place, const std::vector<PlaceList>& known,
                   SiphonParts& parts, std::vector<SiphonJob>& jobs);

/// Appends a job for each part of the places, where nothing is held, in the same way.
void AppendParts(const SiphonJob& job, PlaceList places, const std::vector<PlaceList>& known,
                 SiphonParts& parts, std::vector<SiphonJob>& jobs);

}  // namespace siphons
