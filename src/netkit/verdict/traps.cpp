#include "netkit/verdict/traps.h"

#include <algorithm>
#include <iterator>

namespace siphons {

namespace {

/// The arcs turned: outputs that certainly give back as inputs, all inputs as outputs.
ArcSets TurnedArcs(const PetriNet& net) {
  ArcSets arcs;
  arcs.placeCount = static_cast<int32_t>(net.places.size());
  for (const Transition& transition : net.transitions) {
    ArcSets::Transition turned;
    for (const Arc& arc : transition.outputs) {
      if (!arc.markingDependent) turned.inputs.push_back(arc.place);
    }
    for (const Arc& arc : transition.inputs) turned.outputs.push_back(arc.place);
    std::sort(turned.inputs.begin(), turned.inputs.end());
    std::sort(turned.outputs.begin(), turned.outputs.end());
    arcs.transitions.push_back(std::move(turned));
  }
  return arcs;
}

}  // namespace

bool IsMarkedTrap(const PetriNet& net, const PlaceList& places) {
  std::vector<bool> inTrap(net.places.size());
  for (const int32_t p : places) inTrap[static_cast<size_t>(p)] = true;
  const auto holds = [&inTrap](const Arc& arc) { return inTrap[static_cast<size_t>(arc.place)]; };
  const auto givesBack = [&holds](const Arc& arc) { return holds(arc) && !arc.markingDependent; };
  return std::any_of(places.begin(), places.end(),
                     [&net](int32_t p) { return net.places[static_cast<size_t>(p)].tokens > 0; }) &&
         std::all_of(net.transitions.begin(), net.transitions.end(), [&](const Transition& transition) {
           return std::none_of(transition.inputs.begin(), transition.inputs.end(), holds) ||
                  std::any_of(transition.outputs.begin(), transition.outputs.end(), givesBack);
         });
}

TrapFinder::TrapFinder(const PetriNet& net) : net_(net), reversed_(TurnedArcs(net)), greatest_(reversed_) {}

std::vector<PlaceList> TrapFinder::MarkedTraps(const PlaceList& places, size_t most) {
  std::vector<PlaceList> traps;
  PlaceList left = places;
  while (traps.size() < most) {
    greatest_.Assign(left);
    PlaceList trap = greatest_.Places();
    const auto marked = std::find_if(trap.begin(), trap.end(), [this](int32_t p) {
      return net_.places[static_cast<size_t>(p)].tokens > 0;
    });
    if (marked == trap.end()) break;
    traps.push_back(Shrunk(trap, *marked));
    left.clear();
    std::set_difference(trap.begin(), trap.end(), traps.back().begin(), traps.back().end(),
                        std::back_inserter(left));
  }
  return traps;
}

/// A minimal one among the traps within `trap`, which is assigned, that hold the marked place.
PlaceList TrapFinder::Shrunk(const PlaceList& trap, int32_t marked) {
  greatest_.Keep(marked);
  PlaceList gone;
  for (const int32_t p : trap) {
    if (!greatest_.Holds(p) || greatest_.Keeps(p)) continue;
    if (!greatest_.TryRemove(p, gone)) greatest_.Keep(p);
  }
  return greatest_.Places();
}

}  // namespace siphons
