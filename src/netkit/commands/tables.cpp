// netkit list, structure and pmf: what the tables of the report program hold. They read a net with its
// loader, with its messages, and end as it does when the net cannot be read.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

#include "base/exit_status.h"
#include "base/process_end.h"
#include "driver/model_files.h"
#include "net/load_net.h"
#include "netkit/commands/answers.h"
#include "netkit/commands/commands.h"
#include "netkit/commands/lenient_reader.h"
#include "netkit/formats/net_file.h"
#include "structure/pmf_file.h"
#include "structure/sparse.h"
#include "structure/struct_IO.h"
#include "structure/struct_subnet.h"
#include "structure/struct_vars.h"
#include "structure/structure_file.h"

namespace siphons {

namespace {

struct TableOptions {
  std::string net;
  std::string output;  ///< empty: standard output
  bool summary = false;
};

/// The path of the net without extension, as the loader and the definition info want it.
std::string PathOf(const std::string& net) {
  std::string path = FindNet(net);
  if (path.ends_with(".PD")) path.resize(path.size() - 3);
  return path;
}

void List(const TableOptions& options) {
  LoadModel(PathOf(options.net).c_str(), ReportLoaderFault);
  show_net(*model);
  WriteAnswer("", "");  // tells when the listing is not written whole
}

void WritePmf(const TableOptions& options) {
  const std::string path = PathOf(options.net);
  LoadModel(path.c_str(), ReportLoaderFault);
  const bool anyGeneral = std::any_of(model->transitions, model->transitions + model->ntrans,
                                      [](const NetTransition& t) { return t.type == kGeneral; });
  if (anyGeneral) {
    generate_pmf(path.c_str(), *model);
  } else {
    WriteAnswer("", "The net has no general transition: no file is written.\n");
  }
}

void Structure(const TableOptions& options) {
  const std::string path = PathOf(options.net);
  OpenDefinitionInfo(path.c_str());
  LoadModel(path.c_str(), ReportLoaderFault);
  config_net(*model);
  ReadDefinitionInfo(path.c_str());
  c_matrix = sparse_function(o_matrix, i_matrix, no_trans, minus);
  subnet_bit = ecs_bit = options.summary ? 1 : 0;
  calc_subnets();
  WriteAnswer(options.output, subnet_output);
}

}  // namespace

void AddTables(const Command& app) {
  const auto options = std::make_shared<TableOptions>();
  const auto add = [&](const char* name, const char* description, void (*run)(const TableOptions&)) {
    const Command command = app.AddSubcommand(name, description);
    command.AddOption("NET", &options->net, "file (.PD), or a bare name: NET.PD in MODELDIR or here")
        .Required();
    command.SetAction([run, options] {
      run(*options);
      return kComplete;
    });
    return command;
  };
  add("list", "List the net field by field on standard output", List);
  add("pmf", "Write the distributions of the general transitions to NET.pmf, beside the net", WritePmf);
  const Command structure =
      add("structure", "Decompose the net into subnets and write its structural analysis file", Structure);
  structure.AddOption("-o,--output", &options->output, "write to FILE, not to standard output")
      .ValueName("FILE");
  structure.AddFlag("--summary", options->summary, "sum the subnets up on standard output").Needs("--output");
}

}  // namespace siphons
