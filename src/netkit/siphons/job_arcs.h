// The arcs among the places of a job, with numbers of their own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "netkit/siphons/literals.h"
#include "netkit/siphons/siphon_job.h"

namespace siphons {

/// The arcs of a component among the places of a job; variable i is the place places[i] of the job.
struct JobArcs {
  struct Transition {
    std::vector<Variable> inputs, outputs;  ///< disjoint, ascending, not empty
  };
  explicit JobArcs(const SiphonJob& job);

  std::vector<Transition> transitions;
  std::vector<std::vector<uint32_t>> producers, consumers;  ///< transitions by place
  std::vector<Variable> variableOf;  ///< by place of the component; kNoVariable outside the job
  size_t arcCount = 0;

  static constexpr Variable kNoVariable = UINT32_MAX;
  Variable VariableOf(int32_t place) const { return variableOf[static_cast<size_t>(place)]; }
};

}  // namespace siphons
