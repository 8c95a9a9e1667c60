// Two families of clauses.
//
// The siphon condition: for every transition t and output place p of t, p implies that some input place of t
// is held.
//
// Local minimality: in a minimal siphon of two places or more, the places without p are no siphon. So some
// transition has p as its only held input and has a held output besides; p implies that there is one. With
// one transition that can be it, these are clauses over places: p excludes its other inputs and implies one
// of its outputs. With several, a variable for each pair of p and t says that t is the one. Every minimal
// siphon satisfies these clauses, and most of the sets that are not minimal violate them, which spares the
// search their company: on grids 25,000 conflicts become one. A transition t is left out for p when another
// one excludes fewer inputs and offers more outputs.
//
// Where all siphons hold a place r, more is known: without p, place after place goes, and r in the end. Let D
// be the places that lead to r only through p. A transition that takes from a place of D other than p fills
// places of D alone. So the first transition that lets a place outside of D go has p as its only held input,
// and that place as an output (dominators.h). A loop from p back to p is then no reason to hold p, and on
// nets with loops nearly all sets that would turn out not to be minimal are never met.
//
// Transitions with many inputs and many outputs get a variable "some input is held" and one for the outputs,
// so that the clauses take as much memory as the net. Pairs of inputs of a wide transition do not exclude
// each other: that would be a square of clauses, and leaving clauses out only lets more be found and tested.
#include "netkit/siphons/job_clauses.h"

#include <algorithm>
#include <iterator>

#include "netkit/siphons/dominators.h"

namespace siphons {

namespace {

constexpr size_t kMostExcluding = 16;  ///< inputs of a transition that exclude each other
constexpr size_t kMostCompared = 16;   ///< transitions of a place that are compared with each other

using JobTransition = JobArcs::Transition;

/// Whether a variable of its own saves memory for "each of these implies one of those".
bool IsWide(const JobTransition& transition) {
  constexpr size_t kManyClauses = 4;  // times the arcs
  const size_t inputs = transition.inputs.size(), outputs = transition.outputs.size();
  return inputs * outputs > kManyClauses * (inputs + outputs);
}

class ClauseWriter {
 public:
  ClauseWriter(const JobArcs& arcs, std::optional<Variable> held, ClauseSearch& search)
      : arcs_(arcs),
        held_(held),
        search_(search),
        someOutput_(arcs.transitions.size(), JobArcs::kNoVariable) {
    if (held) dominators_.emplace(arcs, *held);
  }

  void SiphonCondition(const JobTransition& transition) {
    if (!IsWide(transition)) {
      for (const Variable p : transition.outputs) Implies(Holds(p), transition.inputs);
      return;
    }
    const Variable someInput = search_.AddVariable();
    Implies(Holds(someInput), transition.inputs);
    for (const Variable p : transition.outputs) Implies(Holds(p), {someInput});
  }

  void LocalMinimality(Variable p) {
    const std::vector<uint32_t> needing = TransitionsThatMayNeed(p);
    if (needing.size() == 1) {
      OnlyHeldInput(p, Holds(p), needing[0]);
      return;
    }
    std::vector<Variable> pairs;
    for (const uint32_t t : needing) {
      if (arcs_.transitions[t].inputs.size() > kMostExcluding) {
        pairs.push_back(SomeOutput(t));
        continue;
      }
      pairs.push_back(search_.AddVariable());
      OnlyHeldInput(p, Holds(pairs.back()), t);
    }
    Implies(Holds(p), pairs);
  }

 private:
  void Implies(Literal literal, const std::vector<Variable>& some) {
    clause_.assign(1, Negated(literal));
    std::transform(some.begin(), some.end(), std::back_inserter(clause_), Holds);
    search_.AddClause(clause_);
  }

  /// The literal implies that no other input of the transition is held, and some output.
  void OnlyHeldInput(Variable p, Literal literal, uint32_t t) {
    const JobTransition& transition = arcs_.transitions[t];
    if (transition.inputs.size() <= kMostExcluding) {
      for (const Variable q : transition.inputs) {
        const Literal both[] = {Negated(literal), Lacks(q)};
        if (q != p) search_.AddClause(both);
      }
    }
    if (IsWide(transition)) {
      Implies(literal, {SomeOutput(t)});
    } else {
      Implies(literal, OutputsBeyond(p, t));
    }
  }

  /// The outputs of a consumer of p that lead to the place that all siphons hold, not only through p.
  std::vector<Variable> OutputsBeyond(Variable p, uint32_t t) const {
    std::vector<Variable> outputs = arcs_.transitions[t].outputs;
    if (!dominators_ || p == held_) return outputs;
    const auto leadsBack = [this, p](Variable q) { return dominators_->Dominates(p, q); };
    outputs.erase(std::remove_if(outputs.begin(), outputs.end(), leadsBack), outputs.end());
    return outputs;
  }

  /// A variable that implies that the transition has a held output.
  Variable SomeOutput(uint32_t t) {
    if (someOutput_[t] == JobArcs::kNoVariable) {
      someOutput_[t] = search_.AddVariable();
      Implies(Holds(someOutput_[t]), arcs_.transitions[t].outputs);
    }
    return someOutput_[t];
  }

  /// The transitions that take from p, but for those that lead only back to p or that others make
  /// superfluous.
  std::vector<uint32_t> TransitionsThatMayNeed(Variable p) const {
    std::vector<uint32_t> consumers;
    std::copy_if(arcs_.consumers[p].begin(), arcs_.consumers[p].end(), std::back_inserter(consumers),
                 [this, p](uint32_t t) { return !OutputsBeyond(p, t).empty(); });
    if (consumers.size() > kMostCompared) return consumers;
    std::vector<uint32_t> needing;
    for (size_t i = 0; i < consumers.size(); ++i) {
      const auto isBetter = [&](size_t k) {
        const JobTransition &a = arcs_.transitions[consumers[k]], &b = arcs_.transitions[consumers[i]];
        const bool isAsGood =
            std::includes(b.inputs.begin(), b.inputs.end(), a.inputs.begin(), a.inputs.end()) &&
            std::includes(a.outputs.begin(), a.outputs.end(), b.outputs.begin(), b.outputs.end());
        const bool isEqual = a.inputs.size() == b.inputs.size() && a.outputs.size() == b.outputs.size();
        return isAsGood && (!isEqual || k < i);
      };
      bool isSuperfluous = false;
      for (size_t k = 0; k < consumers.size(); ++k) isSuperfluous = isSuperfluous || (k != i && isBetter(k));
      if (!isSuperfluous) needing.push_back(consumers[i]);
    }
    return needing;
  }

  const JobArcs& arcs_;
  const std::optional<Variable> held_;
  std::optional<Dominators> dominators_;  ///< with regard to the held place
  ClauseSearch& search_;
  std::vector<Variable> someOutput_;  ///< by transition, made when it is needed
  std::vector<Literal> clause_;
};

}  // namespace

void AddSiphonClauses(const JobArcs& arcs, std::optional<Variable> held, ClauseSearch& search) {
  ClauseWriter writer(arcs, held, search);
  for (const JobTransition& transition : arcs.transitions) writer.SiphonCondition(transition);
  for (Variable p = 0; p < arcs.producers.size(); ++p) writer.LocalMinimality(p);
}

}  // namespace siphons
