// Running the program on a model directory, as a user does.
#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <regex>

#include "tests/files.h"

namespace siphons {

struct Outcome {
  std::string out;
  std::string err;
  int status;  ///< exit status, or minus the signal that ended the program
};

/// Runs "<environment> <program> <arguments>" through the shell.
inline Outcome RunProgram(const std::string& environment, const std::string& arguments) {
  const TemporaryDirectory streams;
  const fs::path out = streams.path() / "out", err = streams.path() / "err";
  const std::string command = "exec env " + environment + " '" SIPHONS_PROGRAM "' " + arguments + " >'" +
                              out.string() + "' 2>'" + err.string() + "'";
  const int status = std::system(command.c_str());
  return {ReadFile(out).value_or(""), ReadFile(err).value_or(""),
          WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status)};
}

/// Runs the program on the net "net" of a model directory.
inline Outcome RunNet(const fs::path& model) {
  return RunProgram("MODELDIR='" + model.string() + "'", "net");
}

/// The report with its time masked, which is the one thing that may differ between runs.
inline std::optional<std::string> MaskedReport(const fs::path& path) {
  const std::optional<std::string> report = ReadFile(path);
  if (!report) return report;
  return std::regex_replace(*report, std::regex("computation: [ 0-9]{4,}[0-9]\\.[0-9]{2} s\n"),
                            "computation: @TIME@ s\n", std::regex_constants::format_first_only);
}

}  // namespace siphons
