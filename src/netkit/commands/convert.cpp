// netkit convert: a net in another format.
#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <utility>

#include "netkit/commands/commands.h"
#include "netkit/commands/net_output.h"
#include "netkit/commands/question.h"

namespace siphons {

void AddConvert(CLI::App& app, int32_t& status) {
  struct ConvertOptions : QuestionOptions {
    std::string to;
  };
  const auto options = std::make_shared<ConvertOptions>();
  CLI::App* const command = app.add_subcommand("convert", "Write a net in another format");
  command
      ->add_option("NET", options->nets, "file (.PD, .pnml, .pnml.gz), - for standard input, or a bare name")
      ->required()
      ->expected(1);
  command->add_option("-o,--output", options->to, "write to FILE (.PD, .pnml, .pnml.gz)")
      ->type_name("FILE")
      ->required();
  AddCommonFlags(*command, *options);
  command->footer(
      "A .PD file gets a .DEFINFO file beside it and, when names had to change, a table of them with the "
      "ending .names.\nExit status: 0 written, 1 the net cannot be read or not be written in this format, 2 "
      "wrong "
      "usage, 255 out of memory.");
  command->callback([options, &status] {
    status = AnswerEach(*options, "nets", [&options](const PetriNet& net, RunControl&) {
      CheckNetOutput(options->nets[0], options->to);
      WrittenNet written = WriteNet(net, options->to);
      return Answer{std::move(written.text), std::move(written.json), kComplete};
    });
  });
}

}  // namespace siphons
