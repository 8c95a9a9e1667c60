// Running the program on a model directory, as a user does.
#pragma once

#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "tests/messages.h"

namespace siphons {

/// Runs "<environment> <program> <arguments>" through the shell.
inline Outcome RunProgram(const std::string& environment, const std::string& program,
                          const std::string& arguments) {
  const TemporaryDirectory streams;
  const fs::path out = streams.path() / "out", err = streams.path() / "err";
  const std::string command = "exec env " + environment + " '" + program + "' " + arguments + " >'" +
                              out.string() + "' 2>'" + err.string() + "'";
  const int status = std::system(command.c_str());
  return {ReadFile(out).value_or(""), ReadFile(err).value_or(""), StatusOf(status)};
}

/// Memory that only a program at work has, not one that starts or reads a small file.
#ifdef __SANITIZE_ADDRESS__
inline constexpr int64_t kBytesAtWork = int64_t{40} << 20;
#else
inline constexpr int64_t kBytesAtWork = int64_t{12} << 20;
#endif

/// What becomes of a signal that a program gets.
enum class Fate { kEndsIt, kIsCaught };

/// Whether the process, given by its folder in /proc, has a handler for the signal.
inline bool Catches(const fs::path& process, int signal) {
  const std::string status = ReadFile(process / "status").value_or(""), name = "SigCgt:";
  const size_t at = status.find(name);
  return at != std::string::npos &&
         (std::stoull(status.substr(at + name.size()), nullptr, 16) >> (signal - 1) & 1) != 0;
}

/// Runs a command on a model directory and sends it the signal once it is at work: one that catches the
/// signal has its handler then, and has taken memory since. Returns how it ended, as Outcome::status tells
/// it; a failure when it ends by itself.
inline int SignalAtWork(const fs::path& model, std::vector<std::string> command, int signal, Fate fate) {
  const pid_t process = fork();
  if (process == 0) {
    setenv("MODELDIR", model.c_str(), 1);
    std::vector<char*> arguments;
    for (std::string& argument : command) arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    execv(arguments[0], arguments.data());
    _exit(1);
  }
  constexpr int64_t kGrowth = int64_t{4} << 20;
  const fs::path about = "/proc/" + std::to_string(process);
  const int64_t page = sysconf(_SC_PAGESIZE);
  int status = 0;
  int64_t atWork = fate == Fate::kEndsIt ? kBytesAtWork : 0;  // not known before the handler is there
  bool sent = false;
  while (!sent && waitpid(process, &status, WNOHANG) == 0) {
    // First whether it runs already: until then the numbers are those of this process.
    std::error_code none;
    const bool started = fs::read_symlink(about / "exe", none) == fs::canonical(command[0]);
    int64_t size = 0, resident = 0;
    std::istringstream(ReadFile(about / "statm").value_or("")) >> size >> resident;
    if (started && atWork == 0 && Catches(about, signal)) atWork = resident * page + kGrowth;
    sent = started && atWork != 0 && resident * page >= atWork;
    if (!sent) usleep(1000);
  }
  EXPECT_TRUE(sent) << "ended by itself";
  if (sent) {
    kill(process, signal);
    waitpid(process, &status, 0);
  }
  return StatusOf(status);
}

inline std::string ModelDirectory(const fs::path& model) {
  return "MODELDIR='" + model.string() + "'";
}

/// Runs `siphons` on a net of a model directory.
inline Outcome RunNet(const fs::path& model, const std::string& net = "net") {
  return RunProgram(ModelDirectory(model), SIPHONS_PROGRAM, net);
}

/// Runs `netkit` with these arguments and a model directory; the examples are one.
inline Outcome RunNetkit(const std::string& arguments, const fs::path& model = EXAMPLES_DIRECTORY) {
  return RunProgram(ModelDirectory(model), NETKIT_PROGRAM, arguments);
}

/// Runs `netkit` on a pseudo-terminal, both streams in one; its answer goes to /dev/null.
inline Outcome RunOnTerminal(const std::string& arguments, const fs::path& model) {
  return RunProgram(
      "", "script",
      "-qec \"" + ModelDirectory(model) + " " NETKIT_PROGRAM " " + arguments + " -o /dev/null\" /dev/null");
}

/// The text with the path of the model directory masked.
inline std::string Masked(std::string text, const fs::path& model) {
  const std::string path = model.string();
  for (size_t at; (at = text.find(path)) != std::string::npos;) text.replace(at, path.size(), "@MODELDIR@");
  return text;
}

/// The report with its time masked, which is the one thing that may differ between runs: right-justified in
/// eight characters or more, with two decimals.
inline std::optional<std::string> MaskedReport(const fs::path& path) {
  std::optional<std::string> report = ReadFile(path);
  const std::string before = "computation: ";
  const size_t start = report ? report->find(before) : std::string::npos;
  if (start == std::string::npos) return report;
  const size_t time = start + before.size();
  const size_t digits = report->find_first_not_of(' ', time);
  const size_t end = report->find_first_not_of("0123456789.", digits);
  const bool wellFormed =
      end != std::string::npos && end - time >= 8 && end - digits >= 4 && (*report)[end - 3] == '.';
  if (wellFormed) report->replace(time, end - time, "@TIME@");
  return report;
}

}  // namespace siphons
