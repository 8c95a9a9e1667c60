// The definition info file: which places the marking-dependent definitions of the net depend on.
//
// Three sections: multiplicities of arcs, then two kinds of definitions of transitions. A file that is cut
// short repeats its last word for ever (info_reader.h), and the counts of records in it may be huge. So the
// loops below end once all further records would be the same: md_arcs then holds one of these records, and
// no_md_arcs counts it once.
#include "structure/definition_info.h"

#include "base/exit_status.h"
#include "base/process_end.h"
#include "net/memory.h"
#include "structure/info_reader.h"
#include "structure/struct_vars.h"

namespace siphons {

namespace {

bool IsTransition(int32_t number) {
  return number >= 0 && number < no_trans;
}

/// Gives the arc of the record its function identifier; ends the process when there is no such arc.
void MarkArc(const md_arc_def& arc) {
  const sp_matrix rows = arc.kind == kInputArc       ? i_matrix
                         : arc.kind == kOutputArc    ? o_matrix
                         : arc.kind == kInhibitorArc ? h_matrix
                                                     : nullptr;
  if (rows == nullptr || !IsTransition(arc.trans)) EndProcess(kFailure);
  sp_entry* element = rows[arc.trans];
  while (element != nullptr && element->index != arc.place) element = element->next;
  if (element == nullptr) EndProcess(kFailure);
  element->md_func = arc.func;
}

void ReadArcs(InfoReader& reader) {
  reader.Label();
  no_md_arcs = reader.Number();
  md_arcs = NewTable<md_arc_def>(no_md_arcs);
  for (int32_t i = 0; i < no_md_arcs; ++i) {
    md_arc_def& arc = md_arcs[i];
    if (reader.Ended()) no_md_arcs = i + 1;
    reader.Label();
    arc.func = reader.Number();
    arc.kind = static_cast<ArcKind>(reader.Number());
    arc.trans = reader.Number();
    arc.place = reader.Number();
    arc.depends = reader.PlaceSet();
    MarkArc(arc);
  }
}

/// The definitions of one section, kept in two fields of the transitions. Of two for the same transition the
/// later one stays.
void ReadDefinitions(InfoReader& reader, int32_t struct_trans::*id, int32_t* struct_trans::*dependsOn) {
  static bool warned = false;
  reader.Label();
  const int32_t count = reader.Number();
  for (int32_t i = 0; i < count; ++i) {
    const bool repeats = reader.Ended();
    reader.Label();
    const int32_t identifier = reader.Number();
    const int32_t number = reader.Number();
    int32_t* const set = reader.PlaceSet();
    if (IsTransition(number)) {
      struct_trans& transition = transitions[number];
      Free(transition.*dependsOn);
      transition.*id = identifier;
      transition.*dependsOn = set;
    } else {
      WarnOnce(&warned, "transition", number, no_trans);
      Free(set);
    }
    if (repeats) break;
  }
}

}  // namespace

void read_info(std::istream& stream) {
  InfoReader reader(stream);
  ReadArcs(reader);
  reader.Label();
  ReadDefinitions(reader, &struct_trans::dep2_id, &struct_trans::dep2_places);
  ReadDefinitions(reader, &struct_trans::dep1_id, &struct_trans::dep1_places);
}

}  // namespace siphons
