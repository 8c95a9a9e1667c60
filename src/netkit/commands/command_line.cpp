#include "netkit/commands/command_line.h"

#include <CLI/CLI.hpp>
#include <utility>

#include "base/exit_status.h"
#include "netkit/commands/answers.h"

namespace siphons {

CommandOption CommandOption::Required() const {
  option_->required();
  return *this;
}

CommandOption CommandOption::ValueName(const char* name) const {
  option_->type_name(name);
  return *this;
}

CommandOption CommandOption::Check(std::string (*faultOf)(const std::string&)) const {
  option_->check(faultOf);
  return *this;
}

CommandOption CommandOption::OneOf(const std::vector<std::string>& values) const {
  option_->check(CLI::IsMember(values));
  return *this;
}

CommandOption CommandOption::OneArgument() const {
  option_->allow_extra_args(false);
  return *this;
}

CommandOption CommandOption::SeparatedBy(char delimiter) const {
  option_->delimiter(delimiter);
  return *this;
}

CommandOption CommandOption::Needs(const char* other) const {
  option_->needs(other);
  return *this;
}

CommandOption CommandOption::Excludes(const std::vector<std::string>& others) const {
  for (const std::string& other : others) option_->excludes(other);
  return *this;
}

Command Command::AddSubcommand(const std::string& name, const std::string& description) const {
  return {*app_->add_subcommand(name, description), *status_};
}

CommandOption Command::AddOption(const char* names, OptionTarget target, const char* description) const {
  return std::visit(
      [&](auto* variable) { return CommandOption(*app_->add_option(names, *variable, description)); },
      target);
}

CommandOption Command::AddFlag(const char* names, bool& target, const char* description) const {
  return CommandOption(*app_->add_flag(names, target, description));
}

void Command::SetFooter(const char* text) const {
  app_->footer(text);
}

void Command::SetAction(std::function<int32_t()> action) const {
  app_->callback([action = std::move(action), status = status_] { *status = action(); });
}

std::string Command::Name() const {
  return app_->get_name();
}

std::string Command::Description() const {
  return app_->get_description();
}

std::string Command::Footer() const {
  return app_->get_footer();
}

std::vector<Command> Command::Subcommands() const {
  std::vector<Command> commands;
  for (CLI::App* const command : app_->get_subcommands([](CLI::App*) { return true; })) {
    commands.emplace_back(*command, *status_);
  }
  return commands;
}

std::vector<DescribedOption> Command::Options() const {
  std::vector<DescribedOption> all;
  for (const CLI::Option* option : std::as_const(*app_).get_options()) {
    DescribedOption& described = all.emplace_back();
    for (const std::string& name : option->get_snames()) described.names.push_back("-" + name);
    for (const std::string& name : option->get_lnames()) described.names.push_back("--" + name);
    described.description = option->get_description();
    if (described.names.empty()) {
      described.value = option->get_name();
    } else if (option->get_items_expected_max() > 0) {
      described.value = option->get_type_name();
    }
  }
  return all;
}

CommandLine::CommandLine(const char* program, const char* description, const char* version)
    : app_(std::make_unique<CLI::App>(description, program)), status_(kComplete) {
  app_->set_version_flag("--version", version);
  app_->require_subcommand(1);
}

CommandLine::~CommandLine() = default;

Command CommandLine::Root() {
  return {*app_, status_};
}

int32_t CommandLine::Run(int argc, char** argv) {
  try {
    app_->parse(argc, argv);
  } catch (const CLI::Success& help) {
    app_->exit(help);
    WriteAnswer("", "");  // tells when it is not written whole
  } catch (const CLI::ParseError& error) {
    throw WrongUsage{error.what()};
  }
  return status_;
}

}  // namespace siphons
