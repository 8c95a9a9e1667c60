// netkit monitors: the places that keep a net from blocking, and the verdict on the net with them.
#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "netkit/commands/commands.h"
#include "netkit/commands/net_output.h"
#include "netkit/commands/node_names.h"
#include "netkit/commands/question.h"
#include "netkit/commands/verdict_words.h"
#include "netkit/formats/free_positions.h"
#include "netkit/verdict/monitors.h"

namespace siphons {

namespace {

struct MonitorQuestion : QuestionOptions {
  std::string newNet;                       ///< file for the net with monitors; empty: none
  std::vector<std::string> uncontrollable;  ///< transition names
  int64_t most = 0;                         ///< 0: the usual number
};

std::string Factor(int64_t weight) {
  return weight == 1 ? "" : std::to_string(weight) + "*";
}

/// "2*a + b - c >= 1".
std::string SumText(const PetriNet& net, const MarkingBound& bound) {
  std::string text;
  for (const PlaceTokens& term : bound.weights) {
    const bool negative = term.tokens < 0;
    text += text.empty() ? (negative ? "-" : "") : (negative ? " - " : " + ");
    text += Factor(negative ? -term.tokens : term.tokens) + net.places[static_cast<size_t>(term.place)].name;
  }
  return text + " >= " + std::to_string(bound.least);
}

/// The transitions that a place feeds, or that fill it, with the weights of their arcs.
struct ArcsOfPlace {
  std::string text;
  Json json = Json::array();
};

ArcsOfPlace ArcsOf(const PetriNet& net, size_t place, std::vector<Arc> Transition::*arcs) {
  ArcsOfPlace found;
  for (const Transition& transition : net.transitions) {
    for (const Arc& arc : transition.*arcs) {
      if (arc.place != static_cast<int32_t>(place)) continue;
      found.text += " " + Factor(arc.weight) + transition.name;
      found.json.push_back({{"transition", transition.name}, {"weight", arc.weight}});
    }
  }
  if (found.text.empty()) found.text = " nothing";
  return found;
}

/// Why the net is not proved: a limit, or what the monitors met.
std::string WhyNotProved(const MonitoredNet& monitored, const RunControl& control) {
  if (monitored.verdict.finding == Finding::kDeadlockFree) return "";
  return control.Reason().empty() ? monitored.reason : control.Reason();
}

Answer AnswerOf(const PetriNet& net, const MonitoredNet& monitored, const std::string& reason) {
  const Finding finding = monitored.verdict.finding;
  const size_t count = monitored.monitors.size();
  const std::string ground = GroundOf(monitored.net, monitored.verdict);
  std::string text = std::string(WordOf(finding)) + " with " + std::to_string(count) +
                     (count == 1 ? " monitor: " : " monitors: ") + (reason.empty() ? ground : reason) + "\n";
  Json list = Json::array();
  for (size_t i = 0; i < count; ++i) {
    const Monitor& monitor = monitored.monitors[i];
    const size_t place = net.places.size() + i;
    const ArcsOfPlace inputs = ArcsOf(monitored.net, place, &Transition::outputs);
    const ArcsOfPlace outputs = ArcsOf(monitored.net, place, &Transition::inputs);
    text += monitor.name + ": " + std::to_string(monitor.tokens) +
            (monitor.tokens == 1 ? " token" : " tokens") + "\n  keeps " + SumText(net, monitor.keeps) +
            "\n  feeds" + outputs.text + "\n  is filled by" + inputs.text + "\n";
    Json weights = Json::object();
    for (const PlaceTokens& term : monitor.keeps.weights) {
      weights[net.places[static_cast<size_t>(term.place)].name] = term.tokens;
    }
    list.push_back({{"name", monitor.name},
                    {"tokens", monitor.tokens},
                    {"keeps", {{"weights", std::move(weights)}, {"least", monitor.keeps.least}}},
                    {"feeds", outputs.json},
                    {"filled_by", inputs.json}});
  }
  if (!monitored.uncontrolled.empty()) {
    text += "No monitor controls this siphon:\n" + MarkingLine(monitored.net, monitored.uncontrolled);
  }
  Json kept;
  if (monitored.kept) {
    text += "Markings from which the net need not block: " + std::to_string(monitored.kept->kept) + " of " +
            std::to_string(monitored.kept->before) + " are still reached\n";
    kept = {{"before", monitored.kept->before}, {"kept", monitored.kept->kept}};
  }
  return {text,
          {{"verdict", WordOf(finding)},
           {"because", ground},
           {"complete", finding != Finding::kUndecided},
           {"reason", ReasonOf(reason)},
           {"monitors", std::move(list)},
           {"uncontrolled_siphon",
            monitored.uncontrolled.empty() ? Json() : JsonOf(monitored.net, monitored.uncontrolled)},
           {"kept_markings", std::move(kept)}},
          StatusOf(finding)};
}

Answer AnswerAbout(const PetriNet& net, const MonitorQuestion& question, RunControl& control) {
  if (!question.newNet.empty()) {
    CheckNetOutput(question.nets[0], question.newNet);
    TryOutput(question.newNet);
  }
  MonitorOptions options;
  if (question.most > 0) options.most = static_cast<size_t>(question.most);
  for (const std::string& name : question.uncontrollable) {
    options.uncontrollable.push_back(NumberOfName("transition", net.transitions, name));
  }
  MonitoredNet monitored = AddMonitors(net, options, [&control](int64_t looked) {
    if (looked > 0) control.SetCount(looked);
    return control.Stop();
  });
  Answer answer = AnswerOf(net, monitored, WhyNotProved(monitored, control));
  if (question.newNet.empty()) return answer;
  GivePositions(monitored.net);
  WrittenNet written = WriteNet(monitored.net, question.newNet);
  answer.text += written.text;
  answer.json["written"] = std::move(written.json);
  return answer;
}

}  // namespace

void AddMonitors(const Command& app) {
  const auto question = std::make_shared<MonitorQuestion>();
  const Command command = app.AddSubcommand("monitors", "Find places that keep a net from blocking");
  AddNets(command, *question);
  command
      .AddOption(
          "-o,--output", &question->newNet,
          "write the net with the monitors to FILE (.PD, .pnml, .pnml.gz), proved or not; one NET only")
      .ValueName("FILE");
  command
      .AddOption("--uncontrollable", &question->uncontrollable,
                 "transitions that no monitor may hold up, separated by commas")
      .ValueName("NAME,...")
      .SeparatedBy(',')
      .OneArgument();
  command.AddOption("--max", &question->most, "add at most N monitors (100)")
      .Check(FaultOfCount)
      .ValueName("N");
  AddCommonFlags(command, *question);
  AddTimeout(command, *question);
  command.SetFooter(
      "A monitor is a place that holds what a weighted sum of tokens has beyond a bound, so that the sum "
      "cannot fall below it. Transitions with priority over others are never held up.\n"
      "Exit status, of the net with monitors: 0 deadlock-free, 10 deadlock, 11 undecided; 1 a net cannot be "
      "read or not be written, 2 wrong usage, 255 out of memory. With several nets, the greatest.");
  command.SetAction([question] {
    RequireOneNet(*question, !question->newNet.empty(), "--output");
    return AnswerEach(*question, "markings and firings",
                      [&question](const PetriNet& net, RunControl& control) {
                        return AnswerAbout(net, *question, control);
                      });
  });
}

}  // namespace siphons
