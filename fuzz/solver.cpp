// Small systems for the solver. The first byte chooses what the others are:
//   a net       at most 10 places: the siphons are those of brute force, and so are those of the SAT engine
//   a system    at most 8 coordinates and 12 constraints: every ray satisfies every constraint
// and how great the numbers get. Answers are checked unless the arithmetic left 32 bits, which the solver
// tells on standard output or by ArithmeticWrapped; whatever the numbers are, it ends and stays in its
// memory.
#include "fuzz/harness.h"
#include "netkit/siphons/minimal_siphons.h"
#include "siphons/siphons.h"
#include "solver/inequalities.h"
#include "solver/sharedVars.h"
#include "tests/brute_force.h"
#include "tests/rows.h"

namespace {

using namespace siphons;

constexpr uint32_t kMaxRays = 10000;

Rows ReadRows(Bytes& bytes, size_t rows, size_t columns, int32_t magnitude) {
  Rows result(rows, Row(columns));
  for (Row& row : result) {
    for (int32_t& entry : row) entry = bytes.Entry(magnitude);
  }
  return result;
}

void CheckEnumeration(const Rows (&arcs)[2], const std::set<PlaceSet>& minimal) {
  ArcSets sets{static_cast<int32_t>(arcs[0][0].size()), {}};
  const auto support = [](const Row& row) {
    PlaceList places;
    for (size_t p = 0; p < row.size(); ++p) {
      if (row[p] != 0) places.push_back(static_cast<int32_t>(p));
    }
    return places;
  };
  for (size_t t = 0; t < arcs[0].size(); ++t)
    sets.transitions.push_back({support(arcs[1][t]), support(arcs[0][t])});
  std::set<PlaceSet> found;
  const auto take = [&found](std::span<const int32_t> siphon) {
    PlaceSet set = 0;
    for (const int32_t p : siphon) set |= PlaceSet{1} << p;
    Require(found.insert(set).second, "the SAT engine finds a siphon twice");
    return true;
  };
  const bool complete = ForEachMinimalSiphon(sets, {AllPlaces(sets), {}}, take, [] { return false; });
  Require(complete && found == minimal, "the siphons of the SAT engine are not those of brute force");
}

void CheckNet(Bytes& bytes, int32_t magnitude) {
  const size_t placeCount = static_cast<size_t>(bytes.Between(1, 10));
  const size_t transitionCount = static_cast<size_t>(bytes.Between(1, 8));
  Rows arcs[2];
  for (Rows& rows : arcs) {
    rows = ReadRows(bytes, transitionCount, placeCount, magnitude);
    // Multiplicities are not negative; most pairs have no arc.
    for (Row& row : rows) {
      for (int32_t& entry : row) entry = entry > 0 ? entry : 0;
    }
  }
  const OwnedMatrix O = MatrixOf(arcs[0]), I = MatrixOf(arcs[1]);
  const OwnedMatrix M0(ZeroMatrix(static_cast<uint32_t>(placeCount), 1));
  CapturedOutput output;
  const uint32_t count = Siphons(M0.get(), O.get(), O.get(), I.get());
  const std::set<PlaceSet> minimal = MinimalSiphons(arcs[0], arcs[1]);
  CheckEnumeration(arcs, minimal);
  if (ArithmeticWrapped || !output.Text().empty() || magnitude == 3) return;
  std::set<PlaceSet> found;
  for (uint32_t r = 0; r < count; ++r) {
    PlaceSet set = 0;
    for (uint32_t p = 0; p < placeCount; ++p) set |= static_cast<PlaceSet>(Siphon->p[r][p]) << p;
    Require(found.insert(set).second, "a siphon comes twice");
  }
  // A support that has no other beside it is dropped.
  if (found.empty() && minimal.size() == 1) return;
  Require(found == minimal, "the siphons are not those of brute force");
}

void CheckSystem(Bytes& bytes, int32_t magnitude) {
  const size_t dimension = static_cast<size_t>(bytes.Between(1, 8));
  const size_t constraintCount = static_cast<size_t>(bytes.Between(0, 12));
  Rows rows = ReadRows(bytes, constraintCount, dimension + 1, magnitude);
  const bool homogeneous = bytes.Between(0, 3) != 0;
  if (homogeneous)
    for (Row& row : rows) row.back() = 0;
  const OwnedMatrix constraints = MatrixOf(rows, static_cast<uint32_t>(dimension + 1));
  CapturedOutput output;
  Matrix* solution = nullptr;
  const uint32_t rayCount = SolveInequationSystem(&solution, constraints.get(), kMaxRays);
  const OwnedMatrix rays(solution);
  if (!homogeneous || ArithmeticWrapped || !output.Text().empty() || magnitude == 3) return;
  for (uint32_t r = 0; r < rayCount; ++r) {
    for (const Row& row : rows) {
      int64_t value = 0;
      for (size_t d = 1; d < dimension; ++d) value += int64_t{row[d]} * rays->p[d - 1][r];
      Require(value >= 0, "a ray violates a constraint");
    }
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Bytes bytes(data, size);
  const uint8_t kind = bytes.Next();
  const int32_t magnitude = kind >> 1 & 3;
  try {
    (kind & 1) != 0 ? CheckNet(bytes, magnitude) : CheckSystem(bytes, magnitude);
  } catch (const ProcessEnd&) {
  }
  return 0;
}
