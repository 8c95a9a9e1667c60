// netkit info: what kind of net a net is, and how many tokens its places can have.
#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "netkit/commands/commands.h"
#include "netkit/commands/question.h"
#include "netkit/formats/tool_words.h"
#include "netkit/model/net_class.h"
#include "netkit/model/structural_bounds.h"

namespace siphons {

namespace {

/// The names of places or transitions.
template <typename Item>
std::vector<std::string> NamesOf(const std::vector<Item>& items, const std::vector<int32_t>& numbers) {
  std::vector<std::string> names;
  std::transform(numbers.begin(), numbers.end(), std::back_inserter(names),
                 [&items](int32_t number) { return items[static_cast<size_t>(number)].name; });
  return names;
}

std::string Listed(const std::vector<std::string>& names) {
  constexpr size_t kShown = 10;
  std::string text = names.empty() ? "none" : "";
  for (size_t i = 0; i < std::min(names.size(), kShown); ++i) text += (i == 0 ? "" : " ") + names[i];
  if (names.size() > kShown) text += " and " + std::to_string(names.size() - kShown) + " more";
  return text;
}

const char* YesNo(bool value) {
  return value ? "yes" : "no";
}

class Info {
 public:
  Info(const PetriNet& net, RunControl& control)
      : net_(net),
        features_(FeaturesOf(net)),
        structure_(StructureOf(net)),
        bounds_(BoundsOf(net, [&control] {
          control.Count();
          return control.Stop();
        })) {
    for (const Transition& transition : net.transitions) {
      arcs_ += transition.inputs.size() + transition.outputs.size() + transition.inhibitors.size();
    }
    const auto isBounded = [](const std::optional<int64_t>& bound) { return bound.has_value(); };
    bounded_ = std::all_of(bounds_.bounds.begin(), bounds_.bounds.end(), isBounded);
  }

  /// Whether a bound is known for every place, or known not to be there.
  bool Complete() const { return bounds_.complete; }

  std::string Text() const {
    std::string text = "Net " + net_.name + " (" + std::string(WordOf(kTypeWords, net_.type)) +
                       "): " + std::to_string(net_.places.size()) + " places, " +
                       std::to_string(net_.transitions.size()) + " transitions, " + std::to_string(arcs_) +
                       " arcs\n";
    const auto line = [&text](const char* what, const std::string& value) {
      text += std::string(what) + ": " + value + "\n";
    };
    line("Ordinary", structure_.ordinary ? "yes" : "no, " + Extraordinary());
    line("State machine", YesNo(structure_.stateMachine));
    line("Marked graph", YesNo(structure_.markedGraph));
    line("Free choice", structure_.freeChoice ? "yes" : structure_.extendedFreeChoice ? "extended" : "no");
    line("Strongly connected", YesNo(structure_.stronglyConnected));
    line("Source places", Listed(NamesOf(net_.places, structure_.sourcePlaces)));
    line("Sink places", Listed(NamesOf(net_.places, structure_.sinkPlaces)));
    line("Source transitions", Listed(NamesOf(net_.transitions, structure_.sourceTransitions)));
    line("Sink transitions", Listed(NamesOf(net_.transitions, structure_.sinkTransitions)));
    line("Structurally bounded", bounded_ ? "yes" : Complete() ? "no" : "not known");
    for (size_t p = 0; p < net_.places.size(); ++p) {
      text += "  " + net_.places[p].name + " " +
              (bounds_.bounds[p] ? "<= " + std::to_string(*bounds_.bounds[p])
               : Complete()      ? "unbounded"
                                 : "not known") +
              "\n";
    }
    return text;
  }

  Json ToJson() const {
    Json bounds = Json::object();
    for (size_t p = 0; p < net_.places.size(); ++p) {
      bounds[net_.places[p].name] = bounds_.bounds[p] ? Json(*bounds_.bounds[p]) : Json();
    }
    return {{"counts",
             {{"places", net_.places.size()}, {"transitions", net_.transitions.size()}, {"arcs", arcs_}}},
            {"name", net_.name},
            {"type", WordOf(kTypeWords, net_.type)},
            {"ordinary", structure_.ordinary},
            {"features",
             {{"weights", features_.weights},
              {"marking_dependent_weights", features_.markingDependent},
              {"inhibitor_arcs", features_.inhibitors},
              {"enabling_functions", features_.functions},
              {"priorities", features_.priorities}}},
            {"state_machine", structure_.stateMachine},
            {"marked_graph", structure_.markedGraph},
            {"free_choice", structure_.freeChoice},
            {"extended_free_choice", structure_.extendedFreeChoice},
            {"strongly_connected", structure_.stronglyConnected},
            {"source_places", NamesOf(net_.places, structure_.sourcePlaces)},
            {"sink_places", NamesOf(net_.places, structure_.sinkPlaces)},
            {"source_transitions", NamesOf(net_.transitions, structure_.sourceTransitions)},
            {"sink_transitions", NamesOf(net_.transitions, structure_.sinkTransitions)},
            {"structurally_bounded", bounded_ || Complete() ? Json(bounded_) : Json()},
            {"bounds", std::move(bounds)},
            {"complete", Complete()}};
  }

 private:
  /// What keeps the net from being ordinary.
  std::string Extraordinary() const {
    return TextOfCounts({{features_.weights, "weights other than 1"},
                         {features_.markingDependent, "marking-dependent weights"},
                         {features_.inhibitors, "inhibitor arcs"},
                         {features_.functions, "enabling functions"}});
  }

  const PetriNet& net_;
  NetFeatures features_;
  NetStructure structure_;
  StructuralBounds bounds_;
  size_t arcs_ = 0;
  bool bounded_ = false;
};

}  // namespace

void AddInfo(const Command& app) {
  const auto options = std::make_shared<QuestionOptions>();
  const Command command =
      AddLongQuestion(app, "info", "Tell what kind of net a net is, and the bounds of its places", *options);
  command.SetFooter(
      "Exit status: 0 complete, 1 a net cannot be read or an answer not be written, 2 wrong usage, "
      "3 stopped at a limit or interrupted before all bounds were known, 255 out of memory.");
  command.SetAction([options] {
    return AnswerEach(*options, "places", [](const PetriNet& net, RunControl& control) -> Answer {
      const Info info(net, control);
      return {info.Text(), info.ToJson(), info.Complete() ? kComplete : kIncomplete};
    });
  });
}

}  // namespace siphons
