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

std::string TrapsOf(const Verdict& verdict) {
  if (verdict.conditions > 0) {
    return "marked traps and " + std::to_string(verdict.conditions) +
           (verdict.conditions == 1 ? " condition" : " conditions") + " on the order of firings";
  }
  if (verdict.reduced) return "marked traps";
  return std::to_string(verdict.traps.size()) +
         (verdict.traps.size() == 1 ? " marked trap" : " marked traps");
}

std::string OwnGroundOf(const PetriNet& net, const Verdict& verdict) {
  switch (verdict.ground) {
    case Ground::kNone:
      break;
    case Ground::kNothingAsked:
      return "some transition asks for nothing and can always fire";
    case Ground::kTraps:
      if (verdict.reduced) return "marked traps leave no marking that holds every transition up";
      if (verdict.traps.empty()) return "no marking holds every transition up";
      if (FeaturesOf(net).None()) return "every siphon keeps a marked trap (Commoner's condition)";
      return TrapsOf(verdict) + " leave no marking that holds every transition up";
    case Ground::kEquation:
      return "the state equation with " + TrapsOf(verdict) + " has no dead marking";
    case Ground::kWholeEquation:
      return "the state equation with " + TrapsOf(verdict) + " has no dead marking in whole numbers";
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
      return "after reductions, every place of some marked trap enables a transition alone";
  }
  return verdict.reason;
}

}  // namespace

std::string GroundOf(const PetriNet& net, const Verdict& verdict) {
  const std::string ground = OwnGroundOf(net, verdict);
  if (!verdict.reduced || verdict.ground == Ground::kReductions) return ground;
  return "reduced to " + std::to_string(verdict.reduced->places) + " places and " +
         std::to_string(verdict.reduced->transitions) + " transitions: " + ground;
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
