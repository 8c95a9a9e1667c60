// netkit convert: a net in another format.
#include <memory>
#include <string>
#include <utility>

#include "netkit/commands/commands.h"
#include "netkit/commands/net_output.h"
#include "netkit/commands/question.h"

namespace siphons {

void AddConvert(const Command& app) {
  struct ConvertOptions : QuestionOptions {
    std::string to;
  };
  const auto options = std::make_shared<ConvertOptions>();
  options->nets.resize(1);
  const Command command = app.AddSubcommand("convert", "Write a net in another format");
  command
      .AddOption("NET", &options->nets[0],
                 "file (.PD, .pnml, .pnml.gz), - for standard input, or a bare name")
      .Required();
  command.AddOption("-o,--output", &options->to, "write to FILE (.PD, .pnml, .pnml.gz)")
      .ValueName("FILE")
      .Required();
  AddCommonFlags(command, *options);
  command.SetFooter(
      "A .PD file gets a .DEFINFO file beside it and, when names had to change, a table of them with the "
      "ending .names.\nExit status: 0 written, 1 the net cannot be read or not be written in this format, 2 "
      "wrong "
      "usage, 255 out of memory.");
  command.SetAction([options] {
    return AnswerEach(*options, "nets", [&options](const PetriNet& net, RunControl&) {
      CheckNetOutput(options->nets[0], options->to);
      WrittenNet written = WriteNet(net, options->to);
      return Answer{std::move(written.text), std::move(written.json), kComplete};
    });
  });
}

}  // namespace siphons
