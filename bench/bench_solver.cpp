// The solver on the nets of bench/nets against other ways of doing the same, in one run.
//
// - reference/NET: the solver against the reference of tests/reference, from the arcs to the minimal siphons;
//   ratio says how many times as long the reference takes.
// - process/NET: the program as a whole process, the best of five, against a general polyhedral tool
//   (4ti2_s; it gives rays only) where that is installed, and against an earlier build of the program
//   (earlier_s) where SIPHONS_EARLIER names one, whose report must be the same.
//
// Times are processor seconds, of user and system together on every side. The counters rays, pairs and tests
// say what the solve had to do: rays at the end, pairs filed, and pairs that were compared with other rays.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "net/load_net.h"
#include "solver/sharedVars.h"
#include "tests/reference/program.h"

namespace {

namespace fs = std::filesystem;
using reference::Answer;
using reference::Arcs;

Arcs LoadArcs(const std::string& net) {
  const siphons::Net* const loaded = siphons::load_net((NETS_DIRECTORY "/" + net).c_str(), nullptr, false);
  const size_t places = static_cast<size_t>(loaded->nplaces);
  const size_t transitions = static_cast<size_t>(loaded->ntrans);
  const reference::Rows none(transitions, std::vector<int32_t>(places));
  Arcs arcs{none, none};
  const auto fill = [loaded](std::vector<int32_t>& row, const siphons::NetArc* group, int32_t count) {
    for (int32_t i = 0; i < count; ++i)
      row[static_cast<size_t>(group[i].place - loaded->places)] = group[i].multiplicity;
  };
  for (size_t t = 0; t < transitions; ++t) {
    const siphons::NetTransition& transition = loaded->transitions[t];
    fill(arcs.output[t], transition.outarcs, transition.noutarcs);
    fill(arcs.input[t], transition.inarcs, transition.ninarcs);
  }
  return arcs;
}

/// Processor seconds of this process or of its children that have ended.
double ProcessorSeconds(__rusage_who who) {
  rusage usage{};
  getrusage(who, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

template <typename Work>
double SecondsOf(__rusage_who who, Work work) {
  const double start = ProcessorSeconds(who);
  work();
  return ProcessorSeconds(who) - start;
}

/// Solves, and sets the counters that describe the solve and the processor seconds that it took.
Answer SolveTimed(benchmark::State& state, const Arcs& arcs, double& seconds) {
  Answer answer;
  seconds = SecondsOf(RUSAGE_SELF, [&] { answer = reference::SolveNetByProgram(arcs, false); });
  state.counters["rays"] = static_cast<double>(siphons::solveCounts.rays);
  state.counters["pairs"] = static_cast<double>(siphons::solveCounts.pairs);
  state.counters["tests"] = static_cast<double>(siphons::solveCounts.tests);
  return answer;
}

void AgainstReference(benchmark::State& state, const std::string& net) {
  const Arcs arcs = LoadArcs(net);
  for (auto _ : state) {
    double ours = 0;
    const Answer answer = SolveTimed(state, arcs, ours);
    state.SetIterationTime(ours);
    Answer expected;
    const double theirs = SecondsOf(RUSAGE_SELF, [&] { expected = reference::SolveNet(arcs); });
    state.counters["reference_s"] = theirs;
    state.counters["ratio"] = theirs / ours;
    if (answer.supports != expected.supports) state.SkipWithError("the two ways disagree");
  }
}

// --- a general tool: the extreme rays of the same cone by 4ti2

/// Writes the siphon inequalities of a net as equations with a slack variable each; all variables are
/// non-negative.
void WriteCone(const Arcs& arcs, const fs::path& base) {
  const size_t transitions = arcs.output.size(), places = arcs.output[0].size();
  std::ofstream matrix(base.string() + ".mat");
  matrix << transitions << " " << places + transitions << "\n";
  for (size_t t = 0; t < transitions; ++t) {
    int32_t weight = 0;
    for (const int32_t multiplicity : arcs.output[t]) weight += multiplicity;
    for (size_t p = 0; p < places; ++p)
      matrix << (arcs.input[t][p] != 0 ? weight : -arcs.output[t][p]) << " ";
    for (size_t slack = 0; slack < transitions; ++slack) matrix << (slack == t ? -1 : 0) << " ";
    matrix << "\n";
  }
}

/// Processor seconds of a command, which must succeed.
double SecondsOfCommand(const std::string& command) {
  int status = 0;
  const double seconds =
      SecondsOf(RUSAGE_CHILDREN, [&] { status = std::system((command + " >/dev/null").c_str()); });
  if (status != 0) throw std::runtime_error("failed: " + command);
  return seconds;
}

/// A report without its line of the time.
std::string TimelessReport(const fs::path& report) {
  std::ifstream file(report);
  std::string text;
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with("Time passed")) text += line + "\n";
  }
  return text;
}

/// Whole processes, from a file to a file. The solver runs once more in this process, for its counters.
void AsProcess(benchmark::State& state, const std::string& net) {
  const Arcs arcs = LoadArcs(net);
  std::string folder = (fs::temp_directory_path() / "siphons-bench-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) throw std::runtime_error("no temporary directory");
  const fs::path model = folder, base = model / "cone", report = model / (net + ".siphons");
  WriteCone(arcs, base);
  fs::copy(fs::path(NETS_DIRECTORY) / (net + ".PD"), model);
  std::ofstream(model / (net + ".DEFINFO")) << "MD_ARCS: 0\nEND_MD_ARCS\nMD_DELAYS: 0\nMD_ENABLING: 0\n";
  const auto seconds = [&](const std::string& program) {
    return SecondsOfCommand("MODELDIR='" + folder + "' '" + program + "' " + net);
  };
  for (auto _ : state) {
    double inThisProcess = 0;
    SolveTimed(state, arcs, inThisProcess);
    state.SetIterationTime(seconds(SIPHONS_PROGRAM));
    const std::string expected = TimelessReport(report);
    if (const char* const earlier = std::getenv("SIPHONS_EARLIER")) {
      state.counters["earlier_s"] = seconds(earlier);
      if (TimelessReport(report) != expected) state.SkipWithError("the earlier build writes another report");
    }
    if (std::system("command -v 4ti2-rays >/dev/null 2>&1") == 0) {
      state.counters["4ti2_s"] = SecondsOfCommand("4ti2-rays -p64 -q '" + base.string() + "'");
      uint64_t rays = 0;
      std::ifstream(base.string() + ".ray") >> rays;
      if (rays != siphons::solveCounts.rays) state.SkipWithError("4ti2 finds another number of rays");
    }
  }
  fs::remove_all(folder);
}

}  // namespace

int main(int argc, char** argv) {
  for (const std::string net : {"conserving_16", "s3pr_3_4", "s4pr_5_6", "choices_10"}) {
    benchmark::RegisterBenchmark(("reference/" + net).c_str(), AgainstReference, net)
        ->UseManualTime()
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
  }
  for (const std::string net : {"conserving_16", "s3pr_3_4", "s4pr_5_6", "choices_10", "s3pr_3_6"}) {
    benchmark::RegisterBenchmark(("process/" + net).c_str(), AsProcess, net)
        ->UseManualTime()
        ->Iterations(1)
        ->Repetitions(5)
        ->ReportAggregatesOnly()
        ->ComputeStatistics(
            "best",
            [](const std::vector<double>& values) { return *std::min_element(values.begin(), values.end()); })
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
}
