// netkit siphons against clingo, which enumerates minimal models by its domain heuristic: whole processes on
// the same nets, in one run, the least of five runs each. Times are processor seconds of the children. Both
// must find the same number; clingo is stopped after a minute, and its time is then a lower bound.
//
//   siphons           how many there are, or the maximum asked for
//   clingo_s, ratio   clingo's seconds, and how many times as long as netkit it takes
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>

#include "net/load_net.h"

namespace {

namespace fs = std::filesystem;
using siphons::Net;
using siphons::NetArc;

/// The siphon condition as a logic program. A model that starts from "out" wherever it is free to is minimal.
void WriteProgram(const fs::path& net, const fs::path& path) {
  const Net* const loaded = siphons::load_net(net.c_str(), nullptr, false);
  std::ofstream program(path);
  program << "place(0.." << loaded->nplaces - 1 << ").\n";
  for (int32_t t = 0; t < loaded->ntrans; ++t) {
    const auto facts = [&](const char* name, std::span<const NetArc> arcs) {
      for (const NetArc& arc : arcs)
        program << name << "(" << t << "," << arc.place - loaded->places << ").\n";
    };
    const siphons::NetTransition& transition = loaded->transitions[t];
    facts("takes", {transition.inarcs, static_cast<size_t>(transition.ninarcs)});
    facts("puts", {transition.outarcs, static_cast<size_t>(transition.noutarcs)});
  }
  program << "{in(P)} :- place(P).\n"
             "drains(T) :- in(P), takes(T,P).\n"
             ":- puts(T,P), in(P), not drains(T).\n"
             ":- not in(P) : place(P).\n"
             "#heuristic in(P) : place(P). [1,false]\n";
}

double ChildSeconds() {
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Processor seconds of a shell command, the least of five runs, or of one that takes long. Exit statuses are
/// not looked at: both programs use them for answers.
double SecondsOf(const std::string& command) {
  constexpr int kRuns = 5;
  constexpr double kLong = 5;
  double least = 0;
  for (int run = 0; run < kRuns; ++run) {
    const double before = ChildSeconds();
    if (std::system(command.c_str()) == -1) throw std::runtime_error("no shell");
    const double seconds = ChildSeconds() - before;
    least = run == 0 ? seconds : std::min(least, seconds);
    if (least > kLong) break;
  }
  return least;
}

/// A net of separate cycles, in which every part is small and the whole is not.
void WriteCycles(const fs::path& path, int cycles, int length) {
  std::string places, transitions;
  for (int i = 0; i < cycles * length; ++i) {
    const std::string from = std::to_string(i);
    const std::string to = std::to_string(i / length * length + (i + 1) % length);
    places += "PLACE p" + from + (i % length == 0 ? " 1\n" : " 0\n");
    transitions += "TRANSITION t" + from + " 1 SS EXP RE 0 0 0 0 0 0 0 0 INPARCS 1 1 p" + from +
                   " 0 OUTPARCS 1 1 p" + to + " 0 INHARCS 0\n";
  }
  const std::string count = std::to_string(cycles * length) + "\n";
  std::ofstream(path) << "PLACES: " << count << "TRANSITIONS: " << count
                      << "DEFINITION_PARAMETERS: 0\nREWARD_MEASURES: 0\n"
                      << places << transitions;
}

/// The number behind the text in a file, or -1.
int64_t NumberAfter(const fs::path& path, const std::string& text) {
  std::ifstream file(path);
  const std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  const size_t at = content.find(text);
  return at == std::string::npos ? -1 : std::atoll(content.c_str() + at + text.size());
}

void Enumerate(benchmark::State& state, const std::string& net, int64_t max) {
  if (std::system("command -v clingo >/dev/null 2>&1") != 0) {
    state.SkipWithError("skipped: clingo is not installed");
    return;
  }
  std::string folder = (fs::temp_directory_path() / "siphons-bench-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) throw std::runtime_error("no temporary directory");
  const fs::path base = folder, program = base / "net.lp", ours = base / "ours", theirs = base / "theirs";
  const bool isComposed = net == "cycles_300_50";
  if (isComposed) WriteCycles(base / (net + ".PD"), 300, 50);
  const std::string directory = isComposed ? folder : NETS_DIRECTORY;
  WriteProgram(fs::path(directory) / net, program);
  const std::string number = std::to_string(max);
  const std::string netkit = NETKIT_PROGRAM;
  const std::string limit = max > 0 ? " --max " + number : std::string();
  for (auto _ : state) {
    const double seconds = SecondsOf("MODELDIR='" + directory + "' '" + netkit + "' siphons " + net + limit +
                                     " -o '" + ours.string() + "'");
    const double clingo = SecondsOf("clingo --heuristic=Domain --enum-mode=domRec --time-limit=60 -q2 " +
                                    number + " '" + program.string() + "' >'" + theirs.string() + "'");
    const int64_t found = NumberAfter(ours, "No. of siphons = ");
    const bool isWhole = NumberAfter(theirs, "TIME LIMIT   : ") != 1;
    if (found < 0 || (isWhole && found != NumberAfter(theirs, "Models       : "))) {
      state.SkipWithError("the two find different numbers of siphons");
      break;
    }
    state.SetIterationTime(seconds);
    state.counters["siphons"] = static_cast<double>(found);
    state.counters["clingo_s"] = clingo;
    state.counters["ratio"] = clingo / seconds;
  }
  fs::remove_all(folder);
}

}  // namespace

int main(int argc, char** argv) {
  const struct {
    const char* net;
    int64_t max;
  } nets[] = {{"phil_200", 0}, {"s3pr_8_10", 0},     {"s3pr_14_16", 0},
              {"grid_5_5", 0}, {"grid_6_6", 0},      {"expo_14_2", 0},
              {"expo_17", 0},  {"cycles_300_50", 0}, {"workflow_250", 2000}};
  for (const auto& [net, max] : nets) {
    benchmark::RegisterBenchmark(net, Enumerate, net, max)
        ->UseManualTime()
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
}
