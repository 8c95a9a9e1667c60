// netkit convert: a net in another format. Into .PD it writes the definition info as well, and a table of the
// names that had to change.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "netkit/commands/commands.h"
#include "netkit/commands/question.h"
#include "netkit/formats/pd_writer.h"
#include "netkit/formats/pnml_writer.h"
#include "netkit/formats/whole_file.h"

namespace siphons {

namespace {

namespace fs = std::filesystem;

Answer Converted(const std::string& output, const std::string& format, Json changes,
                 const std::string& remark) {
  return {"Written: " + output + remark + "\n",
          {{"output", output}, {"format", format}, {"names", std::move(changes)}},
          kComplete};
}

Answer WriteAsPnml(const PetriNet& net, const std::string& output) {
  const std::string text = WritePnml(net);
  WriteAnswer(output, output.ends_with(".gz") ? Compressed(text) : text);
  const std::string hidden = HiddenInPnml(net);
  return Converted(output, "pnml", Json::array(),
                   hidden.empty() ? "" : "; other programs do not see " + hidden + " of it");
}

Answer WriteAsPd(PetriNet net, const std::string& output) {
  const std::vector<NameChange> changes = MakeNamesLegal(net);
  Diagnostics diagnostics(output);
  const std::optional<std::string> text = WritePd(net, diagnostics);
  if (!text) {
    std::string message = diagnostics.Text();
    message.pop_back();
    throw Refusal{message, JsonOf(diagnostics)};
  }
  const fs::path base(output);
  WriteAnswer(output, *text);
  WriteAnswer(fs::path(base).replace_extension(".DEFINFO"), WriteDefinitionInfo(net));
  Json list = Json::array();
  std::string table = "kind\told name\tnew name\n";
  for (const NameChange& change : changes) {
    table += std::string(change.kind) + "\t" + change.from + "\t" + change.to + "\n";
    list.push_back({{"kind", change.kind}, {"from", change.from}, {"to", change.to}});
  }
  const fs::path names = fs::path(base).replace_extension(".names");
  if (!changes.empty()) WriteAnswer(names, table);
  return Converted(
      output, "PD", std::move(list),
      changes.empty() ? "" : "; " + std::to_string(changes.size()) + " names changed, see " + names.string());
}

Answer Convert(const PetriNet& net, const std::string& input, const std::string& output) {
  std::error_code error;
  if (input != "-" && fs::equivalent(FindNet(input), output, error)) {
    throw WrongUsage{"--output: the file is the net itself; name another one"};
  }
  if (output.ends_with(".PD")) return WriteAsPd(net, output);
  if (output.ends_with(".pnml") || output.ends_with(".pnml.gz")) return WriteAsPnml(net, output);
  throw WrongUsage{"--output: a file that ends with .PD, .pnml or .pnml.gz is wanted"};
}

}  // namespace

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
      return Convert(net, options->nets[0], options->to);
    });
  });
}

}  // namespace siphons
