// netkit check: whether every minimal siphon holds an initially marked trap (Commoner's condition), and what
// follows for this net.
//
// A marking is dead when it enables no transition. In an ordinary net the empty places of such a marking are
// a siphon: every transition lacks a token on one of its input places. A siphon with a marked trap is never
// empty, so under the condition no dead marking is reached (Hack 1972). The argument needs every transition
// that is not enabled to have an empty input place, and places that are never below empty: weights (two arcs
// between the same place and transition add up), inhibitor arcs, enabling functions and negative markings
// break it. Priorities only choose among the enabled transitions; they are counted all the same, because the
// condition is one about nets without them.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "netkit/commands/commands.h"
#include "netkit/commands/netkit_io.h"
#include "netkit/commands/run_control.h"
#include "netkit/siphons/commoner.h"
#include "structure/struct_IO.h"
#include "structure/struct_vars.h"

namespace siphons {

namespace {

/// What keeps a net from being ordinary.
struct Features {
  int32_t weights = 0;           ///< arcs with a weight other than 1
  int32_t markingDependent = 0;  ///< arcs with a marking-dependent weight
  int32_t inhibitors = 0;        ///< inhibitor arcs
  int32_t parallel = 0;          ///< arcs beside another one between the same place and transition
  int32_t functions = 0;         ///< transitions with an enabling function
  int32_t negative = 0;          ///< places with a negative initial marking
  int32_t priorities = 0;        ///< transitions with priority over others

  bool None() const {
    return weights + markingDependent + parallel + inhibitors + functions + negative + priorities == 0;
  }
};

/// Immediate transitions go before timed ones, and among themselves by their priority.
std::pair<bool, int32_t> PriorityOf(const struct_trans& transition) {
  const bool immediate = transition.kind == kKindImmediate;
  return {immediate, immediate ? transition.priority : 0};
}

Features FeaturesOfNet() {
  Features features;
  for (int32_t t = 0; t < model->ntrans; ++t) {
    const NetTransition& transition = model->transitions[t];
    const auto count = [&features](const NetArc* arcs, int32_t number) {
      for (int32_t i = 0; i < number; ++i) {
        if (arcs[i].is_value == 0) {
          ++features.markingDependent;
        } else if (arcs[i].multiplicity != 1) {
          ++features.weights;
        }
        const auto sharesPlace = [&](const NetArc& other) { return other.place == arcs[i].place; };
        if (std::any_of(arcs, arcs + i, sharesPlace)) ++features.parallel;
      }
    };
    count(transition.inarcs, transition.ninarcs);
    count(transition.outarcs, transition.noutarcs);
    features.inhibitors += transition.ninharcs;
    features.functions += transition.md_enable != nullptr ? 1 : 0;
  }
  features.negative = static_cast<int32_t>(std::count_if(
      places, places + no_places, [](const struct_place& place) { return place.init_mark < 0; }));
  std::vector<std::pair<bool, int32_t>> priorities;
  std::transform(transitions, transitions + no_trans, std::back_inserter(priorities), PriorityOf);
  if (!priorities.empty()) {
    const auto lowest = *std::min_element(priorities.begin(), priorities.end());
    features.priorities = static_cast<int32_t>(
        std::count_if(priorities.begin(), priorities.end(), [&](const auto& p) { return p > lowest; }));
  }
  return features;
}

/// Whether the condition holds: unknown without a violation in an incomplete run.
enum class Answer { kYes, kNo, kUnknown };

Answer AnswerOf(const CommonerResult& result) {
  if (!result.violations.empty()) return Answer::kNo;
  return result.complete ? Answer::kYes : Answer::kUnknown;
}

const char* ConclusionOf(Answer answer, const Features& features) {
  if (no_trans == 0) return "the net has no transition: every marking is dead";
  if (!features.None()) return "none: the condition decides for ordinary nets only";
  switch (answer) {
    case Answer::kYes:
      return "no dead marking is reachable";
    case Answer::kNo:
      return "none: a siphon without a marked trap may run dry, and need not";
    case Answer::kUnknown:
      break;
  }
  return "none: not all siphons were looked at";
}

std::string TextOf(const CommonerResult& result, const Features& features, const std::string& reason) {
  const Answer answer = AnswerOf(result);
  std::string text = "Every minimal siphon holds an initially marked trap: ";
  text += answer == Answer::kYes ? "yes" : answer == Answer::kNo ? "no" : "not known";
  text += "\nNo. of siphons = " + std::to_string(result.siphons) +
          ", without a marked trap = " + std::to_string(result.violations.size()) +
          (result.complete ? "" : " (incomplete: " + reason + ")") + "\n";
  for (const CommonerViolation& violation : result.violations) {
    text += MarkingLine(violation.siphon) + "  greatest trap " + MarkingLine(violation.trap);
  }
  text += std::string("Net: ") + (features.None() ? "ordinary" : "not ordinary") +
          "; weights other than 1: " + std::to_string(features.weights) +
          ", marking-dependent weights: " + std::to_string(features.markingDependent) +
          ", parallel arcs: " + std::to_string(features.parallel) +
          ", inhibitor arcs: " + std::to_string(features.inhibitors) +
          ", enabling functions: " + std::to_string(features.functions) +
          ", negative markings: " + std::to_string(features.negative) +
          ", transitions with priority: " + std::to_string(features.priorities) + "\n";
  return text + "Conclusion: " + ConclusionOf(answer, features) + "\n";
}

std::string JsonText(const std::string& net, const CommonerResult& result, const Features& features,
                     const std::string& reason) {
  const Answer answer = AnswerOf(result);
  Json violations = Json::array();
  for (const CommonerViolation& violation : result.violations) {
    Json entry = JsonOf(violation.siphon);
    entry["trap"] = JsonOf(violation.trap);
    violations.push_back(std::move(entry));
  }
  return LineOf({{"net", net},
                 {"counts", {{"places", no_places}, {"transitions", no_trans}, {"siphons", result.siphons}}},
                 {"complete", result.complete},
                 {"reason", ReasonOf(reason)},
                 {"condition", answer == Answer::kUnknown ? Json() : Json(answer == Answer::kYes)},
                 {"ordinary", features.None()},
                 {"features",
                  {{"weights", features.weights},
                   {"marking_dependent_weights", features.markingDependent},
                   {"parallel_arcs", features.parallel},
                   {"inhibitor_arcs", features.inhibitors},
                   {"enabling_functions", features.functions},
                   {"negative_markings", features.negative},
                   {"priorities", features.priorities}}},
                 {"conclusion", ConclusionOf(answer, features)},
                 {"violations", std::move(violations)}});
}

}  // namespace

int32_t CheckCondition(const QuestionOptions& options) {
  RunControl control(options.timeout, "siphons");
  read_net(NetPath(options.net).c_str());
  TryOutput(options.output);
  std::vector<bool> marked;
  std::transform(places, places + no_places, std::back_inserter(marked),
                 [](const struct_place& place) { return place.init_mark > 0; });
  CommonerResult result = CheckCommoner(
      ArcSetsOfTables(), marked, [&control] { control.Count(); }, [&control] { return control.Stop(); });
  std::sort(result.violations.begin(), result.violations.end(),
            [](const CommonerViolation& a, const CommonerViolation& b) {
              return ShorterOrEarlier(a.siphon, b.siphon);
            });
  control.EndProgress();
  const Features features = FeaturesOfNet();
  WriteAnswer(options.output, options.json ? JsonText(options.net, result, features, control.Reason())
                                           : TextOf(result, features, control.Reason()));
  return result.complete ? kComplete : kIncomplete;
}

}  // namespace siphons
