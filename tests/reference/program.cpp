#include "tests/reference/program.h"

#include <algorithm>
#include <optional>

#include "siphons/siphons.h"
#include "solver/adjacency.h"
#include "solver/inequalities.h"
#include "solver/sharedVars.h"

namespace reference {

namespace {

using siphons::Matrix;
using siphons::OwnedMatrix;

OwnedMatrix MatrixOf(const Rows& rows) {
  OwnedMatrix m(siphons::BuildMat(static_cast<uint32_t>(rows.size()), static_cast<uint32_t>(rows[0].size())));
  for (size_t r = 0; r < rows.size(); ++r) std::copy(rows[r].begin(), rows[r].end(), m->p[r]);
  return m;
}

Counters Now() {
  return {siphons::adjcounter, siphons::redcounter, siphons::quickcounter, siphons::checkedlater,
          siphons::solveCounts.tests};
}

std::vector<FiledPair>* recorded = nullptr;

/// Records filed pairs for its lifetime.
class Recording {
 public:
  explicit Recording(std::vector<FiledPair>* pairs) {
    recorded = pairs;
    siphons::pairObserver = [](int32_t constraint, uint32_t violator, uint32_t satisfier) {
      recorded->push_back({constraint, violator, satisfier});
    };
  }
  ~Recording() { siphons::pairObserver = nullptr; }
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;
};

/// Runs a solve and fills in what is the same for all.
template <typename Solve>
Answer Observed(bool withPairs, Solve solve) {
  Answer answer;
  const Counters before = Now();
  {
    std::optional<Recording> recording;
    if (withPairs) recording.emplace(&answer.pairs);
    solve(answer);
  }
  const Counters after = Now();
  answer.counters = {after.tests - before.tests, after.notAdjacent - before.notAdjacent,
                     after.quick - before.quick, after.deferred - before.deferred,
                     answer.failed ? 0 : after.onFacets};
  return answer;
}

}  // namespace

Answer SolveByProgram(const Rows& constraints, uint32_t maxRays) {
  const OwnedMatrix system = MatrixOf(constraints);
  return Observed(true, [&](Answer& answer) {
    Matrix* columns = nullptr;
    siphons::SolveInequationSystem(&columns, system.get(), maxRays);
    const OwnedMatrix rays(columns);
    answer.failed = columns == nullptr;
    for (uint32_t c = 0; !answer.failed && c < columns->NbColumns; ++c) {
      answer.rays.emplace_back();
      for (uint32_t r = 0; r < columns->NbRows; ++r) answer.rays.back().push_back(columns->p[r][c]);
    }
  });
}

Answer SolveNetByProgram(const Arcs& arcs, bool withPairs) {
  const OwnedMatrix O = MatrixOf(arcs.output), I = MatrixOf(arcs.input);
  const OwnedMatrix M0(siphons::ZeroMatrix(O->NbColumns, 1));
  return Observed(withPairs, [&](Answer& answer) {
    siphons::Siphons(M0.get(), O.get(), O.get(), I.get());
    const Matrix& found = *siphons::Siphon;
    for (uint32_t r = 0; r < found.NbRows; ++r)
      answer.supports.emplace_back(found.p[r], found.p[r] + found.NbColumns);
  });
}

}  // namespace reference
