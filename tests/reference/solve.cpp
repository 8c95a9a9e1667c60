// Compiled once for each solver, with SOLVE set to the function's name and, for the plain one, its namespace
// renamed.
#include "tests/reference/solve.h"

#include <algorithm>

#include "matrix/matrix.h"
#include "siphons/siphons.h"
#include "solver/sharedVars.h"

namespace comparison {

namespace {

siphons::OwnedMatrix MatrixOf(const Rows& rows) {
  siphons::OwnedMatrix m(
      siphons::BuildMat(static_cast<uint32_t>(rows.size()), static_cast<uint32_t>(rows[0].size())));
  for (size_t r = 0; r < rows.size(); ++r) std::copy(rows[r].begin(), rows[r].end(), m->p[r]);
  return m;
}

}  // namespace

Solution SOLVE(const Arcs& arcs) {
  const siphons::OwnedMatrix O = MatrixOf(arcs.output);
  const siphons::OwnedMatrix I = MatrixOf(arcs.input);
  const siphons::OwnedMatrix M0(siphons::ZeroMatrix(O->NbColumns, 1));
  siphons::Siphons(M0.get(), O.get(), O.get(), I.get());
  Solution solution{{}, siphons::solveCounts.rays, siphons::solveCounts.pairs, siphons::solveCounts.tests};
  for (uint32_t r = 0; r < siphons::Siphon->NbRows; ++r) {
    solution.siphons.emplace_back(siphons::Siphon->p[r], siphons::Siphon->p[r] + siphons::Siphon->NbColumns);
  }
  return solution;
}

}  // namespace comparison
