// The front door of the subcommands that ask about nets: their common options, how they get their nets, how
// they answer.
//
// Each NET is read, asked about and answered by itself. A net that cannot be read does not keep the others
// from being answered; the exit status is the greatest of all.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "base/exit_status.h"
#include "netkit/commands/answers.h"
#include "netkit/commands/run_control.h"
#include "netkit/formats/net_file.h"

namespace CLI {
class App;
}

namespace siphons {

struct QuestionOptions {
  std::vector<std::string> nets;
  std::string output;  ///< empty: standard output
  bool json = false;
  bool quiet = false;
  bool lenient = false;
  double timeout = 0;  ///< seconds for each net; 0: none
};

/// What is said about one net.
struct Answer {
  std::string text;  ///< ends with a line end
  Json json;         ///< an object; "version" and "net" are put before its members
  int32_t status = kComplete;
};

/// Adds a subcommand with the options that all questions have. `options` must outlive the run of `app`.
CLI::App* AddQuestion(CLI::App& app, const std::string& name, const std::string& description,
                      QuestionOptions& options);

/// As AddQuestion, for a question that may take long: with a time limit.
CLI::App* AddLongQuestion(CLI::App& app, const std::string& name, const std::string& description,
                          QuestionOptions& options);

/// Reads every net and writes what `ask` answers; errors of a file go to standard error, or are an answer
/// under --json. `counted` is what the progress line counts. Returns the exit status.
int32_t AnswerEach(const QuestionOptions& options, const std::string& counted,
                   const std::function<Answer(const PetriNet&, RunControl&)>& ask);

/// As AnswerEach, but `ask` answers about a net that cannot be read, too.
int32_t AnswerReadings(const QuestionOptions& options,
                       const std::function<Answer(const std::string&, NetReading&)>& ask);

/// Wrong usage that only the net tells, thrown by `ask`: the message is told and the status is that of wrong
/// usage.
struct WrongUsage {
  std::string message;
};

/// What keeps a net from being answered although it was read, thrown by `ask`: the status is that of a
/// failure.
struct Refusal {
  std::string message;
  Json diagnostics;
};

/// Adds the nets and the time limit alone, for a subcommand that writes something else than its answer.
void AddNets(CLI::App& command, QuestionOptions& options);
void AddTimeout(CLI::App& command, QuestionOptions& options);

/// Adds the flags that all subcommands about nets have.
void AddCommonFlags(CLI::App& command, QuestionOptions& options);

/// The number of the place; throws WrongUsage when the net has none of this name.
int32_t PlaceOfName(const PetriNet& net, const std::string& name);

/// Checks of option values, in the form of the command line library: what is wrong, or an empty text.
std::string FaultOfDuration(const std::string& text);
std::string FaultOfCount(const std::string& text);

}  // namespace siphons
