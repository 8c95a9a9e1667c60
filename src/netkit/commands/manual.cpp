// netkit manual: the part of netkit's man page that lists subcommands and options, in mdoc. It is made from
// the description of the command line that also parses it, so the page cannot lack an option; what needs more
// words than --help has stands in docs/man/netkit.1.in, into which the build puts this part.
#include "base/exit_status.h"
#include "netkit/commands/answers.h"
#include "netkit/commands/command_line.h"
#include "netkit/commands/commands.h"

namespace siphons {

namespace {

/// A text as the words of mdoc's running text, as whole sentences, each on a line of its own.
std::string Sentences(std::string text) {
  if (text.empty()) return "";
  text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
  if (text.back() != '.') text += '.';
  std::string lines;
  bool begins = true;  // a line, where dots and quotes would begin a macro
  for (size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (begins && (c == '.' || c == '\'')) lines += "\\&";
    const bool endsSentence = c == ' ' && at > 0 && text[at - 1] == '.';
    lines += c == '\\' ? "\\e" : std::string(1, endsSentence ? '\n' : c);
    begins = lines.back() == '\n';
  }
  return lines + "\n";
}

/// The names and the value of an option as the words of an item.
std::string ItemOf(const DescribedOption& option) {
  std::string item;
  for (const std::string& name : option.names) item += (item.empty() ? "Fl " : " , Fl ") + name.substr(1);
  if (!option.value.empty()) item += (item.empty() ? "Ar " : " Ar ") + option.value;
  return item;
}

std::string Manual(const Command& app) {
  std::string text = ".Sh SUBCOMMANDS\n";
  for (const Command& command : app.Subcommands()) {
    text += ".Ss " + command.Name() + "\n" + Sentences(command.Description());
    text += ".Bl -tag -width Ds\n";
    for (const DescribedOption& option : command.Options()) {
      text += ".It " + ItemOf(option) + "\n" + Sentences(option.description);
    }
    text += ".El\n";
    if (!command.Footer().empty()) text += ".Pp\n" + Sentences(command.Footer());
  }
  return text;
}

}  // namespace

void AddManual(const Command& app) {
  app.AddSubcommand("manual", "Write the part of this man page that lists subcommands and options")
      .SetAction([app] {
        WriteAnswer("", Manual(app));
        return kComplete;
      });
}

}  // namespace siphons
