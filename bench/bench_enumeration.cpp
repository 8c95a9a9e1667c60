// netkit siphons against clingo, which enumerates minimal models by its domain heuristic, and against an
// earlier build of netkit, where SIPHONS_EARLIER_NETKIT names one: whole processes on the same nets, in one
// run, each the least of five. Times are processor seconds of the children. Where the enumeration comes to
// its end, all must find the same sets; where it stops at a maximum, the same number.
//
//   siphons           how many there are, or the maximum asked for
//   clingo_s, ratio   clingo's seconds, and how many times as long as netkit it takes
//   earlier_s         the earlier build's seconds
//
// What takes longer than a minute of the processor is stopped, which the label tells, and is not compared.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "net/load_net.h"

namespace {

namespace fs = std::filesystem;
using siphons::Net;
using siphons::NetArc;

constexpr int kLimit = 60;  ///< processor seconds of a process

/// Writes the siphon condition as a logic program; the names of the places by their numbers in it. A model
/// that starts from "out" wherever it is free to is minimal.
std::vector<std::string> WriteProgram(const fs::path& net, const fs::path& path) {
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
             "#heuristic in(P) : place(P). [1,false]\n"
             "#show in/1.\n";
  std::vector<std::string> names;
  for (int32_t p = 0; p < loaded->nplaces; ++p) names.emplace_back(loaded->places[p].name);
  return names;
}

double ChildSeconds() {
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Processor seconds of a shell command, the least of five runs, or of one that takes very long. Exit
/// statuses are not looked at: the programs use them for answers.
double SecondsOf(const std::string& command) {
  constexpr int kRuns = 5;
  constexpr double kLong = 15;
  double least = 0;
  for (int run = 0; run < kRuns; ++run) {
    const double before = ChildSeconds();
    if (std::system(("ulimit -t " + std::to_string(kLimit) + "; " + command).c_str()) == -1)
      throw std::runtime_error("no shell");
    const double seconds = ChildSeconds() - before;
    least = run == 0 ? seconds : std::min(least, seconds);
    if (least > kLong) break;
  }
  return least;
}

bool IsStopped(double seconds) {
  return seconds > kLimit - 0.5;
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

using Sets = std::set<std::set<std::string>>;

/// What netkit wrote, a line for each: "MARKING:    1 { p3 p17 }".
Sets SetsOfNetkit(const fs::path& path) {
  Sets sets;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with("MARKING")) continue;
    std::istringstream names(line.substr(line.find('{') + 1, line.rfind('}') - line.find('{') - 1));
    sets.insert({std::istream_iterator<std::string>(names), std::istream_iterator<std::string>()});
  }
  return sets;
}

/// What clingo wrote, a line for each: "in(3) in(17)".
Sets SetsOfClingo(const fs::path& path, const std::vector<std::string>& names) {
  Sets sets;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with("in(")) continue;
    std::istringstream atoms(line);
    std::set<std::string> set;
    for (std::string atom; atoms >> atom;) set.insert(names[std::stoul(atom.substr(3))]);
    sets.insert(std::move(set));
  }
  return sets;
}

/// What another program found: compared with ours as sets, or by their number when both stop at a maximum.
bool IsEqual(const Sets& ours, const Sets& theirs, int64_t max) {
  return max > 0 ? ours.size() == theirs.size() : ours == theirs;
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
  const std::vector<std::string> names = WriteProgram(fs::path(directory) / net, program);
  const std::string number = std::to_string(max);
  const auto netkit = [&](const std::string& binary) {
    return "MODELDIR='" + directory + "' '" + binary + "' siphons " + net +
           (max > 0 ? " --max " + number : "") + " -o '" + ours.string() + "'";
  };
  const auto clingo = [&](const std::string& quiet) {
    return "clingo --heuristic=Domain --enum-mode=domRec" + quiet + number + " '" + program.string() +
           "' >'" + theirs.string() + "'";
  };
  std::string stopped;
  for (auto _ : state) {
    const double seconds = SecondsOf(netkit(NETKIT_PROGRAM));
    const Sets found = SetsOfNetkit(ours);
    bool isEqual = !found.empty();
    const double clingoSeconds = SecondsOf(clingo(" -q2 "));
    if (IsStopped(clingoSeconds)) {
      stopped += " clingo";
    } else {
      SecondsOf(clingo(" "));
      isEqual = isEqual && IsEqual(found, SetsOfClingo(theirs, names), max);
    }
    if (const char* const earlier = std::getenv("SIPHONS_EARLIER_NETKIT")) {
      const double earlierSeconds = SecondsOf(netkit(earlier));
      state.counters["earlier_s"] = earlierSeconds;
      if (IsStopped(earlierSeconds)) {
        stopped += " earlier";
      } else {
        isEqual = isEqual && IsEqual(found, SetsOfNetkit(ours), max);
      }
    }
    if (!isEqual) {
      state.SkipWithError("the programs find different siphons");
      break;
    }
    state.SetIterationTime(seconds);
    state.counters["siphons"] = static_cast<double>(found.size());
    state.counters["clingo_s"] = clingoSeconds;
    state.counters["ratio"] = clingoSeconds / seconds;
  }
  if (!stopped.empty()) state.SetLabel("stopped after " + std::to_string(kLimit) + " s:" + stopped);
  fs::remove_all(folder);
}

}  // namespace

int main(int argc, char** argv) {
  const struct {
    std::string net;
    int64_t max;
  } nets[] = {{"phil_200", 0},        {"s3pr_8_10", 0},       {"s3pr_14_16", 0}, {"grid_5_5", 0},
              {"grid_6_6", 0},        {"expo_14_2", 0},       {"expo_17", 0},    {"cycles_300_50", 0},
              {"workflow_250", 2000}, {"workflow_250", 20000}};
  for (const auto& [net, max] : nets) {
    benchmark::RegisterBenchmark((net + (max > 0 ? "/" + std::to_string(max) : "")).c_str(), Enumerate, net,
                                 max)
        ->UseManualTime()
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
}
