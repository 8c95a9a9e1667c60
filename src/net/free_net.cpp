#include "net/free_net.h"

#include <algorithm>

#include "net/memory.h"
#include "net/name_index.h"

namespace siphons {

namespace {

void FreeArcs(NetArc* arcs, int32_t count) {
  std::for_each(arcs, arcs + count, [](const NetArc& arc) {
    Free(arc.md_mult);
    Free(arc.point);
  });
  Free(arcs);
}

/// Releases what the transition owns, but for the two texts that it keeps.
void FreeTransition(NetTransition& t) {
  NetTransition rest{};
  Free(t.name);
  if (t.delay_type == kDelayMarkdep) {
    Free(t.delay.text);
  } else {
    rest.delay.text = t.delay.text;
  }
  if (t.type == kImmediate) {
    Free(t.md_enable);
  } else {
    rest.md_enable = t.md_enable;
  }
  FreeArcs(t.inarcs, t.ninarcs);
  FreeArcs(t.outarcs, t.noutarcs);
  FreeArcs(t.inharcs, t.ninharcs);
  t = rest;
}

/// Calls release(record) for all slots of a table whose count may still be "not announced", then releases the
/// table.
template <typename Record, typename Release>
void FreeTable(Record* table, int32_t count, Release release) {
  std::for_each(table, table + std::max(count, 0), release);
  Free(table);
}

}  // namespace

void free_net(Net* net) {
  if (net == nullptr) return;
  Free(net->name);
  Free(net->comment);
  FreeTable(net->delaypars, net->delaypar_slots, [](const DelayPar& parameter) {
    Free(parameter.name);
    Free(parameter.text);
  });
  FreeTable(net->places, net->place_slots, [](const NetPlace& place) { Free(place.name); });
  std::for_each(net->transitions, net->transitions + net->transition_slots, FreeTransition);
  Abandon(net->transitions);
  FreeTable(net->rewards, net->reward_slots, [](const RewardMeasure& measure) {
    Free(measure.name);
    Free(measure.def);
  });
  delete net->names;
  Free(net);
}

}  // namespace siphons
