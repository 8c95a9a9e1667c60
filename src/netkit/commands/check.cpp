// netkit check: whether a net can block; why, or why not.
//
// The verdict itself is made in netkit/verdict; here it is put into words. The first line says all; what
// follows are reasons, cut after the first few where there are many: JSON and --trace have the rest.
#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "netkit/commands/commands.h"
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
  std::string trace;  ///< file for the sequence; empty: none
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
  text += GroundOf(net, verdict) + "\n";
  if (!verdict.traps.empty()) text += "Traps of the proof:\n" + FirstOf(LinesOf(net, verdict.traps));
  return text;
}

Json JsonAnswer(const PetriNet& net, const Explained& explained) {
  const Verdict& verdict = explained.verdict;
  const bool deadlock = verdict.finding == Finding::kDeadlock;
  const bool undecided = verdict.finding == Finding::kUndecided;
  Json sequence = Json::array(), marking = Json::object(), obstacles = Json::array();
  Json traps = Json::array(), siphons = Json::array();
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
  for (const PlaceList& trap : verdict.traps) traps.push_back(JsonOf(net, trap));
  for (const PlaceList& siphon : explained.siphons) siphons.push_back(JsonOf(net, siphon));
  return {{"counts", {{"places", net.places.size()}, {"transitions", net.transitions.size()}}},
          {"verdict", WordOf(verdict.finding)},
          {"because", GroundOf(net, verdict)},
          {"complete", !undecided},
          {"reason",
           undecided ? ReasonOf(explained.stopReason.empty() ? "limits" : explained.stopReason) : Json()},
          {"markings", verdict.markings},
          {"traps", std::move(traps)},
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
  Explained explained;
  explained.verdict = Decide(net, {}, [&control](int64_t looked) {
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
  return {TextOf(net, explained), JsonAnswer(net, explained), StatusOf(verdict.finding)};
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
  command.SetFooter(
      "Exit status: 0 deadlock-free, 10 deadlock, 11 undecided; 1 a net cannot be read or an answer not be "
      "written, 2 wrong usage, 255 out of memory. With several nets, the greatest.");
  command.SetAction([options] {
    if (!options->trace.empty() && options->nets.size() > 1) {
      throw WrongUsage{"--trace: takes one NET only"};
    }
    return AnswerEach(*options, "markings and firings", [&options](const PetriNet& net, RunControl& control) {
      return AnswerAbout(net, *options, control);
    });
  });
}

}  // namespace siphons
