#include "netkit/commands/question.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "netkit/commands/lenient_reader.h"
#include "netkit/commands/node_names.h"
#include "netkit/formats/net_file.h"

namespace siphons {

namespace {

/// Reads the net strictly, or a .PD file as the report program's loader does.
NetReading ReadAs(const std::string& net, bool lenient) {
  const std::string path = net == "-" ? "" : FindNet(net);
  if (!lenient || path.ends_with(".pnml") || path.ends_with(".gz")) return ReadNet(net);
  NetReading reading{std::nullopt, Diagnostics(path.empty() ? "<standard input>" : path)};
  reading.net = ReadLeniently(path, reading.diagnostics);
  return reading;
}

/// The answers on their way out: at once to standard output, all together to a file.
class AnswerWriter {
 public:
  explicit AnswerWriter(const QuestionOptions& options) : options_(options) { TryOutput(options.output); }

  void Write(const std::string& net, Answer answer) {
    status_ = std::max(status_, answer.status);
    std::string text;
    if (options_.json) {
      Json whole = {{"version", kAnswerVersion}, {"net", net}};
      if (options_.lenient) whole["lenient"] = true;
      whole.update(answer.json);
      text = JsonLine(whole);
    } else {
      text = options_.nets.size() > 1 ? net + ": " + answer.text : std::move(answer.text);
    }
    if (!options_.output.empty()) {
      collected_ += text;
    } else if (!options_.quiet) {
      WriteAnswer("", text);
    }
  }

  /// Reports what keeps a net from being answered.
  void Fail(const std::string& net, const std::string& message, const Json& diagnostics, int32_t status) {
    if (options_.json) {
      Write(net,
            {"", {{"error", message.substr(0, message.find('\n'))}, {"diagnostics", diagnostics}}, status});
    } else {
      std::fputs(message.c_str(), stderr);
      status_ = std::max(status_, status);
    }
  }

  /// Writes the file, if there is one. Returns the exit status.
  int32_t Finish() const {
    if (!options_.output.empty()) WriteAnswer(options_.output, collected_);
    return status_;
  }

 private:
  const QuestionOptions& options_;
  std::string collected_;
  int32_t status_ = kComplete;
};

}  // namespace

void RequireOneNet(const QuestionOptions& options, bool isGiven, const char* option) {
  if (isGiven && options.nets.size() > 1) throw WrongUsage{std::string(option) + ": takes one NET only"};
}

int32_t PlaceOfName(const PetriNet& net, const std::string& name) {
  return NumberOfName("place", net.places, name);
}

std::string FaultOfDuration(const std::string& text) {
  constexpr double kLongest = 1e9;
  char* end = nullptr;
  const double seconds = std::strtod(text.c_str(), &end);
  return *end == '\0' && seconds > 0 && seconds <= kLongest ? "" : "a positive number of seconds is wanted";
}

std::string FaultOfCount(const std::string& text) {
  constexpr size_t kMostDigits = 18;
  const bool isDecimal = text.find_first_not_of("0123456789") == std::string::npos;
  return isDecimal && text.size() <= kMostDigits && !text.empty() && text[0] != '0'
             ? ""
             : "a positive decimal number is wanted";
}

void AddCommonFlags(const Command& command, QuestionOptions& options) {
  command.AddFlag("--json", options.json, "answer as JSON, a line for each net");
  command.AddFlag("-q,--quiet", options.quiet, "write nothing to standard output: the exit status tells");
  command.AddFlag("--lenient", options.lenient,
                  "read .PD files as siphons does, which takes damaged files for nets");
}

void AddNets(const Command& command, QuestionOptions& options) {
  command
      .AddOption(
          "NET", &options.nets,
          "file (.PD, .pnml, .pnml.gz), - for standard input, or a bare name: NET.PD in MODELDIR or here; "
          "one or more")
      .Required();
}

void AddTimeout(const Command& command, QuestionOptions& options) {
  command.AddOption("--timeout", &options.timeout, "stop after this time, for each net")
      .Check(FaultOfDuration)
      .ValueName("SECONDS");
}

Command AddQuestion(const Command& app, const std::string& name, const std::string& description,
                    QuestionOptions& options) {
  const Command command = app.AddSubcommand(name, description);
  AddNets(command, options);
  command.AddOption("-o,--output", &options.output, "write to FILE, not to standard output")
      .ValueName("FILE");
  AddCommonFlags(command, options);
  return command;
}

Command AddLongQuestion(const Command& app, const std::string& name, const std::string& description,
                        QuestionOptions& options) {
  const Command command = AddQuestion(app, name, description, options);
  AddTimeout(command, options);
  return command;
}

int32_t AnswerEach(const QuestionOptions& options, const std::string& counted,
                   const std::function<Answer(const PetriNet&, RunControl&)>& ask) {
  AnswerWriter writer(options);
  std::string lastWords;
  for (const std::string& net : options.nets) {
    RunControl control(options.timeout, counted, options.quiet);
    const NetReading reading = ReadAs(net, options.lenient);
    if (!reading.net) {
      writer.Fail(net, reading.diagnostics.Text(), JsonOf(reading.diagnostics), kFailure);
      continue;
    }
    try {
      Answer answer = ask(*reading.net, control);
      control.EndProgress();
      writer.Write(net, std::move(answer));
      lastWords += control.LastWords(options.output);
    } catch (const WrongUsage& usage) {
      writer.Fail(net, usage.message + "\n", Json::array(), kUsage);
    } catch (const Refusal& refusal) {
      writer.Fail(net, refusal.message + "\n", refusal.diagnostics, kFailure);
    }
    if (control.Interrupted()) break;
  }
  const int32_t status = writer.Finish();
  std::fputs(lastWords.c_str(), stderr);
  return status;
}

int32_t AnswerReadings(const QuestionOptions& options,
                       const std::function<Answer(const std::string&, NetReading&)>& ask) {
  AnswerWriter writer(options);
  for (const std::string& net : options.nets) {
    NetReading reading = ReadAs(net, options.lenient);
    writer.Write(net, ask(net, reading));
  }
  return writer.Finish();
}

}  // namespace siphons
