#include "netkit/siphons/job_arcs.h"

#include <cstddef>
#include <utility>

namespace siphons {

JobArcs::JobArcs(const SiphonJob& job)
    : producers(job.places.size()),
      consumers(job.places.size()),
      variableOf(static_cast<size_t>(job.component->arcs.placeCount), kNoVariable) {
  for (size_t i = 0; i < job.places.size(); ++i)
    variableOf[static_cast<size_t>(job.places[i])] = static_cast<Variable>(i);
  const auto inJob = [this](const PlaceList& places) {
    std::vector<Variable> variables;
    for (const int32_t p : places) {
      const Variable variable = variableOf[static_cast<size_t>(p)];
      if (variable != kNoVariable) variables.push_back(variable);
    }
    return variables;
  };
  for (const ArcSets::Transition& transition : job.component->arcs.transitions) {
    std::vector<Variable> outputs = inJob(transition.outputs);
    if (outputs.empty()) continue;
    const uint32_t t = static_cast<uint32_t>(transitions.size());
    transitions.push_back({inJob(transition.inputs), std::move(outputs)});
    for (const Variable p : transitions.back().inputs) consumers[p].push_back(t);
    for (const Variable p : transitions.back().outputs) producers[p].push_back(t);
    arcCount += transitions.back().inputs.size() + transitions.back().outputs.size();
  }
}

}  // namespace siphons
