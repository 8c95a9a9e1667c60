// Running the program on a model directory, as a user does.
#pragma once

#include <sys/wait.h>

#include <cstdlib>

#include "tests/files.h"

namespace siphons {

struct Outcome {
  std::string out;
  std::string err;
  int status;  ///< exit status, or minus the signal that ended the program
};

/// Runs "<environment> <program> <arguments>" through the shell.
inline Outcome RunProgram(const std::string& environment, const std::string& program,
                          const std::string& arguments) {
  const TemporaryDirectory streams;
  const fs::path out = streams.path() / "out", err = streams.path() / "err";
  const std::string command = "exec env " + environment + " '" + program + "' " + arguments + " >'" +
                              out.string() + "' 2>'" + err.string() + "'";
  const int status = std::system(command.c_str());
  return {ReadFile(out).value_or(""), ReadFile(err).value_or(""),
          WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status)};
}

inline std::string ModelDirectory(const fs::path& model) {
  return "MODELDIR='" + model.string() + "'";
}

/// Runs `siphons` on the net "net" of a model directory.
inline Outcome RunNet(const fs::path& model) {
  return RunProgram(ModelDirectory(model), SIPHONS_PROGRAM, "net");
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
