// The solver against the plain one, and against a general polyhedral tool where that is installed, on the
// nets of bench/nets: from the arcs to the minimal siphons, each way once, in one run. Times are processor
// seconds.
//
//   rays, pairs, tests   what the solve had to do: rays at the end, pairs filed, pairs compared with other
//   rays plain_s, ratio       the plain way's seconds, and how many times as long as the fast way it takes
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

#include "net/load_net.h"
#include "tests/reference/solve.h"

namespace {

namespace fs = std::filesystem;
using comparison::Arcs;
using comparison::Solution;

Arcs LoadArcs(const std::string& net) {
  const siphons::Net* const loaded = siphons::load_net((NETS_DIRECTORY "/" + net).c_str(), nullptr, false);
  const size_t places = static_cast<size_t>(loaded->nplaces);
  const size_t transitions = static_cast<size_t>(loaded->ntrans);
  const comparison::Rows none(transitions, std::vector<int32_t>(places));
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

double ProcessorSeconds() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

template <typename Solve>
double SecondsOf(Solve solve) {
  const double start = ProcessorSeconds();
  solve();
  return ProcessorSeconds() - start;
}

void FastAgainstPlain(benchmark::State& state, const std::string& net) {
  const Arcs arcs = LoadArcs(net);
  for (auto _ : state) {
    Solution fast, plain;
    const double fastSeconds = SecondsOf([&] { fast = comparison::SolveFast(arcs); });
    const double plainSeconds = SecondsOf([&] { plain = comparison::SolvePlain(arcs); });
    if (fast.siphons != plain.siphons) {
      state.SkipWithError("the two ways disagree");
      return;
    }
    state.SetIterationTime(fastSeconds);
    state.counters["rays"] = static_cast<double>(fast.rays);
    state.counters["pairs"] = static_cast<double>(fast.pairs);
    state.counters["tests"] = static_cast<double>(fast.tests);
    state.counters["plain_s"] = plainSeconds;
    state.counters["ratio"] = plainSeconds / fastSeconds;
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

double ChildSeconds() {
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec) + static_cast<double>(usage.ru_utime.tv_usec) / 1e6;
}

void FastAgainst4ti2(benchmark::State& state, const std::string& net) {
  if (std::system("command -v 4ti2-rays >/dev/null 2>&1") != 0) {
    state.SkipWithError("skipped: 4ti2 is not installed");
    return;
  }
  const Arcs arcs = LoadArcs(net);
  std::string folder = (fs::temp_directory_path() / "siphons-bench-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) throw std::runtime_error("no temporary directory");
  const fs::path base = fs::path(folder) / "cone";
  WriteCone(arcs, base);
  for (auto _ : state) {
    Solution fast;
    const double fastSeconds = SecondsOf([&] { fast = comparison::SolveFast(arcs); });
    const double before = ChildSeconds();
    if (std::system(("4ti2-rays -q '" + base.string() + "' >/dev/null").c_str()) != 0) {
      state.SkipWithError("4ti2 failed");
      break;
    }
    const double otherSeconds = ChildSeconds() - before;
    size_t rays = 0;
    std::ifstream(base.string() + ".ray") >> rays;
    if (rays != fast.rays) {
      state.SkipWithError("4ti2 finds another number of rays");
      break;
    }
    state.SetIterationTime(fastSeconds);
    state.counters["rays"] = static_cast<double>(fast.rays);
    state.counters["4ti2_s"] = otherSeconds;
    state.counters["ratio"] = otherSeconds / fastSeconds;
  }
  fs::remove_all(folder);
}

}  // namespace

int main(int argc, char** argv) {
  for (const std::string net : {"conserving_16", "s3pr_3_4", "s4pr_5_6", "choices_10"}) {
    benchmark::RegisterBenchmark(("tests/reference/" + net).c_str(), FastAgainstPlain, net)
        ->UseManualTime()
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
  }
  for (const std::string net : {"s3pr_3_4", "s4pr_5_6"}) {
    benchmark::RegisterBenchmark(("4ti2/" + net).c_str(), FastAgainst4ti2, net)
        ->UseManualTime()
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
}
