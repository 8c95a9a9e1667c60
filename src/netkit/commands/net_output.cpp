#include "netkit/commands/net_output.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "netkit/commands/question.h"
#include "netkit/formats/pd_writer.h"
#include "netkit/formats/pnml_writer.h"
#include "netkit/formats/whole_file.h"

namespace siphons {

namespace {

namespace fs = std::filesystem;

WrittenNet Written(const std::string& output, const std::string& format, Json changes,
                   const std::string& remark) {
  return {"Written: " + output + remark + "\n",
          {{"output", output}, {"format", format}, {"names", std::move(changes)}}};
}

WrittenNet WriteAsPnml(const PetriNet& net, const std::string& output) {
  const std::string text = WritePnml(net);
  WriteAnswer(output, output.ends_with(".gz") ? Compressed(text) : text);
  const std::string hidden = HiddenInPnml(net);
  return Written(output, "pnml", Json::array(),
                 hidden.empty() ? "" : "; other programs do not see " + hidden + " of it");
}

WrittenNet WriteAsPd(PetriNet net, const std::string& output) {
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
  return Written(
      output, "PD", std::move(list),
      changes.empty() ? "" : "; " + std::to_string(changes.size()) + " names changed, see " + names.string());
}

}  // namespace

void CheckNetOutput(const std::string& input, const std::string& output, const std::string& option) {
  if (!output.ends_with(".PD") && !output.ends_with(".pnml") && !output.ends_with(".pnml.gz")) {
    throw WrongUsage{option + ": a file that ends with .PD, .pnml or .pnml.gz is wanted"};
  }
  std::error_code error;
  if (input != "-" && fs::equivalent(FindNet(input), output, error)) {
    throw WrongUsage{option + ": the file is the net itself; name another one"};
  }
}

WrittenNet WriteNet(const PetriNet& net, const std::string& output) {
  return output.ends_with(".PD") ? WriteAsPd(net, output) : WriteAsPnml(net, output);
}

}  // namespace siphons
