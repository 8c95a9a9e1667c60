// The options of a subcommand as the description of the command line has them, for what is made from it:
// completion and man page.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace siphons {

struct DescribedOption {
  std::vector<std::string> names;  ///< with their dashes, short ones first; none: an argument
  std::string description;
  std::string value;  ///< what it takes ("FILE"), or the name of the argument; empty for a flag
};

std::vector<DescribedOption> OptionsOf(const CLI::App& command);

/// In the order of their addition.
std::vector<const CLI::App*> CommandsOf(const CLI::App& app);

}  // namespace siphons
