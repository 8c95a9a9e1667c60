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
#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "netkit/commands/commands.h"
#include "netkit/commands/question.h"
#include "netkit/model/net_class.h"
#include "netkit/siphons/commoner.h"

namespace siphons {

namespace {

/// Whether the condition holds: unknown without a violation in an incomplete run.
enum class Verdict { kYes, kNo, kUnknown };

Verdict VerdictOf(const CommonerResult& result) {
  if (!result.violations.empty()) return Verdict::kNo;
  return result.complete ? Verdict::kYes : Verdict::kUnknown;
}

const char* ConclusionOf(Verdict answer, const NetFeatures& features) {
  if (!features.None()) return "none: the condition decides for ordinary nets only";
  switch (answer) {
    case Verdict::kYes:
      return "no dead marking is reachable";
    case Verdict::kNo:
      return "none: a siphon without a marked trap may run dry, and need not";
    case Verdict::kUnknown:
      break;
  }
  return "none: not all siphons were looked at";
}

std::string TextOf(const PetriNet& net, const CommonerResult& result, const NetFeatures& features,
                   const std::string& reason) {
  const Verdict answer = VerdictOf(result);
  std::string text = "Every minimal siphon holds an initially marked trap: ";
  text += answer == Verdict::kYes ? "yes" : answer == Verdict::kNo ? "no" : "not known";
  text += "\nNo. of siphons = " + std::to_string(result.siphons) +
          ", without a marked trap = " + std::to_string(result.violations.size()) +
          (result.complete ? "" : " (incomplete: " + reason + ")") + "\n";
  for (const CommonerViolation& violation : result.violations) {
    text += MarkingLine(net, violation.siphon) + "  greatest trap " + MarkingLine(net, violation.trap);
  }
  text += std::string("Net: ") + (features.None() ? "ordinary" : "not ordinary") +
          "; weights other than 1: " + std::to_string(features.weights) +
          ", marking-dependent weights: " + std::to_string(features.markingDependent) +
          ", inhibitor arcs: " + std::to_string(features.inhibitors) +
          ", enabling functions: " + std::to_string(features.functions) +
          ", transitions with priority: " + std::to_string(features.priorities) + "\n";
  return text + "Conclusion: " + ConclusionOf(answer, features) + "\n";
}

Json JsonAnswer(const PetriNet& net, const CommonerResult& result, const NetFeatures& features,
                const std::string& reason) {
  const Verdict answer = VerdictOf(result);
  Json violations = Json::array();
  for (const CommonerViolation& violation : result.violations) {
    Json entry = JsonOf(net, violation.siphon);
    entry["trap"] = JsonOf(net, violation.trap);
    violations.push_back(std::move(entry));
  }
  return {
      {"counts",
       {{"places", net.places.size()}, {"transitions", net.transitions.size()}, {"siphons", result.siphons}}},
      {"complete", result.complete},
      {"reason", ReasonOf(reason)},
      {"condition", answer == Verdict::kUnknown ? Json() : Json(answer == Verdict::kYes)},
      {"ordinary", features.None()},
      {"features",
       {{"weights", features.weights},
        {"marking_dependent_weights", features.markingDependent},
        {"inhibitor_arcs", features.inhibitors},
        {"enabling_functions", features.functions},
        {"priorities", features.priorities}}},
      {"conclusion", ConclusionOf(answer, features)},
      {"violations", std::move(violations)}};
}

Answer AnswerAbout(const PetriNet& net, RunControl& control) {
  std::vector<bool> marked;
  std::transform(net.places.begin(), net.places.end(), std::back_inserter(marked),
                 [](const Place& place) { return place.tokens > 0; });
  CommonerResult result = CheckCommoner(
      ArcSetsOf(net), marked, [&control] { control.Count(); }, [&control] { return control.Stop(); });
  std::sort(result.violations.begin(), result.violations.end(),
            [](const CommonerViolation& a, const CommonerViolation& b) {
              return ShorterOrEarlier(a.siphon, b.siphon);
            });
  const NetFeatures features = FeaturesOf(net);
  return {TextOf(net, result, features, control.Reason()),
          JsonAnswer(net, result, features, control.Reason()), result.complete ? kComplete : kIncomplete};
}

}  // namespace

void AddCheck(CLI::App& app, int32_t& status) {
  const auto options = std::make_shared<QuestionOptions>();
  CLI::App* const command = AddLongQuestion(
      app, "check", "Tell whether every minimal siphon holds an initially marked trap", *options);
  command->footer(
      "Exit status: 0 complete, 1 a net cannot be read or an answer not be written, 2 wrong usage, "
      "3 stopped at a limit or interrupted (what was found is written then, too), 255 out of memory.");
  command->callback([options, &status] { status = AnswerEach(*options, "siphons", AnswerAbout); });
}

}  // namespace siphons
