// netkit completion SHELL: the script that lets bash, zsh or fish complete netkit's command line. It is made
// from the description of the command line that also parses it, so a new option is completed from its first
// day.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "base/exit_status.h"
#include "netkit/commands/answers.h"
#include "netkit/commands/command_line.h"
#include "netkit/commands/commands.h"

namespace siphons {

namespace {

bool TakesNets(const Command& command) {
  const std::vector<DescribedOption> options = command.Options();
  return std::any_of(options.begin(), options.end(),
                     [](const auto& option) { return option.value == "NET"; });
}

std::string Joined(const std::vector<std::string>& words, const char* between) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : between) + word;
  return text;
}

/// The text as it stands between single quotes, with a backslash before each of `special`.
std::string Escaped(const std::string& text, const std::string& special = "") {
  std::string escaped;
  for (const char c : text) {
    if (special.find(c) != std::string::npos) escaped += '\\';
    escaped += c == '\'' ? "'\\''" : std::string(1, c);
  }
  return escaped;
}

std::string Quoted(const std::string& text, const std::string& special = "") {
  return "'" + Escaped(text, special) + "'";
}

std::string Bash(const Command& app) {
  std::vector<std::string> names;
  std::string options, files, others, nets;
  for (const Command& command : app.Subcommands()) {
    const std::string name = command.Name();
    names.push_back(name);
    std::vector<std::string> words;
    for (const DescribedOption& option : command.Options()) {
      for (const std::string& word : option.names) {
        words.push_back(word);
        if (option.value.empty()) continue;
        (option.value == "FILE" ? files : others) += "|" + name + "\\ " + word;
      }
    }
    options += "    " + name + ") options=" + Quoted(Joined(words, " ")) + " ;;\n";
    if (TakesNets(command)) nets += "|" + name;
  }
  const auto arm = [](const std::string& patterns, const std::string& action) {
    return patterns.empty() ? "" : "    " + patterns.substr(1) + ") " + action + " ;;\n";
  };
  return "_netkit() {\n"
         "  local current=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]} options= kind\n"
         "  COMPREPLY=()\n"
         "  if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
         "    mapfile -t COMPREPLY < <(compgen -W " +
         Quoted(Joined(names, " ") + " --help --version") +
         " -- \"$current\")\n"
         "    return\n"
         "  fi\n"
         "  case \"$command ${COMP_WORDS[COMP_CWORD-1]}\" in\n" +
         arm(files, "mapfile -t COMPREPLY < <(compgen -f -- \"$current\"); return") + arm(others, "return") +
         "  esac\n"
         "  case \"$command\" in\n" +
         options +
         "  esac\n"
         "  if [[ $current == -* ]]; then\n"
         "    mapfile -t COMPREPLY < <(compgen -W \"$options\" -- \"$current\")\n"
         "    return\n"
         "  fi\n"
         "  case \"$command\" in\n" +
         arm(nets,
             "mapfile -t COMPREPLY < <(compgen -d -- \"$current\"\n"
             "      for kind in PD pnml pnml.gz; do compgen -f -X \"!*.$kind\" -- \"$current\"; done)") +
         "  esac\n"
         "}\n"
         "complete -o filenames -F _netkit netkit\n";
}

std::string Zsh(const Command& app) {
  std::string names, arms;
  for (const Command& command : app.Subcommands()) {
    names += "    " + Quoted(command.Name() + ":" + command.Description()) + "\n";
    arms += "    " + command.Name() + ") _arguments -s";
    for (const DescribedOption& option : command.Options()) {
      for (const std::string& word : option.names) {
        const std::string value = option.value.empty()     ? ""
                                  : option.value == "FILE" ? ":file:_files"
                                                           : ":value:";
        arms += " \\\n      '" + word + "[" + Escaped(option.description, "[]:\\") + "]" + value + "'";
      }
    }
    if (TakesNets(command)) arms += " \\\n      '*:net:_files -g \"*.(PD|pnml|pnml.gz)\"'";
    arms += " ;;\n";
  }
  return "#compdef netkit\n"
         "_netkit() {\n"
         "  local -a commands=(\n" +
         names +
         "  )\n"
         "  if (( CURRENT == 2 )); then\n"
         "    _describe command commands\n"
         "    return\n"
         "  fi\n"
         "  shift words\n"
         "  (( CURRENT-- ))\n"
         "  case $words[1] in\n" +
         arms +
         "  esac\n"
         "}\n"
         "_netkit \"$@\"\n";
}

std::string Fish(const Command& app) {
  std::string text = "complete -c netkit -f\n";
  const std::string backslash = "\\";
  for (const Command& command : app.Subcommands()) {
    const std::string name = command.Name();
    const std::string within = "complete -c netkit -n '__fish_seen_subcommand_from " + name + "'";
    text += "complete -c netkit -n __fish_use_subcommand -a " + name + " -d " +
            Quoted(command.Description(), backslash) + "\n";
    for (const DescribedOption& option : command.Options()) {
      if (option.names.empty()) continue;
      text += within;
      for (const std::string& word : option.names) {
        text += word.starts_with("--") ? " -l " + word.substr(2) : " -s " + word.substr(1);
      }
      if (!option.value.empty()) text += option.value == "FILE" ? " -r -F" : " -x";
      text += " -d " + Quoted(option.description, backslash) + "\n";
    }
    if (TakesNets(command)) {
      for (const char* kind : {"PD", "pnml", "pnml.gz"}) {
        text += within + " -a '(__fish_complete_suffix ." + kind + ")'\n";
      }
    }
  }
  return text;
}

}  // namespace

void AddCompletion(const Command& app) {
  const auto shell = std::make_shared<std::string>();
  const Command command =
      app.AddSubcommand("completion", "Write the script that completes netkit's command line in a shell");
  command.AddOption("SHELL", shell.get(), "bash, zsh or fish").Required().OneOf({"bash", "zsh", "fish"});
  command.SetAction([app, shell] {
    WriteAnswer("", *shell == "bash" ? Bash(app) : *shell == "zsh" ? Zsh(app) : Fish(app));
    return kComplete;
  });
}

}  // namespace siphons
