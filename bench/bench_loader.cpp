// What reading a net costs per place, at 5,000 places beside 50,000: the two agree when the readers and the
// structural tables take linear time.
//
//   Load       the report program's loader and its tables
//   ReadPd_    netkit's strict reader of the same texts
//   ReadPnml_  netkit's reader of the same nets in the other format
//   ring       n places and n transitions of four arcs; markings, delays and definitions by name
//   wide       n places in transitions of 5,000 input arcs, written in descending order
//   per_place  processor time per place
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "net/load_net.h"
#include "netkit/formats/pd_reader.h"
#include "netkit/formats/pnml_reader.h"
#include "netkit/formats/pnml_writer.h"
#include "structure/struct_IO.h"
#include "structure/struct_vars.h"

namespace {

namespace fs = std::filesystem;
using namespace siphons;

std::string Header(int64_t places, int64_t transitions, int64_t parameters) {
  return "PLACES: " + std::to_string(places) + "\nTRANSITIONS: " + std::to_string(transitions) +
         "\nDEFINITION_PARAMETERS: " + std::to_string(parameters) + "\nREWARD_MEASURES: 0\n";
}

std::string Arc(int64_t place) {
  return "1 p" + std::to_string(place) + " 0\n";
}

std::string Ring(int64_t n) {
  std::string places, transitions, parameters, definitions;
  for (int64_t i = 0; i < n; ++i) {
    const std::string number = std::to_string(i);
    const int64_t next = (i + 1) % n, far = (i * 7921 + 7) % n;
    parameters += "DEFINITION_PARAMETER m" + number + " 1 0 0\n";
    places.append("PLACE p").append(number).append(" m").append(number).append(" 0 0 0 0\n");
    transitions += "TRANSITION t" + number + " <MD> SS EXP RS 0 0 0 0 0 0 0 0\nINPARCS 2\n" + Arc(i) +
                   Arc(far) + "OUTPARCS 2\n" + Arc(next) + Arc(far) + "INHARCS 0\n";
    definitions += "EXP_DELAY t" + number + " 1.0;\n";
  }
  return Header(n, n, n) + parameters + places + transitions + definitions;
}

std::string Wide(int64_t n) {
  constexpr int64_t kArcs = 5000;
  std::string places, transitions;
  for (int64_t i = 0; i < n; ++i) places += "PLACE p" + std::to_string(i) + " 1 0 0 0 0\n";
  for (int64_t i = 0; i < n / kArcs; ++i) {
    transitions += "TRANSITION t" + std::to_string(i) + " 1.0 SS EXP RS 0 0 0 0 0 0 0 0\nINPARCS " +
                   std::to_string(kArcs) + "\n";
    for (int64_t j = 1; j <= kArcs; ++j) transitions += Arc((i + 1) * kArcs - j);
    transitions += "OUTPARCS 0\nINHARCS 0\n";
  }
  return Header(n, n / kArcs, 0) + places + transitions;
}

void CountPerPlace(benchmark::State& state) {
  state.counters["per_place"] =
      benchmark::Counter(static_cast<double>(state.range(0)),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void Load(benchmark::State& state, std::string (*textOf)(int64_t)) {
  const fs::path path =
      fs::temp_directory_path() / ("siphons-bench-loader-" + std::to_string(getpid()) + ".PD");
  std::ofstream(path) << textOf(state.range(0));
  for (auto _ : state) {
    const OwnedNet net(load_net(path.c_str(), nullptr, false));
    config_net(*net);
    if (no_places != state.range(0)) throw std::runtime_error("places are missing");
  }
  fs::remove(path);
  CountPerPlace(state);
}

void ReadText(benchmark::State& state, std::string (*textOf)(int64_t), bool asPnml) {
  Diagnostics diagnostics("net");
  std::string text = textOf(state.range(0));
  if (asPnml) text = WritePnml(ReadPd(text, "net", diagnostics).value());
  for (auto _ : state) {
    const std::optional<PetriNet> net =
        asPnml ? ReadPnml(text, diagnostics) : ReadPd(text, "net", diagnostics);
    if (!net) throw std::runtime_error(diagnostics.Text());
  }
  CountPerPlace(state);
}

BENCHMARK_CAPTURE(Load, ring, Ring)->Arg(5000)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Load, wide, Wide)->Arg(5000)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadText, ReadPd_ring, Ring, false)->Arg(5000)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadText, ReadPd_wide, Wide, false)->Arg(5000)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadText, ReadPnml_ring, Ring, true)->Arg(5000)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadText, ReadPnml_wide, Wide, true)->Arg(5000)->Arg(50000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
