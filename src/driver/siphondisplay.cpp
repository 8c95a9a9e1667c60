// The run: every stage once, in a fixed order. Stages hand their results on through process-wide tables and
// end the process themselves when they fail; nothing is cleaned up before an exit.
#include "driver/siphondisplay.h"

#include <array>
#include <cstdio>

#include "base/bounded_text.h"
#include "base/exit_status.h"
#include "base/fetch_path.h"
#include "base/process_end.h"
#include "base/timer.h"
#include "driver/model_files.h"
#include "driver/report.h"
#include "siphons/siphons.h"
#include "structure/sparse.h"
#include "structure/struct_IO.h"
#include "structure/struct_vars.h"

namespace siphons {

namespace {

constexpr size_t kReportPathBuffer = 4096;

void RefuseUnusableNet() {
  if (no_places < 1) {
    std::puts("Error: no places.");
    EndProcess(kFailure);
  }
  // The computation does not use timing, but a net without any is none of the types that the program is for.
  if (no_timed_trans < 1) {
    std::puts("Error: no timed transitions.");
    EndProcess(kFailure);
  }
}

/// The initial marking as a column.
OwnedMatrix InitialMarking() {
  OwnedMatrix marking(ZeroMatrix(static_cast<uint32_t>(no_places), 1));
  for (int32_t p = 0; p < no_places; ++p) marking->p[p][0] = places[p].init_mark;
  return marking;
}

void ComputeSiphons() {
  start_timer(kComputationTimer);
  {
    const OwnedMatrix C(conv_matrix(c_matrix));
    const OwnedMatrix I(conv_matrix(i_matrix));
    const OwnedMatrix O(conv_matrix(o_matrix));
    const OwnedMatrix M0 = InitialMarking();
    numsiphons = static_cast<int32_t>(Siphons(M0.get(), C.get(), O.get(), I.get()));
  }
  stop_timer(kComputationTimer);
}

}  // namespace

int32_t RunSiphons(int32_t argc, const char* const* argv) {
  if (argc < 2) {
    std::puts("Usage: siphons netname");
    return kSiphonsUsage;
  }
  FindModelDirectory();
  std::array<char, kPathBuffer> netPath;
  FormNetPath(netPath, argv[1]);
  OpenDefinitionInfo(netPath.data());
  read_net(netPath.data());
  ReadDefinitionInfo(netPath.data());
  RefuseUnusableNet();
  c_matrix = sparse_function(o_matrix, i_matrix, no_trans, minus);
  ComputeSiphons();

  std::array<char, kReportPathBuffer> reportPath;
  FormatBounded(reportPath, "%s/%s.siphons", modeldir, model_name);
  fetch_path(reportPath.data());
  if (!WriteReport(reportPath.data(), {time_passed(kComputationTimer), numsiphons, Siphon, SiphonMarking})) {
    std::printf("ERROR: could not open %s for writing\n", reportPath.data());
    return kFailure;
  }
  return kComplete;
}

}  // namespace siphons
