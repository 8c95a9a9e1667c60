// netkit: what else can be done with a net that `siphons` reads. Each subcommand reads one net, as `siphons`
// does (the same directory, loader, messages and exit statuses), and ends; wrong usage ends with status 2.
// Here are the command line and the subcommands that only list what the tables hold.
#include <new>

#include "base/out_of_memory.h"

namespace {

// Stands above the includes because the command line library asks for memory before main runs.
[[maybe_unused]] const std::new_handler kDefaultHandler =
    std::set_new_handler([] { siphons::OutOfMemory(); });

}  // namespace

#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/output_file.h"
#include "driver/model_files.h"
#include "net/load_net.h"
#include "netkit/commands/commands.h"
#include "netkit/commands/netkit_io.h"
#include "structure/sparse.h"
#include "structure/struct_IO.h"
#include "structure/struct_subnet.h"
#include "structure/struct_vars.h"
#include "structure/structure_file.h"

namespace {

using namespace siphons;

struct Options {
  std::string net;
  std::string output;  ///< empty: standard output
  bool summary = false;
};

void List(const Options& options) {
  LoadModel(NetPath(options.net).c_str());
  show_net(*model);
  WriteAnswer("", "");  // tells when the listing is not written whole
}

void WritePmf(const Options& options) {
  pmf_bit = 1;
  read_net(NetPath(options.net).c_str());
}

void Structure(const Options& options) {
  const std::string path = NetPath(options.net);
  OpenDefinitionInfo(path.c_str());
  read_net(path.c_str());
  ReadDefinitionInfo(path.c_str());
  c_matrix = sparse_function(o_matrix, i_matrix, no_trans, minus);
  subnet_bit = ecs_bit = options.summary ? 1 : 0;
  calc_subnets();
  WriteAnswer(options.output, subnet_output);
}

/// Says what is wrong with a time limit, or nothing.
std::string IsDuration(const std::string& text) {
  constexpr double kLongest = 1e9;
  char* end = nullptr;
  const double seconds = std::strtod(text.c_str(), &end);
  return *end == '\0' && seconds > 0 && seconds <= kLongest ? "" : "a positive number of seconds is wanted";
}

/// Says what is wrong with a number of answers, or nothing.
std::string IsCount(const std::string& text) {
  constexpr size_t kMostDigits = 18;
  const bool isDecimal = text.find_first_not_of("0123456789") == std::string::npos;
  return isDecimal && text.size() <= kMostDigits && !text.empty() && text[0] != '0'
             ? ""
             : "a positive decimal number is wanted";
}

/// The options that all questions about siphons have.
CLI::App* AddQuestion(CLI::App& app, const char* name, const char* description, QuestionOptions& options) {
  CLI::App* const command = app.add_subcommand(name, description);
  command->add_option("NET", options.net, "name of the net, without extension")->required();
  command->add_option("--timeout", options.timeout, "stop after this time")
      ->check(IsDuration)
      ->type_name("SECONDS");
  command->add_flag("--json", options.json, "write JSON");
  command->add_option("-o,--output", options.output, "write to FILE, not to standard output")
      ->type_name("FILE");
  command->footer(
      "Exit status: 0 complete, 1 the net cannot be read or the answer not be written, 2 wrong usage, "
      "3 stopped at a limit or interrupted (what was found is written then, too), 255 out of memory.");
  return command;
}

void AddMinimalSets(CLI::App& app, bool traps, EnumerationOptions& options, int32_t& status) {
  CLI::App* const command = traps ? AddQuestion(app, "traps", "List all minimal traps", options)
                                  : AddQuestion(app, "siphons", "List all minimal siphons", options);
  command->add_flag("--unmarked", options.unmarked, "only those whose places are all unmarked initially");
  command->add_option("--containing", options.containing, "only those that contain PLACE; may be repeated")
      ->type_name("PLACE")
      ->allow_extra_args(false);
  command->add_option("--max", options.max, "stop after N")->check(IsCount)->type_name("N");
  command->callback([&options, &status, traps] {
    options.traps = traps;
    status = ListMinimalSets(options);
  });
}

void AddCheck(CLI::App& app, QuestionOptions& options, int32_t& status) {
  CLI::App* const command =
      AddQuestion(app, "check", "Tell whether every minimal siphon holds an initially marked trap", options);
  command->callback([&options, &status] { status = CheckCondition(options); });
}

}  // namespace

// What escapes is an option that is described wrongly here.
int main(int argc, char** argv) {  // NOLINT(bugprone-exception-escape)
  IgnoreFileSizeSignal();
  CLI::App app(
      "Listings, structural analysis, minimal siphons and traps of stochastic Petri nets.\n"
      "NET.PD is read from the directory named by the environment variable MODELDIR; structure reads "
      "NET.DEFINFO, too.",
      "netkit");
  app.set_version_flag("--version", "netkit " NETKIT_VERSION);
  app.require_subcommand(1);
  Options options;
  const auto command = [&](const char* name, const char* description, void (*run)(const Options&)) {
    CLI::App* const subcommand = app.add_subcommand(name, description);
    subcommand->add_option("NET", options.net, "name of the net, without extension")->required();
    subcommand->callback([run, &options] { run(options); });
    return subcommand;
  };
  command("list", "List the net field by field on standard output", List);
  command("pmf", "Write the distributions of the general transitions to NET.pmf, beside the net", WritePmf);
  CLI::App* const structure = command(
      "structure", "Decompose the net into subnets and write its structural analysis file", Structure);
  CLI::Option* const output =
      structure->add_option("-o,--output", options.output, "write to FILE, not to standard output")
          ->type_name("FILE");
  structure->add_flag("--summary", options.summary, "sum the subnets up on standard output")->needs(output);
  int32_t status = kComplete;
  EnumerationOptions sets;
  QuestionOptions check;
  for (const bool traps : {false, true}) AddMinimalSets(app, traps, sets, status);
  AddCheck(app, check, status);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (app.exit(error) != 0) return kUsage;
    WriteAnswer("", "");  // tells when the help is not written whole
  }
  return status;
}
