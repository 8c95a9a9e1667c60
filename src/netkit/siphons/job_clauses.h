// The siphons of a job as clauses. A variable per place says whether the siphon holds it; what further
// variables there are abbreviate, and are never decided.
#pragma once

#include <optional>

#include "netkit/siphons/clause_search.h"
#include "netkit/siphons/job_arcs.h"
#include "netkit/siphons/literals.h"

namespace siphons {

/// Adds the clauses to a search that has one variable per place of the job and no clause. `held` is a place
/// that all siphons of the job hold, if there is one; the clauses then ask for more, and do not say that it
/// is held.
void AddSiphonClauses(const JobArcs& arcs, std::optional<Variable> held, ClauseSearch& search);

}  // namespace siphons
