// netkit lint: everything that is wrong with a net file, and what looks as if it were not meant.
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <system_error>

#include "netkit/commands/commands.h"
#include "netkit/commands/question.h"
#include "netkit/model/net_class.h"

namespace siphons {

namespace {

constexpr size_t kLongestName = 29;  // that the report program reads
constexpr int64_t kGreatest = std::numeric_limits<int32_t>::max();

void WarnOfName(const std::string& name, SourcePosition where, Diagnostics& diagnostics) {
  if (name.size() > kLongestName) {
    diagnostics.Warn(where, "the name " + Quoted(name) +
                                " has more than 29 characters, with which siphons ends; "
                                "shorten it");
  }
  if (name.find('%') != std::string::npos) {
    diagnostics.Warn(where, "the name " + Quoted(name) +
                                " has a %, which the report takes for a conversion; write %% "
                                "or another character");
  }
}

/// The sum stops at the greatest number of 64 bits.
void AddTo(int64_t& sum, int64_t number) {
  sum =
      sum > std::numeric_limits<int64_t>::max() - number ? std::numeric_limits<int64_t>::max() : sum + number;
}

void WarnOfTransition(const Transition& transition, Diagnostics& diagnostics) {
  const std::string name = Quoted(transition.name);
  WarnOfName(transition.name, transition.where, diagnostics);
  if (transition.inputs.empty()) {
    diagnostics.Warn(transition.where, "the transition " + name + " takes from no place and can always fire");
  }
  if (transition.outputs.empty()) {
    diagnostics.Warn(transition.where, "the transition " + name + " puts into no place: its tokens are lost");
  }
  int64_t weights = 0;
  for (const Arc& arc : transition.outputs) AddTo(weights, arc.weight);
  if (weights > kGreatest) {
    diagnostics.Warn(transition.where, "the output weights of " + name + " sum up to " +
                                           std::to_string(weights) +
                                           ", which wraps in the report of siphons; use netkit siphons");
  }
}

void WarnOfNet(const PetriNet& net, Diagnostics& diagnostics) {
  const NetStructure structure = StructureOf(net);
  for (const int32_t p : structure.isolatedPlaces) {
    const Place& place = net.places[static_cast<size_t>(p)];
    diagnostics.Warn(place.where, "the place " + Quoted(place.name) + " has no arc; was one forgotten?");
  }
  int64_t tokens = 0;
  for (const Place& place : net.places) {
    WarnOfName(place.name, place.where, diagnostics);
    AddTo(tokens, place.tokens);
  }
  if (tokens > kGreatest) {
    diagnostics.Warn({1, 1}, "the places have " + std::to_string(tokens) +
                                 " tokens, which may wrap in the report of siphons; use netkit siphons");
  }
  bool anyTimed = false;
  for (const Transition& transition : net.transitions) {
    WarnOfTransition(transition, diagnostics);
    if (transition.kind != TransitionKind::kImmediate) anyTimed = true;
  }
  if (!anyTimed) diagnostics.Warn({1, 1}, "no timed transition, without which siphons refuses the net");
}

/// A .PD file needs its definition info for `siphons` only.
void WarnOfMissingInfo(const std::string& file, Diagnostics& diagnostics) {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path info = fs::path(file).replace_extension(".DEFINFO");
  if (fs::path(file).extension() == ".PD" && !fs::exists(info, error)) {
    diagnostics.Warn({1, 1}, "no " + info.filename().string() +
                                 " beside the file, which siphons needs; netkit "
                                 "convert writes one");
  }
}

std::string Counted(int64_t number, const char* thing) {
  return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

Answer Lint(const std::string&, NetReading& reading) {
  Diagnostics& diagnostics = reading.diagnostics;
  if (reading.net) {
    WarnOfNet(*reading.net, diagnostics);
    WarnOfMissingInfo(diagnostics.File(), diagnostics);
  }
  return {diagnostics.Text() + diagnostics.File() + ": " + Counted(diagnostics.Errors(), "error") + ", " +
              Counted(diagnostics.Warnings(), "warning") + "\n",
          {{"errors", diagnostics.Errors()},
           {"warnings", diagnostics.Warnings()},
           {"diagnostics", JsonOf(diagnostics)}},
          diagnostics.HasErrors() ? kFailure : kComplete};
}

}  // namespace

void AddLint(const Command& app) {
  const auto options = std::make_shared<QuestionOptions>();
  const Command command = AddQuestion(
      app, "lint", "Tell everything that is wrong with a net file, and what looks unmeant", *options);
  command.SetFooter("Exit status: 0 no errors, 1 errors, 2 wrong usage, 255 out of memory.");
  command.SetAction([options] { return AnswerReadings(*options, Lint); });
}

}  // namespace siphons
