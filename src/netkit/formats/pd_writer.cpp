#include "netkit/formats/pd_writer.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>
#include <utility>

#include "netkit/formats/pd_reader.h"
#include "netkit/formats/plain_numbers.h"
#include "netkit/formats/tool_words.h"
#include "netkit/model/same_net.h"

namespace siphons {

namespace {

std::string PointText(const std::optional<Point>& point) {
  const Point p = point.value_or(Point{});
  return " " + RealText(p.x) + " " + RealText(p.y);
}

class Writer {
 public:
  explicit Writer(const PetriNet& net) : net_(net) {}

  std::string Write() {
    Line("NET_TYPE: " + std::string(WordOf(kTypeWords, net_.type)));
    if (!net_.description.empty()) Line("DESCRIPTION: " + net_.description);
    Count("PLACES: ", net_.places.size());
    Count("TRANSITIONS: ", net_.transitions.size());
    Count("DEFINITION_PARAMETERS: ", net_.parameters.size());
    Count("REWARD_MEASURES: ", net_.measures.size());
    for (const Parameter& parameter : net_.parameters) AddParameter(parameter);
    for (const Place& place : net_.places) AddPlace(place);
    for (const Transition& transition : net_.transitions) AddTransition(transition);
    for (const Transition& transition : net_.transitions) AddTexts(transition);
    for (const Measure& measure : net_.measures) Line("MEASURE " + measure.name + " " + measure.text + ";");
    return std::move(text_);
  }

 private:
  void Line(const std::string& line) { text_.append(line).append("\n"); }
  void Count(const char* keyword, size_t count) { Line(keyword + std::to_string(count)); }

  void AddParameter(const Parameter& parameter) {
    Line("DEFINITION_PARAMETER " + parameter.name + " " +
         (parameter.text ? "<MD>" : RealText(parameter.value)) + PointText(parameter.position));
    if (parameter.text) Line("DELAYPAR_DEF " + parameter.name + " " + *parameter.text + ";");
  }

  void AddPlace(const Place& place) {
    std::string line =
        "PLACE " + place.name + " " +
        (place.markingParameter.empty() ? std::to_string(place.tokens) : place.markingParameter);
    if (place.position) line += PointText(place.position);
    if (place.position && place.labelPosition) line += PointText(place.labelPosition);
    Line(line);
  }

  void AddTransition(const Transition& transition) {
    const TransitionDelay& delay = transition.delay;
    std::string line = "TRANSITION " + transition.name + " ";
    line += delay.kind == TransitionDelay::Kind::kNumber      ? RealText(delay.value)
            : delay.kind == TransitionDelay::Kind::kParameter ? delay.text
                                                              : "<MD>";
    line.append(" ").append(kServerWords[transition.infiniteServer ? 1 : 0]);
    line.append(" ").append(WordOf(kKindWords, transition.kind));
    line.append(" ").append(WordOf(kPolicyWords, transition.policy));
    line += " " + std::to_string(transition.priority) + " " +
            std::to_string(static_cast<int>(transition.orientation));
    if (transition.auxiliary) {
      line += " " + std::to_string(transition.auxiliary->count) + " " +
              std::to_string(transition.auxiliary->flag) + " " + RealText(transition.auxiliary->value);
    }
    const std::optional<Point>& position = transition.position;
    Line(line + PointText(position) +
         PointText(transition.labelPosition ? transition.labelPosition : position) +
         PointText(transition.delayPosition ? transition.delayPosition : position));
    AddArcs("INPARCS", transition.inputs);
    AddArcs("OUTPARCS", transition.outputs);
    AddArcs("INHARCS", transition.inhibitors);
  }

  void AddArcs(const std::string& keyword, const std::vector<Arc>& arcs) {
    Line(keyword + " " + std::to_string(arcs.size()));
    for (const Arc& arc : arcs) {
      std::string line = "  " + (arc.markingDependent ? "<MD>" : std::to_string(arc.weight)) + " " +
                         net_.places[static_cast<size_t>(arc.place)].name + " " +
                         std::to_string(arc.path.size());
      for (const Point& point : arc.path) line += PointText(point);
      Line(line);
    }
  }

  void AddTexts(const Transition& transition) {
    constexpr std::array<const char*, 4> kKeywords = {"WEIGHT ", "EXP_DELAY ", "DET_DELAY ", "GEN_DELAY "};
    const TransitionDelay::Kind kind = transition.delay.kind;
    if (kind == TransitionDelay::Kind::kMarkingDependent || kind == TransitionDelay::Kind::kDistribution) {
      Line(kKeywords[static_cast<size_t>(transition.kind)] + transition.name + " " + transition.delay.text +
           ";");
    }
    if (transition.enablingFunction) {
      Line("FUNCTION " + transition.name + " " + *transition.enablingFunction + ";");
    }
    AddWeights("INPARC ", transition.name, transition.inputs);
    AddWeights("OUTPARC ", transition.name, transition.outputs);
    AddWeights("INHARC ", transition.name, transition.inhibitors);
  }

  void AddWeights(const std::string& group, const std::string& transition, const std::vector<Arc>& arcs) {
    for (const Arc& arc : arcs) {
      if (!arc.markingDependent) continue;
      Line("CARDINALITY " + group + transition + " " + net_.places[static_cast<size_t>(arc.place)].name +
           " " + arc.weightText + ";");
    }
  }

  const PetriNet& net_;
  std::string text_;
};

/// Reports numbers that the report program does not hold.
void CheckNumbers(const PetriNet& net, Diagnostics& diagnostics) {
  constexpr int64_t kGreatest = std::numeric_limits<int32_t>::max();
  const auto tell = [&diagnostics](const std::string& what, int64_t number) {
    diagnostics.Error({}, what + " " + std::to_string(number) + "; a .PD file holds numbers up to " +
                              std::to_string(kGreatest));
  };
  for (const Place& place : net.places) {
    if (place.tokens > kGreatest) tell("the place " + Quoted(place.name) + " has the tokens", place.tokens);
  }
  for (const Transition& transition : net.transitions) {
    for (const std::vector<Arc>* arcs : {&transition.inputs, &transition.outputs, &transition.inhibitors}) {
      for (const Arc& arc : *arcs) {
        if (arc.weight > kGreatest) {
          tell("an arc of the transition " + Quoted(transition.name) + " has the weight", arc.weight);
        }
      }
    }
  }
}

}  // namespace

std::optional<std::string> WritePd(const PetriNet& net, Diagnostics& diagnostics) {
  CheckNumbers(net, diagnostics);
  if (diagnostics.HasErrors()) return std::nullopt;
  std::string text = Writer(net).Write();
  Diagnostics own("");
  const std::optional<PetriNet> again = ReadPd(text, net.name, own);
  const std::string difference = again ? DifferenceOf(net, *again) : own.Sorted().front().message;
  if (difference.empty()) return text;
  diagnostics.Error({}, "a .PD file cannot hold this net: " + difference);
  return std::nullopt;
}

}  // namespace siphons
