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
#include "netkit/commands/command_line.h"
#include "netkit/commands/run_control.h"
#include "netkit/formats/net_file.h"

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
Command AddQuestion(const Command& app, const std::string& name, const std::string& description,
                    QuestionOptions& options);

/// As AddQuestion, for a question that may take long: with a time limit.
Command AddLongQuestion(const Command& app, const std::string& name, const std::string& description,
                        QuestionOptions& options);

/// Reads every net and writes what `ask` answers; errors of a file go to standard error, or are an answer
/// under --json. `counted` is what the progress line counts. Returns the exit status. `ask` may
/// throw WrongUsage, where only the net tells it, or Refusal.
int32_t AnswerEach(const QuestionOptions& options, const std::string& counted,
                   const std::function<Answer(const PetriNet&, RunControl&)>& ask);

/// As AnswerEach, but `ask` answers about a net that cannot be read, too.
int32_t AnswerReadings(const QuestionOptions& options,
                       const std::function<Answer(const std::string&, NetReading&)>& ask);

/// What keeps a net from being answered although it was read, thrown by `ask`: the status is that of a
/// failure.
struct Refusal {
  std::string message;
  Json diagnostics;
};

/// Adds the nets and the time limit alone, for a subcommand that writes something else than its answer.
void AddNets(const Command& command, QuestionOptions& options);
void AddTimeout(const Command& command, QuestionOptions& options);

/// Adds the flags that all subcommands about nets have.
void AddCommonFlags(const Command& command, QuestionOptions& options);

/// Throws WrongUsage when an option that is for one net was given with several.
void RequireOneNet(const QuestionOptions& options, bool isGiven, const char* option);

/// The number of the place; throws WrongUsage when the net has none of this name.
int32_t PlaceOfName(const PetriNet& net, const std::string& name);

/// Checks of option values, in the form of the command line library: what is wrong, or an empty text.
std::string FaultOfDuration(const std::string& text);
std::string FaultOfCount(const std::string& text);

}  // namespace siphons
