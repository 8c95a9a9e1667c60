#include "netkit/commands/described_options.h"

namespace siphons {

std::vector<DescribedOption> OptionsOf(const CLI::App& command) {
  std::vector<DescribedOption> all;
  for (const CLI::Option* option : command.get_options()) {
    DescribedOption described;
    for (const std::string& name : option->get_snames()) described.names.push_back("-" + name);
    for (const std::string& name : option->get_lnames()) described.names.push_back("--" + name);
    described.description = option->get_description();
    if (described.names.empty()) {
      described.value = option->get_name();
    } else if (option->get_items_expected_max() > 0) {
      described.value = option->get_type_name();
    }
    all.push_back(std::move(described));
  }
  return all;
}

std::vector<const CLI::App*> CommandsOf(const CLI::App& app) {
  return app.get_subcommands(nullptr);
}

}  // namespace siphons
