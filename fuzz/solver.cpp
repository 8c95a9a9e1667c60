// Small systems for the solver. The first byte chooses what the others are:
//   a net       at most 10 places: the siphons are those of brute force, and so are those of netkit
//   a system    at most 16 coordinates and 20 constraints: rays, pairs, counters and what is printed are
//               those of the reference, whatever the numbers are, and every ray satisfies every constraint
// and how great the numbers get. Siphons and rays are checked against the mathematics unless the arithmetic
// left 32 bits, which the solver tells on standard output or by ArithmeticWrapped, or there is a constant
// term.
#include <optional>

#include "fuzz/harness.h"
#include "netkit/siphons/minimal_siphons.h"
#include "siphons/siphons.h"
#include "solver/sharedVars.h"
#include "tests/brute_force.h"
#include "tests/reference/program.h"
#include "tests/rows.h"

namespace {

using namespace siphons;

constexpr uint32_t kMaxRays = 400;  // a thousand come on top of what the start has room for

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
    Require(found.insert(set).second, "netkit finds a siphon twice");
    return true;
  };
  const bool complete = ForEachMinimalSiphon(sets, {AllPlaces(sets), {}}, take, [] { return false; });
  Require(complete && found == minimal, "the siphons of netkit are not those of brute force");
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

/// The reference's answer, or nothing where the program must end at an impossible division.
std::optional<reference::Answer> Expected(const Rows& system) {
  try {
    return reference::Solve(system, kMaxRays);
  } catch (const reference::ArithmeticFault&) {
    return std::nullopt;
  }
}

std::optional<reference::Answer> ByProgram(const Rows& system) {
  CapturedOutput output;
  try {
    reference::Answer answer = reference::SolveByProgram(system, kMaxRays);
    answer.output = output.Text();
    return answer;
  } catch (const ProcessEnd&) {
    return std::nullopt;
  }
}

void CheckSystem(Bytes& bytes, int32_t magnitude) {
  const size_t dimension = static_cast<size_t>(bytes.Between(1, 16));
  const size_t constraintCount = static_cast<size_t>(bytes.Between(0, 20));
  Rows rows = ReadRows(bytes, constraintCount, dimension + 1, magnitude);
  const bool homogeneous = bytes.Between(0, 3) != 0;
  if (homogeneous)
    for (Row& row : rows) row.back() = 0;
  if (rows.empty()) return;
  const std::optional<reference::Answer> expected = Expected(rows), answer = ByProgram(rows);
  Require(answer.has_value() == expected.has_value(), "one way ends at a division, the other does not");
  if (!answer) return;
  Require(answer->output == expected->output, "what is printed is not what the reference prints");
  Require(answer->pairs == expected->pairs, "the filed pairs are not those of the reference");
  Require(answer->counters == expected->counters, "the counters are not those of the reference");
  Require(answer->failed == expected->failed && answer->rays == expected->rays,
          "the rays are not those of the reference");
  if (!homogeneous || ArithmeticWrapped || !answer->output.empty() || magnitude == 3) return;
  for (const Row& ray : answer->rays) {
    for (const Row& row : rows) {
      int64_t value = 0;
      for (size_t d = 1; d < dimension; ++d) value += int64_t{row[d]} * ray[d - 1];
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
