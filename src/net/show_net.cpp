// The listing of a net. Its layout is fixed to the byte, uneven as it is in places: values stand in angle
// brackets here and in quotes there, and a marking-dependent multiplicity shares its line with the arc's
// points.
#include "net/show_net.h"

#include <cstdio>
#include <span>

#include "net/default_error.h"

namespace siphons {

namespace {

const char* Text(const char* text) {
  return text != nullptr ? text : "(null)";
}

/// The name of an enumerator, or "???".
const char* Named(std::span<const char* const> names, int32_t value) {
  return value >= 0 && static_cast<size_t>(value) < names.size() ? names[static_cast<size_t>(value)] : "???";
}

template <typename Record>
std::span<const Record> Slots(const Record* table, int32_t count) {
  return {table, count > 0 ? static_cast<size_t>(count) : 0};
}

constexpr const char* kNetTypes[] = {"G", "D", "ED", "CD"};
constexpr const char* kTransitionTypes[] = {"IMM", "EXP", "DET", "GEN"};
constexpr const char* kDelayTypes[] = {"DELAY", "DELAYPAR", "MARKDEP", "PMFDEF"};
constexpr const char* kOrientations[] = {"0", "45", "90", "M45"};
constexpr const char* kPolicies[] = {"S", "A", "E"};

void ShowPosition(const char* label, const Position& position) {
  std::printf("\t  %s(%lg;%lg)\n", label, position.x, position.y);
}

void ShowParameters(const Net& net) {
  std::printf("\n%d delaypars:\n", net.ndelaypars);
  int32_t i = 0;
  for (const DelayPar& parameter : Slots(net.delaypars, net.ndelaypars)) {
    std::printf("\t%2d.name\t\t\t\"%s\"\n", i++, Text(parameter.name));
    ShowPosition(".pos\t\t\t", parameter.pos);
    if (parameter.is_value != 0) {
      std::printf("\t  .delay.value\t\t<%lg>\n", parameter.value);
    } else {
      std::printf("\t  .delay.md_delay\t\"%s\"\n", Text(parameter.text));
    }
  }
}

void ShowPlaces(const Net& net) {
  std::printf("\n%d places:\n", net.nplaces);
  int32_t i = 0;
  for (const NetPlace& place : Slots(net.places, net.nplaces)) {
    std::printf("\t%2d.name\t\t\t\"%s\"\n", i++, Text(place.name));
    ShowPosition(".pos\t\t\t", place.pos);
    ShowPosition(".name_pos\t\t", place.name_pos);
    if (place.is_value != 0) {
      std::printf("\t  .marking.value\t<%d>\n", place.marking);
    } else {
      std::printf("\t  .marking.delay_par\t\"%s\"\n",
                  Text(place.marking_par != nullptr ? place.marking_par->name : nullptr));
    }
  }
}

void ShowArcs(const char* group, const NetArc* arcs, int32_t count) {
  std::printf("\t   %d %s:\n", count, group);
  int32_t j = 0;
  for (const NetArc& arc : Slots(arcs, count)) {
    std::printf("\t\t%2d.place\t\t\"%s\"\n", j++, Text(arc.place->name));
    std::printf("\t\t  .point (%d)\t\t", arc.npoints);
    for (const Position& point : Slots(arc.point, arc.npoints)) std::printf("(%lg;%lg) ", point.x, point.y);
    if (arc.is_value != 0) {
      std::printf("\n\t\t  .multipl.value\t<%d>\n", arc.multiplicity);
    } else {
      std::printf("\t\t  .multipl.md_mult\t\"%s\"\n", Text(arc.md_mult));
    }
  }
}

void ShowDelay(const NetTransition& t) {
  switch (t.delay_type) {
    case kDelayNumber:
      std::printf("\t  .delay.value\t\t\"%lg\"\n", t.delay.value);
      break;
    case kDelayParameter:
      std::printf("\t  .delay.delay_par\t\"%s\"\n", Text(t.delay.parameter->name));
      break;
    case kDelayMarkdep:
    case kDelayPmf:
      std::printf("\t  .delay.md_delay\t\t\"%s\"\n", Text(t.delay.text));
      break;
  }
}

void ShowTransitions(const Net& net) {
  std::printf("\n%d transitions:\n", net.ntrans);
  int32_t i = 0;
  for (const NetTransition& t : Slots(net.transitions, net.ntrans)) {
    std::printf("\n\t%2d.name\t\t\t\"%s\"\n", i++, Text(t.name));
    ShowPosition(".pos\t\t\t", t.pos);
    ShowPosition(".name_pos\t\t", t.name_pos);
    ShowPosition(".delay_pos\t\t", t.delay_pos);
    std::printf("\t  .priority\t\t(%d)\n", t.priority);
    std::printf("\t  .type\t\t\t\"%s\"\n", Named(kTransitionTypes, t.type));
    std::printf("\t  .delay_type\t\t\"%s\"\n", Named(kDelayTypes, t.delay_type));
    std::printf("\t  .orient\t\t\"ORIENT_%s\"\n", Named(kOrientations, t.orient));
    std::printf("\t  .inf_server\t\t\"%s\"\n", t.inf_server != 0 ? "YES" : "NO");
    std::printf("\t  .f_policy\t\t\"R%s\"\n", Named(kPolicies, t.f_policy));
    if (t.type == kImmediate) std::printf("\t  .md_enable\t\t\"%s\"\n", Text(t.md_enable));
    ShowDelay(t);
    ShowArcs("inarcs", t.inarcs, t.ninarcs);
    ShowArcs("outarcs", t.outarcs, t.noutarcs);
    ShowArcs("inharcs", t.inharcs, t.ninharcs);
  }
}

}  // namespace

int32_t show_net(const Net& net) {
  std::printf("netname:\t\t\"%s\"\n", Text(net.name));
  std::printf("nettype:\t\t\"%sSPN\"\n", Named(kNetTypes, net.nettype));
  std::printf("comment:\t\t\"%s\"\n", Text(net.comment));
  std::printf("error_func:\t\t\"%s\"\n", net.error_func == DefaultError ? "DEFAULT" : "OWN");
  net.error_func("I'm error_func.\n", 0);
  ShowParameters(net);
  ShowPlaces(net);
  ShowTransitions(net);
  int32_t written = std::printf("%d rewards:\n", net.nrewards);
  int32_t i = 0;
  for (const RewardMeasure& measure : Slots(net.rewards, net.nrewards)) {
    std::printf("\t%2d.name\t\t\t\"%s\"\n", i++, Text(measure.name));
    written = std::printf("\t  .def\t\t\t\"%s\"\n", Text(measure.def));
  }
  return written;
}

}  // namespace siphons
