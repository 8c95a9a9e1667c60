// From the net model to the structural tables, in time linear in the places and transitions and k log k in
// the arcs of a row. Places are looked up by name once more, although an arc of the model refers to its
// place: a second announcement of places starts a new table, and arcs above it refer to places of the old
// one, whose names may or may not be in the new.
#include "structure/struct_IO.h"

#include <array>
#include <cstdio>
#include <span>
#include <vector>

#include "base/arithmetic.h"
#include "base/bounded_text.h"
#include "base/exit_status.h"
#include "base/process_end.h"
#include "net/load_net.h"
#include "net/memory.h"
#include "net/name_index.h"
#include "structure/pmf_file.h"
#include "structure/sparse.h"
#include "structure/struct_vars.h"

namespace siphons {

namespace {

/// The numbers of the places in the structural table, by name.
NameIndex placeNumbers;

/// The number of the place of this name; ends the process when there is none.
int32_t PlaceNumber(const char* placeName) {
  std::array<char, 50> name;
  FormatBounded(name, "%s", placeName);
  const int32_t number = placeNumbers.Find(name.data());
  if (number == NameIndex::kNone) {
    std::printf("Unknown place %s in arc definition\n", name.data());
    EndProcess(kFailure);
  }
  return number;
}

sp_entry* NewArc(const NetArc& arc) {
  constexpr int32_t kMarkingDependentValue = 1;  // counts as an arc; the text is not evaluated
  const int32_t place = PlaceNumber(TextOrEmpty(arc.place->name));
  sp_entry* const element = NewTable<sp_entry>(1);
  element->index = place;
  if (arc.is_value != 0) {
    element->value = arc.multiplicity;
  } else {
    element->value = kMarkingDependentValue;
    places[place].md_arc = 1;
  }
  return element;
}

void ConfigPlace(const NetPlace& source, struct_place& place) {
  constexpr uint32_t kMarkTextBuffer = 16;
  FormatBounded(place.name, "%s", TextOrEmpty(source.name));
  if (source.marking_par == nullptr) {
    place.init_mark = source.marking;
    char* const text = NewTable<char>(kMarkTextBuffer);
    FormatBounded(std::span(text, kMarkTextBuffer), "%d", place.init_mark);
    place.mark_text = text;
  } else {
    place.init_mark = TruncateToInt32(source.marking_par->value);
    place.mark_text = source.marking_par->name;
  }
}

StructuralKind KindOf(TransitionType type) {
  switch (type) {
    case kExponential:
      return kKindExponential;
    case kDeterministic:
      return kKindDeterministic;
    case kGeneral:
      return kKindGeneral;
    case kImmediate:
      break;
  }
  return kKindImmediate;
}

void ConfigTransition(const NetTransition& source, int32_t t, struct_trans& transition) {
  transition.index = t;
  FormatBounded(transition.name, "%s", TextOrEmpty(source.name));
  transition.priority = source.priority;
  transition.md_arc = source.has_md_arcs;
  if (source.delay_type == kDelayNumber) {
    transition.delay = source.delay.value;
  } else if (source.delay_type == kDelayParameter && source.delay.parameter->is_value != 0) {
    transition.delay = source.delay.parameter->value;
  } else if (source.delay_type != kDelayPmf) {
    transition.md_delay = t + 1;
  }
  transition.inf_server = source.inf_server;
  transition.kind = KindOf(source.type);
  if (transition.kind != kKindImmediate) ++no_timed_trans;
}

}  // namespace

void LoadModel(const char* path, ErrorFunc errorFunc) {
  model = load_net(path, errorFunc, false);
  if (model != nullptr) return;
  std::printf("ERROR: could not read %s properly\n", path);
  EndProcess(kFailure);
}

void read_net(const char* path) {
  LoadModel(path);
  config_net(*model);
  if (pmf_bit != 0) generate_pmf(path, *model);
}

int32_t config_net(const Net& net) {
  no_places = net.nplaces;
  places = NewTable<struct_place>(no_places);
  no_trans = net.ntrans;
  transitions = NewTable<struct_trans>(no_trans);
  for (sp_matrix* matrix : {&i_matrix, &o_matrix, &h_matrix}) *matrix = NewTable<sp_entry*>(no_trans);

  r_par = NewTable<rate_par>(net.ndelaypars);
  for (int32_t i = 0; i < net.ndelaypars; ++i) {
    const DelayPar& parameter = net.delaypars[i];
    const bool isText = parameter.is_value == 0;
    r_par[i] = {TextOrEmpty(parameter.name), isText ? 1 : 0, isText ? 0 : parameter.value};
  }
  placeNumbers.Clear();
  for (int32_t p = 0; p < no_places; ++p) {
    ConfigPlace(net.places[p], places[p]);
    placeNumbers.Add(places[p].name, p);
  }
  for (int32_t t = 0; t < no_trans; ++t) {
    ConfigTransition(net.transitions[t], t, transitions[t]);
    for (const ArcKind kind : {kInputArc, kOutputArc, kInhibitorArc}) config_arcs(net, t, kind);
  }
  return 0;
}

int32_t config_arcs(const Net& net, int32_t t, int32_t which) {
  const NetTransition& source = net.transitions[t];
  std::span<const NetArc> arcs;
  sp_matrix rows = nullptr;
  if (which == kInputArc) {
    arcs = {source.inarcs, static_cast<size_t>(source.ninarcs)};
    rows = i_matrix;
  } else if (which == kOutputArc) {
    arcs = {source.outarcs, static_cast<size_t>(source.noutarcs)};
    rows = o_matrix;
  } else if (which == kInhibitorArc) {
    arcs = {source.inharcs, static_cast<size_t>(source.ninharcs)};
    rows = h_matrix;
  }
  std::vector<sp_entry*> elements;
  elements.reserve(arcs.size());
  for (const NetArc& arc : arcs) elements.push_back(NewArc(arc));
  if (rows != nullptr) sp_insert_all(&rows[t], elements);
  return 0;
}

}  // namespace siphons
