// netkit check: whether a net can block; why, or why not.
//
// The verdict itself is made in netkit/verdict; here it is put into words. The first line says all; what
// follows are reasons, cut after the first few where there are many: JSON and --trace have the rest.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "netkit/commands/commands.h"
#include "netkit/commands/net_output.h"
#include "netkit/commands/question.h"
#include "netkit/commands/verdict_words.h"
#include "netkit/model/net_class.h"
#include "netkit/verdict/explanation.h"
#include "netkit/verdict/verdict.h"

namespace siphons {

namespace {

constexpr size_t kMostLines = 20;    // of one kind
constexpr size_t kMostFirings = 60;  // of a sequence
constexpr size_t kMostSiphons = 20;  // that explain a deadlock

struct CheckOptions : QuestionOptions {
  std::string trace;    ///< file for the sequence; empty: none
  std::string reduced;  ///< file for the reduced net; empty: none
};

/// A verdict with what explains it.
struct Explained {
  Verdict verdict;
  std::string stopReason;  ///< time limit or interrupt, or empty
  std::vector<PlaceList>
      siphons;  ///< short of tokens in the dead marking, or empty for nets with inhibitor arcs
  std::vector<Obstacle> obstacles;  ///< in the dead marking
};

const std::string& NameOf(const PetriNet& net, int32_t place) {
  return net.places[static_cast<size_t>(place)].name;
}

/// The first lines of a list, and how many more there are.
std::string FirstOf(const std::vector<std::string>& lines) {
  std::string text;
  for (size_t i = 0; i < std::min(lines.size(), kMostLines); ++i) text += lines[i];
  if (lines.size() > kMostLines) {
    text += "  and " + std::to_string(lines.size() - kMostLines) + " more (--json lists all)\n";
  }
  return text;
}

std::vector<std::string> LinesOf(const PetriNet& net, const std::vector<PlaceList>& sets) {
  std::vector<std::string> lines;
  for (const PlaceList& set : sets) lines.push_back(MarkingLine(net, set));
  return lines;
}

std::string NamesOf(const PetriNet& net, const std::vector<int32_t>& transitions) {
  std::string names;
  for (const int32_t t : transitions) names += " " + net.transitions[static_cast<size_t>(t)].name;
  return names;
}

std::string LineOf(const PetriNet& net, const FiringCondition& condition) {
  std::string set = "{ ", line = "  ";
  for (const int32_t p : condition.places) set += NameOf(net, p) + " ";
  const std::string breakers = NamesOf(net, condition.breakers);
  const std::string cause = condition.cause < 0 ? "" : NamesOf(net, {condition.cause}).substr(1);
  if (condition.kind == FiringCondition::Kind::kSiphon) {
    return line + cause + " needs a token of " + set + "}, into which " +
           (breakers.empty() ? "nothing brings one" : "only these bring one:" + breakers) + "\n";
  }
  if (!cause.empty()) line += "after " + cause + ", ";
  return line + "a token stays in " + set + "}" +
         (breakers.empty() ? "" : " unless one of these fires:" + breakers) + "\n";
}

std::string RefutationsText(const PetriNet& net, const Verdict& verdict) {
  const PetriNet& itsNet = verdict.reduced ? *verdict.reduced : net;
  const std::string of = verdict.reduced ? " of the proof, in the reduced net:\n" : " of the proof:\n";
  std::string text;
  if (!verdict.refutations.traps.empty()) {
    text += "Traps" + of + FirstOf(LinesOf(itsNet, verdict.refutations.traps));
  }
  std::vector<std::string> lines;
  for (const FiringCondition& condition : verdict.refutations.conditions) {
    lines.push_back(LineOf(itsNet, condition));
  }
  if (!lines.empty()) text += "Conditions" + of + FirstOf(lines);
  return text;
}

std::string SequenceText(const PetriNet& net, const std::vector<int32_t>& sequence) {
  std::string text = "Sequence:";
  for (size_t i = 0; i < std::min(sequence.size(), kMostFirings); ++i) {
    text += " " + net.transitions[static_cast<size_t>(sequence[i])].name;
  }
  if (sequence.size() > kMostFirings) {
    text += " and " + std::to_string(sequence.size() - kMostFirings) + " more (--trace FILE writes all)";
  }
  return text + "\n";
}

std::string DeadlockText(const PetriNet& net, const Explained& explained) {
  const Verdict& verdict = explained.verdict;
  std::string text = SequenceText(net, verdict.sequence) + "Dead marking:";
  for (size_t p = 0; p < verdict.dead.size(); ++p) {
    if (verdict.dead[p] > 0) text += " " + net.places[p].name + "=" + std::to_string(verdict.dead[p]);
  }
  text += "\n";
  if (!explained.siphons.empty()) {
    text += "Siphons short of tokens there, with their initial tokens:\n" +
            FirstOf(LinesOf(net, explained.siphons));
  }
  std::vector<std::string> lines;
  for (const Obstacle& obstacle : explained.obstacles) {
    lines.push_back("  " + net.transitions[static_cast<size_t>(obstacle.transition)].name + ": " +
                    NameOf(net, obstacle.place) + " holds " + std::to_string(obstacle.tokens) + ", " +
                    (obstacle.inhibitor ? "less than " : "") + std::to_string(obstacle.weight) +
                    (obstacle.inhibitor ? " is allowed\n" : " needed\n"));
  }
  return text + "What holds each transition up:\n" + FirstOf(lines);
}

std::string TextOf(const PetriNet& net, const Explained& explained) {
  const Verdict& verdict = explained.verdict;
  std::string text = std::string(WordOf(verdict.finding));
  if (verdict.finding == Finding::kDeadlock) {
    const size_t firings = verdict.sequence.size();
    return text + " after " + std::to_string(firings) + (firings == 1 ? " firing; " : " firings; ") +
           GroundOf(net, verdict) + "\n" + DeadlockText(net, explained);
  }
  text += ": ";
  if (!explained.stopReason.empty()) text += explained.stopReason + "; ";
  return text + GroundOf(net, verdict) + "\n" + RefutationsText(net, verdict);
}

Json JsonOf(const PetriNet& net, const FiringCondition& condition) {
  const auto name = [&net](int32_t t) { return net.transitions[static_cast<size_t>(t)].name; };
  Json places = Json::array(), breakers = Json::array();
  for (const int32_t p : condition.places) places.push_back(NameOf(net, p));
  for (const int32_t t : condition.breakers) breakers.push_back(name(t));
  return {{"kind", condition.kind == FiringCondition::Kind::kTrap ? "trap" : "siphon"},
          {"places", std::move(places)},
          {"unless_fired", std::move(breakers)},
          {"cause", condition.cause < 0 ? Json() : Json(name(condition.cause))}};
}

/// The members "traps" and "conditions" of a proof about the net.
Json JsonOf(const PetriNet& net, const Refutations& refutations) {
  Json traps = Json::array(), conditions = Json::array();
  for (const PlaceList& trap : refutations.traps) traps.push_back(JsonOf(net, trap));
  for (const FiringCondition& condition : refutations.conditions)
    conditions.push_back(JsonOf(net, condition));
  return {{"traps", std::move(traps)}, {"conditions", std::move(conditions)}};
}

/// "places" and "transitions" of a net.
Json CountsOf(const PetriNet& net) {
  return {{"places", net.places.size()}, {"transitions", net.transitions.size()}};
}

Json JsonAnswer(const PetriNet& net, const Explained& explained) {
  const Verdict& verdict = explained.verdict;
  const bool deadlock = verdict.finding == Finding::kDeadlock;
  const bool undecided = verdict.finding == Finding::kUndecided;
  Json sequence = Json::array(), marking = Json::object(), obstacles = Json::array();
  Json siphons = Json::array(), reduced;
  for (const int32_t t : verdict.sequence) {
    sequence.push_back(net.transitions[static_cast<size_t>(t)].name);
  }
  for (size_t p = 0; p < verdict.dead.size(); ++p) {
    if (verdict.dead[p] > 0) marking[net.places[p].name] = verdict.dead[p];
  }
  for (const Obstacle& obstacle : explained.obstacles) {
    obstacles.push_back({{"transition", net.transitions[static_cast<size_t>(obstacle.transition)].name},
                         {"place", NameOf(net, obstacle.place)},
                         {"tokens", obstacle.tokens},
                         {"weight", obstacle.weight},
                         {"inhibitor", obstacle.inhibitor}});
  }
  if (verdict.reduced) {
    reduced = CountsOf(*verdict.reduced);
    reduced.update(JsonOf(*verdict.reduced, verdict.refutations));
  }
  Json proof = JsonOf(net, verdict.reduced ? Refutations() : verdict.refutations);
  for (const PlaceList& siphon : explained.siphons) siphons.push_back(JsonOf(net, siphon));
  return {{"counts", CountsOf(net)},
          {"verdict", WordOf(verdict.finding)},
          {"because", GroundOf(net, verdict)},
          {"complete", !undecided},
          {"reason",
           undecided ? ReasonOf(explained.stopReason.empty() ? "limits" : explained.stopReason) : Json()},
          {"markings", verdict.markings},
          {"traps", std::move(proof["traps"])},
          {"conditions", std::move(proof["conditions"])},
          {"reduced", std::move(reduced)},
          {"sequence", deadlock ? std::move(sequence) : Json()},
          {"dead_marking", deadlock ? std::move(marking) : Json()},
          {"short_siphons", std::move(siphons)},
          {"held_up", std::move(obstacles)}};
}

void WriteTrace(const std::string& file, const PetriNet& net, const std::vector<int32_t>& sequence) {
  std::string text;
  for (const int32_t t : sequence) text += net.transitions[static_cast<size_t>(t)].name + "\n";
  WriteAnswer(file, text);
}

Answer AnswerAbout(const PetriNet& net, const CheckOptions& options, RunControl& control) {
  if (!options.reduced.empty()) CheckNetOutput(options.nets[0], options.reduced, "--reduced");
  Explained explained;
  explained.verdict = Decide(net, {.onlyNeeded = true}, [&control](int64_t looked) {
    control.SetCount(looked);
    return control.Stop();
  });
  const Verdict& verdict = explained.verdict;
  if (verdict.finding == Finding::kUndecided) explained.stopReason = control.Reason();
  if (verdict.finding == Finding::kDeadlock) {
    explained.obstacles = Obstacles(net, verdict.dead);
    if (FeaturesOf(net).inhibitors == 0) {
      explained.siphons = SiphonsAmong(net, ShortPlaces(net, verdict.dead), kMostSiphons,
                                       [&control] { return control.Stop(); });
    }
    if (!options.trace.empty()) WriteTrace(options.trace, net, verdict.sequence);
  }
  Answer answer = {TextOf(net, explained), JsonAnswer(net, explained), StatusOf(verdict.finding)};
  if (options.reduced.empty() || !verdict.reduced || verdict.reduced->places.empty()) return answer;
  WrittenNet written = WriteNet(*verdict.reduced, options.reduced);
  answer.text += written.text;
  answer.json["written"] = std::move(written.json);
  return answer;
}

}  // namespace

void AddCheck(const Command& app) {
  const auto options = std::make_shared<CheckOptions>();
  const Command command = AddLongQuestion(
      app, "check", "Tell whether a net can block: a proof, or the way into a deadlock", *options);
  command
      .AddOption("--trace", &options->trace,
                 "write the sequence into the deadlock to FILE, a transition a line; one NET only")
      .ValueName("FILE");
  command
      .AddOption(
          "--reduced", &options->reduced,
          "write the reduced net that a proof is about, unless that is the net itself, to FILE (.PD, .pnml, "
          ".pnml.gz); one NET only")
      .ValueName("FILE");
  command.SetFooter(
      "Exit status: 0 deadlock-free, 10 deadlock, 11 undecided; 1 a net cannot be read or an answer not be "
      "written, 2 wrong usage, 255 out of memory. With several nets, the greatest.");
  command.SetAction([options] {
    RequireOneNet(*options, !options->trace.empty(), "--trace");
    RequireOneNet(*options, !options->reduced.empty(), "--reduced");
    return AnswerEach(*options, "markings and firings", [&options](const PetriNet& net, RunControl& control) {
      return AnswerAbout(net, *options, control);
    });
  });
}

}  // namespace siphons
