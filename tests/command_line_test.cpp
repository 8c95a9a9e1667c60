// What netkit says of itself to shells and in its man page, against what `netkit --help` says.
#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "tests/program.h"

namespace siphons {
namespace {

using Words = std::set<std::string>;

/// The words that match in the lines that do.
Words Matches(const std::string& text, const std::string& line, const std::string& word) {
  const std::regex wanted(line), part(word);
  Words words;
  for (const std::string& one : Split(text)) {
    if (!std::regex_match(one, wanted)) continue;
    for (std::sregex_iterator at(one.begin(), one.end(), part), end; at != end; ++at)
      words.insert(at->str(1));
  }
  return words;
}

Words Subcommands() {
  const std::string help = RunNetkit("--help").out;
  return Matches(help.substr(help.find("Subcommands:")), "  [a-z].*", "^  ([a-z]+)");
}

Words OptionsInHelp(const std::string& subcommand) {
  return Matches(RunNetkit(subcommand + " --help").out, "  -.*", "[ ,](--[a-z-]+)");
}

TEST(Manual, HasTheSubcommandsAndOptionsOfTheHelp) {
  const std::string manual = RunNetkit("manual").out;
  EXPECT_EQ(Matches(manual, "\\.Ss .*", "Ss ([a-z]+)"), Subcommands());
  for (const std::string& name : Subcommands()) {
    const std::string section = manual.substr(manual.find("\n.Ss " + name + "\n") + 1);
    Words options;
    for (const std::string& option :
         Matches(section.substr(0, section.find("\n.Ss")), "\\.It Fl .*", "Fl -([a-z-]+)")) {
      options.insert("--" + option);
    }
    EXPECT_EQ(options, OptionsInHelp(name)) << name;
  }
}

/// What bash proposes for the last of the words, in a directory with some files.
Words Proposed(const std::string& words, size_t index) {
  const TemporaryDirectory files;
  for (const char* name : {"a.PD", "b.pnml", "c.siphons"}) WriteFile(files.path() / name, "");
  WriteFile(files.path() / "complete", RunNetkit("completion bash").out + "COMP_WORDS=(" + words +
                                           ")\nCOMP_CWORD=" + std::to_string(index) +
                                           "\n_netkit\nprintf '%s\\n' \"${COMPREPLY[@]}\"\n");
  const std::string bash = "-c 'cd " + files.path().string() + " && . ./complete'";
  return Matches(RunProgram("", "/bin/bash", bash).out, ".+", "(.+)");
}

TEST(Completion, OffersWhatTheCommandLineTakes) {
  Words first = Subcommands();
  first.insert({"--help", "--version"});
  EXPECT_EQ(Proposed("netkit ''", 1), first);
  for (const std::string& name : Subcommands()) {
    EXPECT_EQ(Proposed("netkit " + name + " --", 2), OptionsInHelp(name)) << name;
  }
  EXPECT_EQ(Proposed("netkit siphons --m", 2), (Words{"--max", "--may-run-dry"}));
  EXPECT_EQ(Proposed("netkit siphons --max ''", 3), Words{});
  EXPECT_EQ(Proposed("netkit siphons --output ''", 3), (Words{"a.PD", "b.pnml", "c.siphons", "complete"}));
  EXPECT_EQ(Proposed("netkit siphons ''", 2), (Words{"a.PD", "b.pnml"}));
}

}  // namespace
}  // namespace siphons
