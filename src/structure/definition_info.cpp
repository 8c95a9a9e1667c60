// The definition info file: which places the marking-dependent definitions of the net depend on.
//
// The file is a sequence of words. Labels may be any word; a word that is no number reads as 0. At the end of
// the file every further read yields the last word again, so a short file is read as if that word went on for
// ever. Counts come from the file and may be huge; once it has ended nothing new can come, and the loops
// below stop as soon as what they would still do has been done. So md_arcs holds one of the records that
// repeat, and no_md_arcs counts it once.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

#include "base/arithmetic.h"
#include "base/exit_status.h"
#include "base/process_end.h"
#include "net/memory.h"
#include "structure/struct_IO.h"
#include "structure/struct_vars.h"

namespace siphons {

namespace {

class InfoReader {
 public:
  explicit InfoReader(std::istream& stream) : stream_(stream) {}

  void Label() { NextWord(); }

  int32_t Number() {
    NextWord();
    return WrapToInt32(std::strtol(word_.c_str(), nullptr, 10));
  }

  /// Whether every further read yields the same word.
  bool Ended() const { return !stream_; }

 private:
  void NextWord() {
    std::string word;
    if (stream_ >> word) word_ = std::move(word);
  }

  std::istream& stream_;
  std::string word_;
};

bool IsPlace(int32_t number) {
  return number >= 0 && number < no_places;
}
bool IsTransition(int32_t number) {
  return number >= 0 && number < no_trans;
}

void WarnOnce(bool* told, const char* what, int32_t number, int32_t count) {
  if (*told) return;
  *told = true;
  std::fprintf(stderr, "Warning: definition info names %s %d, the net has %d; ignored\n", what, number,
               count);
}

void WarnPlace(int32_t number) {
  static bool told = false;
  WarnOnce(&told, "place", number, no_places);
}

void WarnTransition(int32_t number) {
  static bool told = false;
  WarnOnce(&told, "transition", number, no_trans);
}

/// Label, count, place numbers.
int32_t* ReadPlaceSet(InfoReader& reader) {
  reader.Label();
  const int32_t count = reader.Number();
  int32_t* const set = NewTable<int32_t>(no_places);
  for (int32_t i = 0; i < count; ++i) {
    const int32_t place = reader.Number();
    if (IsPlace(place)) {
      set[place] = 1;
    } else {
      WarnPlace(place);
    }
    if (reader.Ended()) break;
  }
  return set;
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
    arc.depends = ReadPlaceSet(reader);
    MarkArc(arc);
  }
}

/// The definitions of one section, kept in two fields of the transitions.
void ReadDefinitions(InfoReader& reader, int32_t struct_trans::*id, int32_t* struct_trans::*dependsOn) {
  reader.Label();
  const int32_t count = reader.Number();
  for (int32_t i = 0; i < count; ++i) {
    const bool repeats = reader.Ended();
    reader.Label();
    const int32_t identifier = reader.Number();
    const int32_t number = reader.Number();
    int32_t* const set = ReadPlaceSet(reader);
    if (IsTransition(number)) {
      struct_trans& transition = transitions[number];
      Free(transition.*dependsOn);
      transition.*id = identifier;
      transition.*dependsOn = set;
    } else {
      WarnTransition(number);
      Free(set);
    }
    if (repeats) break;
  }
}

}  // namespace

void deter_in(std::istream& stream, int32_t** set) {
  InfoReader reader(stream);
  *set = ReadPlaceSet(reader);
}

void read_info(std::istream& stream) {
  InfoReader reader(stream);
  ReadArcs(reader);
  reader.Label();
  ReadDefinitions(reader, &struct_trans::dep2_id, &struct_trans::dep2_places);
  ReadDefinitions(reader, &struct_trans::dep1_id, &struct_trans::dep1_places);
}

}  // namespace siphons
