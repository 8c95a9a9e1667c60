// The siphons of a job as clauses. A variable per place says whether the siphon holds it; what further
// variables there are abbreviate, and are never decided.
#pragma once

#include <cstdint>
#include <vector>

#include "netkit/siphons/clause_search.h"
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

  static constexpr Variable kNoVariable = UINT32_MAX;
  size_t arcCount = 0;
};

/// Adds the clauses to a search that has one variable per place of the job and no clause.
void AddSiphonClauses(const JobArcs& arcs, ClauseSearch& search);

}  // namespace siphons
