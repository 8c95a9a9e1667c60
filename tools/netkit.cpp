// netkit: what else can be done with a net that `siphons` reads. Each subcommand reads one net, as `siphons`
// does (the same directory, loader, messages and exit statuses), and ends; wrong usage ends with status 2.
#include <CLI/CLI.hpp>
#include <array>
#include <cstdio>
#include <new>
#include <string>

#include "driver/model_files.h"
#include "matrix/out_of_memory.h"
#include "net/load_net.h"
#include "structure/sparse.h"
#include "structure/struct_IO.h"
#include "structure/struct_subnet.h"
#include "structure/struct_vars.h"

namespace {

using namespace siphons;

constexpr int kUsageStatus = 2;

struct Options {
  std::string net;
  std::string output;  ///< empty: standard output
  bool summary = false;
};

std::array<char, kPathBuffer> NetPath(const Options& options) {
  FindModelDirectory();
  std::array<char, kPathBuffer> path;
  FormNetPath(path, options.net.c_str());
  return path;
}

void List(const Options& options) {
  LoadModel(NetPath(options).data());
  show_net(*model);
}

void WritePmf(const Options& options) {
  pmf_bit = 1;
  read_net(NetPath(options).data());
}

/// Writes the structural analysis file to a named file or to standard output; false when it cannot be written
/// whole.
bool WriteStructure(const std::string& output) {
  std::FILE* const file = output.empty() ? stdout : std::fopen(output.c_str(), "w");
  if (file == nullptr) return false;
  subnet_output(file);
  const bool written = std::fflush(file) == 0 && std::ferror(file) == 0;
  const bool closed = file == stdout || std::fclose(file) == 0;
  return written && closed;
}

void Structure(const Options& options) {
  const auto path = NetPath(options);
  OpenDefinitionInfo(path.data());
  read_net(path.data());
  read_info(inf_file);
  c_matrix = sparse_function(o_matrix, i_matrix, no_trans, minus);
  subnet_bit = ecs_bit = options.summary ? 1 : 0;
  calc_subnets();
  if (WriteStructure(options.output)) return;
  std::fprintf(stdout, "ERROR: could not open %s for writing\n",
               options.output.empty() ? "standard output" : options.output.c_str());
  std::exit(1);
}

/// Throws when memory runs out.
int Run(int argc, char** argv) {
  CLI::App app(
      "Listings and structural analysis of stochastic Petri nets.\n"
      "NET.PD and NET.DEFINFO are read from the directory named by the environment variable MODELDIR.",
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
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kUsageStatus;
  }
  return 0;
}

}  // namespace

// What else escapes is an option that Run describes wrongly.
int main(int argc, char** argv) {  // NOLINT(bugprone-exception-escape)
  try {
    return Run(argc, argv);
  } catch (const std::bad_alloc&) {
    OutOfMemory();
  }
}
