// A piece of an enumeration: all minimal siphons of a component that lie within some places and hold some
// others. What one job finds depends on nothing else, so jobs can run in any order, at the same time, and on
// different machines.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "netkit/siphons/arc_sets.h"
#include "netkit/siphons/component.h"

namespace siphons {

/// Places are numbers of the component.
struct SiphonJob {
  std::shared_ptr<const Component> component;
  PlaceList places;                ///< a strongly connected siphon, no place of which is one alone
  PlaceList held;                  ///< some of the places, ascending, which all siphons of the job have
  std::vector<PlaceList> known{};  ///< siphons of the job that are not wanted again
  bool splits = true;              ///< whether a long job is worth splitting further
};

/// What bounds a job.
struct JobLimits {
  size_t answers = 500;        ///< siphons, known ones too, after which it is split
  uint64_t conflicts = 20000;  ///< the same
  uint64_t steps = 20000;      ///< of one phase at least, before it becomes a job of its own
  /// If not null, greater siphons are not wanted. The number may fall meanwhile.
  const std::atomic<int32_t>* mostPlaces = nullptr;
  bool smallestFirst = false;             ///< whether a job finds its siphons by their size; with mostPlaces
  std::atomic<uint64_t>* work = nullptr;  ///< if not null, the steps of all jobs are added up here
};

enum class JobEnd {
  kExhausted,  ///< there is no other siphon
  kSplit,      ///< the rest is in Remainder()
  kStopped,    ///< as asked
};

}  // namespace siphons
