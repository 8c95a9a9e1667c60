// The command line of netkit as it is described once: subcommands, and the options of each. Parsing, --help,
// completion and man page all come from this description.
//
// CLI11 does the work, and command_line.cpp alone includes it: its headers define all of its functions, so
// that each file that includes them takes some ten seconds longer to compile.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace siphons {

/// Wrong usage, thrown by what runs for a subcommand: the message goes to the user, with the status of wrong
/// usage.
struct WrongUsage {
  std::string message;
};

/// Where the value of an option goes: to a variable that outlives the run of the command line. A list takes
/// the values of all mentions of the option.
using OptionTarget = std::variant<std::string*, std::vector<std::string>*, double*, int64_t*, int32_t*>;

/// An option that has been added to a command. The functions say more about it and return the option.
class CommandOption {
 public:
  explicit CommandOption(CLI::Option& option) : option_(&option) {}

  CommandOption Required() const;
  /// How --help names the value.
  CommandOption ValueName(const char* name) const;
  /// `faultOf` returns what is wrong with a value, or an empty text.
  CommandOption Check(std::string (*faultOf)(const std::string&)) const;
  CommandOption OneOf(const std::vector<std::string>& values) const;
  /// A mention of an option that fills a list takes one argument, not all that follow.
  CommandOption OneArgument() const;
  /// One argument may hold several values of a list.
  CommandOption SeparatedBy(char delimiter) const;
  /// Names with their dashes, of options that were added before.
  CommandOption Needs(const char* other) const;
  CommandOption Excludes(const std::vector<std::string>& others) const;

 private:
  CLI::Option* option_;
};

/// An option as completion and man page describe it.
struct DescribedOption {
  std::vector<std::string> names;  ///< with their dashes, short ones first; none: an argument
  std::string description;
  std::string value;  ///< what it takes ("FILE"), or the name of the argument; empty for a flag
};

/// A subcommand, or the program itself; valid as long as the command line that it belongs to.
class Command {
 public:
  Command(CLI::App& app, int32_t& status) : app_(&app), status_(&status) {}

  Command AddSubcommand(const std::string& name, const std::string& description) const;
  /// `names` are separated by commas, with their dashes; a name without dashes is an argument.
  CommandOption AddOption(const char* names, OptionTarget target, const char* description) const;
  CommandOption AddFlag(const char* names, bool& target, const char* description) const;
  /// The text at the end of its help.
  void SetFooter(const char* text) const;
  /// What is run when the subcommand is called, after all of the command line is parsed; it returns the exit
  /// status, and may throw WrongUsage.
  void SetAction(std::function<int32_t()> action) const;

  std::string Name() const;
  std::string Description() const;
  std::string Footer() const;
  /// Both in the order of their addition.
  std::vector<Command> Subcommands() const;
  std::vector<DescribedOption> Options() const;

 private:
  CLI::App* app_;
  int32_t* status_;
};

class CommandLine {
 public:
  CommandLine(const char* program, const char* description, const char* version);
  ~CommandLine();

  Command Root();

  /// Parses the arguments and runs the subcommand that they name, or writes help or version to standard
  /// output. Returns the exit status; throws WrongUsage.
  int32_t Run(int argc, char** argv);

 private:
  std::unique_ptr<CLI::App> app_;
  int32_t status_;
};

}  // namespace siphons
