// Transition sections: a head in one of two forms, then the input, output and inhibitor arcs. Every read goes
// on where the one before stopped, so line breaks inside a section are blanks like any other.
#include "net/transition_sections.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "net/lookups.h"
#include "net/memory.h"
#include "net/name_index.h"
#include "net/section_text.h"

namespace siphons {

namespace {

constexpr std::string_view kMarkingDependent = "<MD>";

/// The words of a head.
enum HeadWord : size_t { kName, kDelay, kServer, kType, kPolicy, kHeadWords };
using HeadWords = Words<kHeadWords>;

/// Reads the head into words and numbers of t. Returns its length, or 0 when it is neither a long nor a short
/// head.
int32_t ReadHead(const char* text, HeadWords& words, NetTransition& t) {
  int32_t orient = 0, auxCount = 0, auxFlag = 0, length = 0;
  double auxValue = 0;
  const int32_t longItems = std::sscanf(
      text, "%s %s %s %s %s %i %i %i %i %lg %lg %lg %lg %lg %lg %lg%n", words[kName], words[kDelay],
      words[kServer], words[kType], words[kPolicy], &t.priority, &orient, &auxCount, &auxFlag, &auxValue,
      &t.pos.x, &t.pos.y, &t.name_pos.x, &t.name_pos.y, &t.delay_pos.x, &t.delay_pos.y, &length);
  if (longItems != 16) {
    auxCount = 1;
    auxFlag = 0;
    auxValue = 1.0;
    const int32_t shortItems =
        std::sscanf(text, "%s %s %s %s %s %i %i %lg %lg %lg %lg %lg %lg%n", words[kName], words[kDelay],
                    words[kServer], words[kType], words[kPolicy], &t.priority, &orient, &t.pos.x, &t.pos.y,
                    &t.name_pos.x, &t.name_pos.y, &t.delay_pos.x, &t.delay_pos.y, &length);
    if (shortItems != 13) return 0;
  }
  t.orient = orient;
  t.aux_count = static_cast<int16_t>(static_cast<uint16_t>(auxCount));
  t.aux_flag = auxFlag;
  t.aux_value = auxValue;
  return length;
}

TransitionType TypeOf(std::string_view word) {
  if (word == "EXP") return kExponential;
  if (word == "DET") return kDeterministic;
  if (word == "GEN") return kGeneral;
  return kImmediate;
}

FiringPolicy PolicyOf(std::string_view word) {
  if (word == "RS") return kResample;
  if (word == "RA") return kRaceAge;
  return kRaceEnable;
}

/// Takes the delay token; false after a report. A number starts with a digit: one with a sign or a leading
/// point is taken for a parameter's name.
bool TakeDelay(const Net& net, const char* token, NetTransition& t) {
  if (t.type == kGeneral) {
    t.delay_type = kDelayPmf;
  } else if (std::isdigit(static_cast<unsigned char>(token[0])) != 0) {
    t.delay_type = kDelayNumber;
    if (std::sscanf(token, "%lg", &t.delay.value) != 1) {
      Fault(net, "Invalid transition delay");
      return false;
    }
  } else if (token == kMarkingDependent) {
    t.delay_type = kDelayMarkdep;
  } else {
    if (net.ndelaypars < 1) {
      Fault(net, "f_trans: no definition parameters defined");
      return false;
    }
    t.delay.parameter = find_delaypar(net, token);
    if (t.delay.parameter == nullptr) return false;
    t.delay_type = kDelayParameter;
  }
  return true;
}

/// Reads the points of an arc; returns the position behind them, or null after a report.
const char* ReadPoints(const Net& net, const char* text, NetArc& arc) {
  FirstWords coordinates;
  const int32_t announced = arc.npoints;
  arc.npoints = 0;
  arc.point = NewTable<Position>(announced);
  for (; arc.npoints < announced; ++arc.npoints) {
    Position& point = arc.point[arc.npoints];
    int32_t length = 0;
    if (std::sscanf(coordinates.Of(text, 2), "%lg %lg%n", &point.x, &point.y, &length) != 2) {
      Fault(net, "Invalid points definition");
      return nullptr;
    }
    text += length;
  }
  return text;
}

/// Reads `announced` arcs into the table and counts them in *read; returns the position behind them, or null
/// after a report.
const char* t_get_arcs(const Net& net, const char* text, int32_t announced, NetArc* arcs, int32_t* read) {
  Words<2> words(std::strlen(text));
  FirstWords head;
  while (*read < announced) {
    NetArc& arc = arcs[*read];
    int32_t length = 0;
    if (std::sscanf(head.Of(text, 3), "%s %s %i%n", words[0], words[1], &arc.npoints, &length) != 3) {
      Fault(net, "Invalid ARC definition");
      return nullptr;
    }
    text += length;
    arc.place = find_place(net, words[1]);
    if (arc.place == nullptr) return nullptr;
    arc.is_value = words[0] != kMarkingDependent ? 1 : 0;
    if (arc.is_value != 0) std::sscanf(words[0], "%i", &arc.multiplicity);
    ++*read;
    text = ReadPoints(net, text, arc);
    if (text == nullptr) return nullptr;
  }
  return text;
}

/// Reads one group of arcs; returns the position behind it, or null after a report.
const char* ReadArcGroup(const Net& net, const char* text, const char* keyword, const char* fault,
                         int32_t* count, NetArc** arcs) {
  Words<1> word(std::strlen(text));
  int32_t announced = 0;
  int32_t length = 0;
  if (std::sscanf(text, "%s %i%n", word[0], &announced, &length) != 2) {
    Fault(net, fault);
    return nullptr;
  }
  if (std::strcmp(word[0], keyword) != 0) {
    Fault(net, "Invalid keyword");
    return nullptr;
  }
  *arcs = NewTable<NetArc>(announced);
  return t_get_arcs(net, text + length, announced, *arcs, count);
}

bool AnyMarkingDependent(const NetArc* arcs, int32_t count) {
  return std::any_of(arcs, arcs + count, [](const NetArc& arc) { return arc.is_value == 0; });
}

}  // namespace

int32_t f_trans(Net& net, const char* text, int32_t occurrence) {
  if (net.ntrans < 1) return Fault(net, "No TRANSITIONS announced");
  if (occurrence >= net.ntrans) return Fault(net, "Transition-table overflow");
  text = skip_white(text);
  NetTransition& t = net.transitions[occurrence];
  HeadWords words(std::strlen(text));
  const int32_t headLength = ReadHead(text, words, t);
  if (headLength == 0) return Fault(net, "Invalid TRANSITION definition");
  StoreText(t.name, words[kName]);
  net.names->transitions.Add(t.name, occurrence);
  t.inf_server = std::string_view(words[kServer]) == "IS" ? 1 : 0;
  t.f_policy = PolicyOf(words[kPolicy]);
  t.type = TypeOf(words[kType]);
  if (!TakeDelay(net, words[kDelay], t)) return 0;

  text = ReadArcGroup(net, text + headLength, "INPARCS", "Invalid INPARC definition", &t.ninarcs, &t.inarcs);
  if (text == nullptr) return 0;
  text = ReadArcGroup(net, text, "OUTPARCS", "Invalid OUTPARC definition", &t.noutarcs, &t.outarcs);
  if (text == nullptr) return 0;
  text = ReadArcGroup(net, text, "INHARCS", "Invalid INHARC definition", &t.ninharcs, &t.inharcs);
  if (text == nullptr) return 0;
  t.has_md_arcs = AnyMarkingDependent(t.inarcs, t.ninarcs) || AnyMarkingDependent(t.outarcs, t.noutarcs) ||
                  AnyMarkingDependent(t.inharcs, t.ninharcs);
  return 0;
}

}  // namespace siphons
