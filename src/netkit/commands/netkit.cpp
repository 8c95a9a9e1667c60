// netkit: the question behind the siphons of a net, answered. Here are the command line as a whole and what
// all of it has in common; each subcommand has a file of its own.
#include <algorithm>
#include <cstdio>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "base/exit_status.h"
#include "base/out_of_memory.h"
#include "base/output_file.h"
#include "netkit/commands/answers.h"
#include "netkit/commands/command_line.h"
#include "netkit/commands/commands.h"
#include "netkit/formats/near_names.h"

namespace {

using namespace siphons;

/// Runs before all other code of the program: the command line library asks for memory before main does.
[[gnu::constructor(101)]] void HandleShortage() {
  std::set_new_handler([] { OutOfMemory(); });
}

/// What is wrong with the first argument as a subcommand, or an empty text.
std::string FaultOfSubcommand(const Command& app, const std::vector<std::string>& arguments) {
  if (arguments.empty() || arguments[0].starts_with("-")) return "";
  std::vector<std::string> names;
  for (const Command& command : app.Subcommands()) names.push_back(command.Name());
  if (std::find(names.begin(), names.end(), arguments[0]) != names.end()) return "";
  return "no subcommand " + Quoted(arguments[0]) +
         DidYouMean(arguments[0], {names.begin(), names.end()}, "; netkit --help lists them");
}

/// Tells wrong usage on standard error, or as an answer where JSON is wanted.
int32_t TellUsage(const std::string& fault, const std::vector<std::string>& arguments) {
  if (std::find(arguments.begin(), arguments.end(), "--json") != arguments.end()) {
    WriteAnswer("", JsonLine({{"version", kAnswerVersion}, {"net", Json()}, {"error", fault}}));
  } else {
    std::fprintf(stderr, "%s\nRun with --help for more information.\n", fault.c_str());
  }
  return kUsage;
}

}  // namespace

// What escapes is an option that is described wrongly here.
int main(int argc, char** argv) {  // NOLINT(bugprone-exception-escape)
  IgnoreFileSizeSignal();
  CommandLine line(
      "netkit",
      "Minimal siphons and traps, deadlocks, and the structure of stochastic Petri nets.\n"
      "A NET is a file (.PD, .pnml, .pnml.gz), - for standard input, or a bare name: NET.PD in the directory "
      "that the "
      "environment variable MODELDIR names, or in the current one.",
      "netkit " NETKIT_VERSION);
  const Command app = line.Root();
  for (const bool traps : {false, true}) AddMinimalSets(app, traps);
  for (const auto add :
       {AddCheck, AddMonitors, AddDraw, AddInfo, AddLint, AddConvert, AddTables, AddCompletion, AddManual}) {
    add(app);
  }

  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (const std::string fault = FaultOfSubcommand(app, arguments); !fault.empty()) {
    return TellUsage(fault, arguments);
  }
  try {
    return line.Run(argc, argv);
  } catch (const WrongUsage& usage) {
    return TellUsage(usage.message, arguments);
  }
}
