// The exact net: what a net file says, in numbers that do not wrap, with the place in the file of every part.
//
// Every analysis of netkit reads this record and nothing of the report program. A reader fills it (formats/),
// nothing changes it afterwards; a monitored net is a copy. Numbers of places and transitions are their
// indices in the vectors, in the order of the file.
//
// A hard net has 50,000 places, as many transitions and 100,000 arcs; nearly all transitions have one to four
// arcs a group, a few have thousands.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace siphons {

/// Where in a file something stands. Lines and columns count from 1, columns in bytes; line 0: nowhere, as in
/// a net that was computed.
struct SourcePosition {
  int32_t line = 0;
  int32_t column = 0;
};

struct Point {
  double x = 0;
  double y = 0;
};

enum class NetClass : uint8_t { kGspn, kDspn, kEdspn, kCdspn };

enum class TransitionKind : uint8_t { kImmediate, kExponential, kDeterministic, kGeneral };

/// What happens to the time that a transition has already waited when another one fires.
enum class MemoryPolicy : uint8_t { kResampling, kAge, kEnabling };

enum class Orientation : uint8_t { k0, k45, k90, kMinus45 };

struct Place {
  std::string name;               ///< unique among places and transitions
  std::string id;                 ///< that of the PNML file; empty elsewhere
  int64_t tokens = 0;             ///< initially; at least 0
  std::string markingParameter;   ///< the parameter that gave the tokens; empty: a number did
  std::optional<Point> position;  ///< of the centre
  std::optional<Point> labelPosition;
  SourcePosition where;
};

/// An arc between a transition and a place. A group of arcs names every place once at most.
struct Arc {
  int32_t place = 0;
  int64_t weight = 1;  ///< at least 1; 1 where it depends on the marking
  bool markingDependent = false;
  std::string weightText;   ///< the weight as an expression, where it depends on the marking
  std::vector<Point> path;  ///< between the ends, from the arc's source on
  SourcePosition where;
};

/// How long an enabled transition waits, or the weight of an immediate one.
struct TransitionDelay {
  enum class Kind : uint8_t { kNumber, kParameter, kMarkingDependent, kDistribution };
  Kind kind = Kind::kNumber;
  double value = 1;  ///< kNumber
  std::string text;  ///< the parameter's name, the expression, the distribution
};

/// Three further values of a transition that its long form in a file gives and no analysis uses.
struct AuxiliaryValues {
  int16_t count = 1;
  int32_t flag = 0;
  double value = 1;
};

struct Transition {
  std::string name;  ///< unique among places and transitions
  std::string id;    ///< that of the PNML file; empty elsewhere
  TransitionKind kind = TransitionKind::kExponential;
  int32_t priority = 0;  ///< counts among immediate transitions only; the greater goes first
  TransitionDelay delay;
  bool infiniteServer = false;
  MemoryPolicy policy = MemoryPolicy::kEnabling;
  std::optional<AuxiliaryValues> auxiliary;
  std::optional<std::string> enablingFunction;  ///< a condition on the marking beyond the arcs
  std::vector<Arc> inputs;                      ///< it takes the weight from these places
  std::vector<Arc> outputs;                     ///< it puts the weight into these places
  std::vector<Arc> inhibitors;  ///< it cannot fire when one of these places holds the weight or more
  Orientation orientation = Orientation::k0;
  std::optional<Point> position;  ///< of the centre
  std::optional<Point> labelPosition;
  std::optional<Point> delayPosition;
  SourcePosition where;
};

/// A named number, or an expression over the marking.
struct Parameter {
  std::string name;
  double value = 0;
  std::optional<std::string> text;  ///< the expression; then `value` has no meaning
  std::optional<Point> position;
  SourcePosition where;
};

struct Measure {
  std::string name;
  std::string text;
  SourcePosition where;
};

struct PetriNet {
  std::string name;
  NetClass type = NetClass::kGspn;
  std::string description;
  std::vector<Place> places;
  std::vector<Transition> transitions;
  std::vector<Parameter> parameters;
  std::vector<Measure> measures;
};

}  // namespace siphons
