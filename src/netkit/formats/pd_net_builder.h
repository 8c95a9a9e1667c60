// The sections of a .PD file made into a net, one after the other in the order of the file, because the
// report program's loader knows at every section only what stands above it.
//
// A fault is reported once and reading goes on, so that one run shows all faults: a faulty section counts as
// given, and a name that it declares is known.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "netkit/formats/diagnostics.h"
#include "netkit/formats/pd_sections.h"
#include "netkit/model/petri_net.h"

namespace siphons {

class PdNetBuilder {
 public:
  explicit PdNetBuilder(Diagnostics& diagnostics) : diagnostics_(diagnostics) {}

  /// Takes a section, and what a misspelt keyword has added to it.
  void Take(const PdSection& section);

  /// Checks what only the end of the file tells: counts, texts that never came, names that nobody declared.
  PetriNet Finish();

 private:
  /// The things of one kind: how many are announced, which names they have.
  struct Table {
    std::string_view kind;  ///< in messages
    PdKeyword announcement;
    std::optional<int64_t> announced = std::nullopt;  ///< without a value: announced with a fault
    SourcePosition where = {};                        ///< of the announcement; line 0: none yet
    int64_t given = 0;
    bool orderReported = false;
    std::unordered_map<std::string_view, int32_t> numbers = {};
  };
  /// A name that was not declared above where it was used.
  struct Unknown {
    const Table* table;
    PdWord name;
  };
  /// What was reported of a transition and explains what is missing elsewhere.
  struct ArcFaults {
    bool inArcs = false;           ///< it may lack arcs that the file has
    bool inCardinalities = false;  ///< a CARDINALITY of it found no arc that waits for one
  };
  /// A named text: "NAME TEXT;".
  struct Definition {
    PdWord name;
    std::string text;
  };

  bool Handle(PdKeyword keyword, SourcePosition where, PdScanner& words);

  // Header sections and places, pd_net_builder.cpp.
  bool TakeNetType(PdScanner& words);
  void TakeDescription(SourcePosition where, PdScanner& words);
  bool TakeAnnouncement(Table& table, int64_t least, SourcePosition where, PdScanner& words);
  bool TakePlace(SourcePosition where, PdScanner& words);
  void TakeMarking(const PdWord& word, Place& place);
  void CheckCount(const Table& table, int64_t least);

  // Transitions, pd_transitions.cpp.
  bool TakeTransition(SourcePosition where, PdScanner& words);
  bool TakeHead(PdScanner& words, Transition& transition);
  bool TakeDelay(const PdWord& word, Transition& transition);
  bool TakeArcs(PdScanner& words, std::string_view keyword, std::string_view next, std::vector<Arc>& arcs);
  bool TakeArc(PdScanner& words, std::vector<Arc>& arcs);
  bool TakePoints(PdScanner& words, Arc& arc);

  // Texts, pd_definitions.cpp.
  std::optional<Definition> TakeDefinition(PdKeyword keyword, PdScanner& words);
  std::optional<std::string> TakeText(PdScanner& words, std::string_view what);
  bool TakeParameter(SourcePosition where, PdScanner& words);
  bool TakeParameterText(PdScanner& words);
  bool TakeDelayText(PdKeyword keyword, PdScanner& words);
  bool TakeFunction(PdScanner& words);
  bool TakeCardinality(PdScanner& words);
  bool TakeMeasure(SourcePosition where, PdScanner& words);
  void CheckTexts();

  // What all use, pd_net_builder.cpp.
  void Error(SourcePosition where, std::string message) { diagnostics_.Error(where, std::move(message)); }
  /// Reports, and gives false, when the word is empty, because the section ends there.
  bool Present(const PdWord& word, std::string_view what);
  std::optional<int64_t> Integer(const PdWord& word, std::string_view what, int64_t least, int64_t greatest);
  std::optional<double> Real(const PdWord& word, std::string_view what);
  bool Points(PdScanner& words, std::string_view what, std::optional<Point>& point);
  /// The index of the word among the known ones; reports with a proposal when it is none of them.
  std::optional<size_t> OneOf(const PdWord& word, std::string_view what,
                              const std::vector<std::string_view>& known);
  /// Counts one more of the kind and declares its name. The number is that of the next record.
  void Declare(Table& table, size_t number, SourcePosition section, const PdWord& name);
  std::optional<int32_t> NumberOf(const Table& table, const PdWord& name);
  SourcePosition WhereDeclared(const Table& table, std::string_view name) const;
  void ReportUnknown();
  /// Whether the name was used before it was declared, which is reported and explains what is missing.
  bool UsedTooEarly(const Table& table, std::string_view name) const;

  Diagnostics& diagnostics_;
  PetriNet net_;
  Table places_{"place", PdKeyword::kPlaces};
  Table transitions_{"transition", PdKeyword::kTransitions};
  Table parameters_{"parameter", PdKeyword::kDefinitionParameters};
  Table measures_{"measure", PdKeyword::kRewardMeasures};
  std::vector<Unknown> unknown_;
  std::vector<ArcFaults> arcFaults_;  ///< by transition
  SourcePosition netTypeWhere_, descriptionWhere_;
  int64_t groups_ = 0;                 ///< groups of arcs so far
  std::vector<int64_t> groupOfPlace_;  ///< by place: the last group that has an arc to it
};

}  // namespace siphons
