#include "netkit/commands/verdict_words.h"

#include "base/exit_status.h"
#include "netkit/model/net_class.h"

namespace siphons {

const char* WordOf(Finding finding) {
  switch (finding) {
    case Finding::kDeadlockFree:
      return "deadlock-free";
    case Finding::kDeadlock:
      return "deadlock";
    case Finding::kUndecided:
      break;
  }
  return "undecided";
}

namespace {

std::string CountOf(size_t count, const std::string& one) {
  return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

std::string EquationWith(const Refutations& refutations) {
  std::string with;
  if (!refutations.traps.empty()) with = " with " + CountOf(refutations.traps.size(), "marked trap");
  if (!refutations.conditions.empty()) {
    with += (with.empty() ? " with " : " and ") + CountOf(refutations.conditions.size(), "condition") +
            " on the order of firings";
  }
  return "the state equation" + with;
}

std::string OwnGroundOf(const PetriNet& net, const Verdict& verdict) {
  switch (verdict.ground) {
    case Ground::kNone:
      break;
    case Ground::kNothingAsked:
      return "some transition asks for nothing and can always fire";
    case Ground::kTraps:
      if (verdict.refutations.traps.empty()) return "no marking holds every transition up";
      if (FeaturesOf(verdict.reduced ? *verdict.reduced : net).None())
        return "every siphon keeps a marked trap (Commoner's condition)";
      return CountOf(verdict.refutations.traps.size(), "marked trap") +
             (verdict.refutations.traps.size() == 1 ? " leaves" : " leave") +
             " no marking that holds every transition up";
    case Ground::kEquation:
      return EquationWith(verdict.refutations) + " has no dead marking";
    case Ground::kWholeEquation:
      return EquationWith(verdict.refutations) + " has no dead marking in whole numbers";
    case Ground::kAllMarkings:
      return "none of all " + std::to_string(verdict.markings) + " reachable markings is dead";
    case Ground::kReduced:
      return "none of the " + std::to_string(verdict.markings) + " markings that stubborn sets reach is dead";
    case Ground::kBreadthFirst:
      return "no shorter sequence leads to a dead marking";
    case Ground::kReducedSearch:
    case Ground::kWalk:
      return "shorter sequences may lead to a dead marking, too";
    case Ground::kReductions:
      return "every place of some marked trap enables a transition alone";
  }
  return verdict.reason;
}

}  // namespace

std::string GroundOf(const PetriNet& net, const Verdict& verdict) {
  const std::string ground = OwnGroundOf(net, verdict);
  if (!verdict.reduced) return ground;
  return "reduced to " + CountOf(verdict.reduced->places.size(), "place") + " and " +
         CountOf(verdict.reduced->transitions.size(), "transition") + ": " + ground;
}

int32_t StatusOf(Finding finding) {
  switch (finding) {
    case Finding::kDeadlockFree:
      return kComplete;
    case Finding::kDeadlock:
      return kDeadlock;
    case Finding::kUndecided:
      break;
  }
  return kUndecided;
}

}  // namespace siphons
