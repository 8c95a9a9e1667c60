// The documents against the program: every command in them is run, and what they show of its output compared;
// what they name exists. docs/testing.md says how a document is written for this.
#include <glob.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>
#include <span>
#include <vector>

#include "tests/program.h"

namespace siphons {
namespace {

const fs::path kRoot = SOURCE_DIRECTORY;

struct Command {
  size_t line;  ///< of the document, from 1
  std::string text;
  std::vector<std::string> shown;
};

/// A fenced block, or a line of text with the empty language.
struct Block {
  std::string language;
  size_t line;
  std::vector<std::string> lines;
};

/// The blocks of a document. Those of a man page are what .Bd -literal displays, as commands when it begins
/// with one.
std::vector<Block> Blocks(const std::string& document) {
  const bool isPage = !document.ends_with(".md");
  std::vector<Block> blocks;
  bool inside = false;
  size_t number = 0;
  for (const std::string& line : Split(ReadFile(kRoot / document).value())) {
    ++number;
    const bool begins = !inside && line.starts_with(isPage ? ".Bd -literal" : "```");
    if (begins || (inside && (isPage ? line == ".Ed" : line.starts_with("```")))) {
      if (begins) blocks.push_back({isPage ? "text" : line.substr(3), number, {}});
      inside = begins;
    } else if (inside) {
      blocks.back().lines.push_back(line);
      if (isPage && line.starts_with("$ ")) blocks.back().language = "console";
    } else if (!isPage) {
      blocks.push_back({"", number, {line}});
    }
  }
  EXPECT_FALSE(inside) << document << ": a block without an end";
  return blocks;
}

/// The commands of the `console` blocks, each with what stands below it.
std::vector<Command> Commands(const std::string& document) {
  std::vector<Command> commands;
  for (const Block& block : Blocks(document)) {
    if (block.language != "console") continue;
    EXPECT_TRUE(!block.lines.empty() && block.lines[0].starts_with("$ ")) << document << ":" << block.line;
    for (size_t i = 0; i < block.lines.size(); ++i) {
      const std::string& line = block.lines[i];
      if (line.starts_with("$ ")) {
        commands.push_back({block.line + 1 + i, line.substr(2), {}});
      } else if ((line == ">" || line.starts_with("> ")) && commands.back().shown.empty()) {
        commands.back().text += "\n" + line.substr(std::min<size_t>(2, line.size()));
      } else {
        commands.back().shown.push_back(line);
      }
    }
  }
  return commands;
}

/// Without trailing blanks, which editors remove, and without the values of times.
std::string Comparable(std::string line) {
  static const std::regex time(R"( +[0-9]+\.[0-9]+ s\b)");
  line.erase(line.find_last_not_of(" \t") + 1);
  return std::regex_replace(line, time, " <time> s");
}

/// Whether the lines are those shown; a shown "..." stands for any number of lines.
bool IsShown(std::span<const std::string> given, std::span<const std::string> shown) {
  if (shown.empty()) return given.empty();
  if (shown[0] == "...") {
    if (IsShown(given, shown.subspan(1))) return true;
    return !given.empty() && IsShown(given.subspan(1), shown);
  }
  return !given.empty() && Comparable(given[0]) == Comparable(shown[0]) &&
         IsShown(given.subspan(1), shown.subspan(1));
}

/// What commands find on their path: the programs, and stand-ins for what only a cluster has. `ssh` runs the
/// command on this machine with SHELL set, as the other side of ssh does; `sbatch` runs every job of an array
/// at once.
void MakePrograms(const fs::path& directory) {
  fs::create_directory(directory);
  fs::create_symlink(SIPHONS_PROGRAM, directory / "siphons");
  fs::create_symlink(NETKIT_PROGRAM, directory / "netkit");
  WriteFile(directory / "ssh",
            "#!/bin/sh\nshift; [ \"$1\" = -- ] && shift\nSHELL=/bin/sh exec sh -c \"$*\"\n");
  WriteFile(directory / "sbatch",
            "#!/bin/sh\nfor i in $(seq ${1##*-}); do SLURM_ARRAY_TASK_ID=$i sh \"$2\"; done\n");
  for (const char* name : {"ssh", "sbatch"}) fs::permissions(directory / name, fs::perms::owner_all);
}

/// Runs the commands one after the other in one shell, in a directory, and returns the output of each.
std::vector<std::string> Outputs(const std::vector<Command>& commands, const fs::path& nets) {
  const TemporaryDirectory place;
  const fs::path programs = place.path() / "bin";
  const fs::path script = place.path() / "script", output = place.path() / "output";
  MakePrograms(programs);

  const std::string mark = "-- end of a command --\n";
  std::string text = "cd '" + nets.string() + "'\nstatus=0\n";
  for (const Command& command : commands) {
    // Each command sees the exit status of the one before as $?.
    const std::string step = script.string() + std::to_string(command.line);
    WriteFile(step, command.text + "\n");
    text += "(exit $status); . '" + step + "'; status=$?; printf '\\n%s' '" + mark + "'\n";
  }
  WriteFile(script, text);
  const std::string environment =
      "env -u MODELDIR HOME='" + place.path().string() + "' PATH='" + programs.string() + "':\"$PATH\" ";
  std::system(
      (environment + "sh '" + script.string() + "' >'" + output.string() + "' 2>&1 </dev/null").c_str());

  std::vector<std::string> outputs;
  const std::string all = ReadFile(output).value_or("");
  size_t at = 0;
  for (size_t end; (end = all.find("\n" + mark, at)) != std::string::npos; at = end + 1 + mark.size()) {
    outputs.push_back(all.substr(at, end - at));
  }
  return outputs;
}

/// Every file of the tree with one of the extensions, by its path from the root.
std::vector<std::string> FilesOfTree(const std::set<std::string>& extensions) {
  std::vector<std::string> files;
  for (auto entry = fs::recursive_directory_iterator(kRoot); entry != fs::end(entry); ++entry) {
    const std::string name = entry->path().filename();
    if (entry->is_directory() && (name.starts_with(".") || name == "build"))
      entry.disable_recursion_pending();
    if (extensions.contains(entry->path().extension())) files.push_back(fs::relative(entry->path(), kRoot));
  }
  std::sort(files.begin(), files.end());
  return files;
}

/// Whether the word, the name of a file or one from a source, is in a file of the tree that is no document.
bool IsInTree(const std::string& word) {
  static const std::string everything = [] {
    std::string texts;
    for (const std::string& file : FilesOfTree({".cpp", ".h", ".py", ".PD", ".txt", ".in", ".js"})) {
      texts += fs::path(file).filename().string() + "\n" + ReadFile(kRoot / file).value_or("");
    }
    return texts;
  }();
  return everything.find(word) != std::string::npos;
}

void ExpectShown(const std::string& document) {
  const std::vector<Command> commands = Commands(document);
  if (commands.empty()) return;
  const TemporaryDirectory examples;
  fs::copy(kRoot / "examples", examples.path(), fs::copy_options::recursive);
  const std::vector<std::string> outputs = Outputs(commands, examples.path());
  ASSERT_EQ(outputs.size(), commands.size()) << document << ": the shell ended early";
  for (size_t i = 0; i < commands.size(); ++i) {
    const Command& command = commands[i];
    EXPECT_TRUE(IsShown(Split(outputs[i]), command.shown))
        << document << ":" << command.line << ": $ " << command.text << "\ngives:\n"
        << outputs[i];
  }
}

bool Succeeds(const std::string& command) {
  return std::system((command + " >/dev/null 2>&1 </dev/null").c_str()) == 0;
}

/// Whether there is a path in the tree, or one of the pattern (src/*/*.cpp).
bool Exists(const fs::path& directory, const std::string& path) {
  glob_t found = {};
  const int status = glob((directory / path).c_str(), GLOB_BRACE, nullptr, &found);
  globfree(&found);
  return status == 0;
}

/// Whether `netkit SUBCOMMAND ...` names a subcommand and options that there are.
bool IsUnderstood(const std::string& command) {
  static const std::regex subcommand("netkit ([a-z]+).*"), option("--[a-z-]+");
  std::smatch name;
  if (!std::regex_match(command, name, subcommand)) return true;
  static std::map<std::string, std::string> helps;
  std::string& help = helps[name.str(1)];
  if (help.empty()) help = RunNetkit(name.str(1) + " --help").out;
  if (help.find("netkit " + name.str(1) + " ") == std::string::npos) return false;
  for (std::sregex_iterator at(command.begin(), command.end(), option), end; at != end; ++at) {
    if (help.find(at->str()) == std::string::npos) return false;
  }
  return true;
}

/// What the running text of a document names, and how its blocks are fenced.
void ExpectNamed(const std::string& document) {
  static const std::regex code("`([^`]+)`"), link(R"(\]\(([^)#:]+)(#[^)]*)?\))");
  static const std::regex path(
      R"((src|tests|docs|bench|fuzz|scripts|examples|cmake|\.ci)/[A-Za-z0-9_.,*{}/-]*)");
  static const std::regex word(R"([A-Za-z0-9_]+\.(cpp|h|py)|[A-Z][a-z]+[A-Z][A-Za-z]*)");
  static const std::regex prompt(R"( *\$ .*)"), target("(sudo )?make( [a-zA-Z-]+)?( .*)?");
  const fs::path directory = (kRoot / document).parent_path();
  for (const Block& block : Blocks(document)) {
    const std::string where = document + ":" + std::to_string(block.line) + ": ";
    EXPECT_TRUE(!block.language.empty() || block.lines.size() == 1) << where << "a block without a language";
    for (const std::string& line : block.lines) {
      EXPECT_TRUE(block.language == "console" || !std::regex_match(line, prompt))
          << where << "a command that is not run: " << line;
      if (std::smatch made; block.language == "sh" && std::regex_match(line, made, target)) {
        EXPECT_TRUE(Succeeds("make -C '" + kRoot.string() + "' -n" + made.str(2))) << where << line;
      }
      if (!block.language.empty()) continue;
      for (std::sregex_iterator at(line.begin(), line.end(), code), end; at != end; ++at) {
        const std::string span = (*at)[1];
        EXPECT_TRUE(!std::regex_match(span, path) || Exists(kRoot, span)) << where << span;
        EXPECT_TRUE(!std::regex_match(span, word) || IsInTree(span)) << where << span;
        EXPECT_TRUE(IsUnderstood(span)) << where << span;
      }
      for (std::sregex_iterator at(line.begin(), line.end(), link), end; at != end; ++at) {
        EXPECT_TRUE(Exists(directory, (*at)[1])) << where << (*at)[1];
      }
    }
  }
}

TEST(Documentation, ShowsWhatItsCommandsGive) {
  for (const std::string& document : FilesOfTree({".md", ".1", ".5", ".in"})) ExpectShown(document);
}

TEST(Documentation, NamesWhatThereIs) {
  for (const std::string& document : FilesOfTree({".md"})) ExpectNamed(document);
}

/// What a folder of src/ may include is in the table of docs/architecture.md.
TEST(Documentation, IncludesAreThoseOfTheArchitecture) {
  static const std::regex row(R"(\| `src/([a-z/]+)/` \|[^|]*\|([^|]*)\|)"), folder("`([a-z/]+)/`");
  static const std::regex include(R"(#include "([a-zA-Z_/]+)/[a-zA-Z_]+\.h")");
  std::map<std::string, std::set<std::string>> table;
  std::smatch found;
  for (const std::string& line : Split(ReadFile(kRoot / "docs" / "architecture.md").value())) {
    if (!std::regex_match(line, found, row)) continue;
    std::set<std::string>& allowed = table[found.str(1)] = {"base", found.str(1)};
    const std::string last = found.str(2);
    for (std::sregex_iterator at(last.begin(), last.end(), folder), end; at != end; ++at) {
      allowed.insert(at->str(1));
    }
  }
  EXPECT_GE(table.size(), 11u);
  int includes = 0;
  for (const std::string& file : FilesOfTree({".cpp", ".h"})) {
    if (!file.starts_with("src/")) continue;
    const std::set<std::string>& allowed = table[fs::path(file).parent_path().string().substr(4)];
    for (const std::string& line : Split(ReadFile(kRoot / file).value())) {
      if (!std::regex_match(line, found, include)) continue;
      const bool insideNetkit = allowed.contains("netkit") && found.str(1).starts_with("netkit/");
      EXPECT_TRUE(allowed.contains(found.str(1)) || insideNetkit) << file << ": " << line;
      ++includes;
    }
  }
  EXPECT_GT(includes, 200);
}

/// The recipes for many nets, on kept nets: the reports are those of single runs.
TEST(ManyNets, HaveTheReportsOfSingleRuns) {
  constexpr uintmax_t kSmall = 3000;  // bytes of a net that every build solves at once
  const TemporaryDirectory nets;
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(kRoot / "tests" / "golden")) {
    const std::string name = entry.path().filename();
    const fs::path net = entry.path() / "net.PD", info = entry.path() / "net.DEFINFO";
    if (!fs::exists(net) || fs::file_size(net) > kSmall) continue;
    names.push_back(name);
    fs::copy(net, nets.path() / (name + ".PD"));
    if (fs::exists(info)) fs::copy(info, nets.path() / (name + ".DEFINFO"));
  }
  EXPECT_GT(names.size(), 50u);
  std::vector<Command> commands;
  int recipes = 0;
  for (const Command& command : Commands("docs/batch.md")) {
    commands.push_back(command);
    static const std::regex recipe(R"([^]*(parallel [^]*MODELDIR=\. siphons|sbatch) [^]*)");
    if (!std::regex_match(command.text, recipe)) continue;
    const std::string kept = "recipe" + std::to_string(++recipes);
    commands.push_back({command.line + 1000, "mkdir " + kept + " && mv *.siphons " + kept, {}});
  }
  EXPECT_EQ(recipes, 3);
  std::string printed;
  for (const std::string& output : Outputs(commands, nets.path())) printed += output + "\n";
  SCOPED_TRACE(printed);
  for (int r = 1; r <= recipes; ++r) {
    for (const std::string& name : names) {
      EXPECT_EQ(MaskedReport(nets.path() / ("recipe" + std::to_string(r)) / (name + ".siphons")),
                ReadFile(kRoot / "tests" / "golden" / name / "expected.siphons"))
          << "recipe " << r << ": " << name;
    }
  }
}

TEST(Pictures, AreMadeFromTheirSource) {
  const fs::path kept = kRoot / "docs" / "pictures";
  const TemporaryDirectory made;
  ASSERT_TRUE(
      Succeeds("python3 '" + (kept / "make_pictures.py").string() + "' '" + made.path().string() + "'"));
  int pictures = 0;
  for (const auto& entry : fs::directory_iterator(kept)) {
    if (entry.path().extension() != ".svg") continue;
    EXPECT_EQ(ReadFile(made.path() / entry.path().filename()), ReadFile(entry.path())) << entry.path();
    ++pictures;
  }
  EXPECT_EQ(pictures, 3);
}

/// The comparison itself: a fault in what a document shows is seen.
TEST(Documentation, DifferencesAreSeen) {
  const std::vector<std::string> given = {"one ", "took 0.31 s", "two", "three"};
  const auto shows = [&given](const std::vector<std::string>& shown) { return IsShown(given, shown); };
  EXPECT_TRUE(shows({"one", "took     12.00 s", "two", "three"}));
  EXPECT_TRUE(shows({"one", "...", "two", "three", "..."}));
  EXPECT_FALSE(shows({"one", "...", "three", "two"}));
  EXPECT_FALSE(shows({"one", "took 1 s", "two", "three"}));
  EXPECT_FALSE(shows({"one", "took 0.31 s", "two"}));
  EXPECT_FALSE(shows({}));
  EXPECT_EQ(Outputs({{1, "false", {}}, {2, "echo $?", {}}, {3, "cat <<X\na\nX", {}}}, "/"),
            (std::vector<std::string>{"", "1\n", "a\n"}));
  EXPECT_FALSE(IsUnderstood("netkit siphons NET --no-such-option"));
  EXPECT_FALSE(IsUnderstood("netkit nosuchcommand"));
}

}  // namespace
}  // namespace siphons
