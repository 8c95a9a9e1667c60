// The mathematics of the report a second time, small and slow: every step as the method defines it, on plain
// vectors, written apart from the program and sharing nothing with it. Tests and benchmarks hold the program
// against it: siphons, rays and filed pairs in their order, counters, and what is printed.
//
// Integers are those of the program: 32 bits that wrap around, but for the products of a row combination.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace reference {

using Row = std::vector<int32_t>;
using Rows = std::vector<Row>;

/// Thrown at a division that the processor cannot do, where the program ends with SIGFPE.
struct ArithmeticFault {};

// --- rows of a matrix

void ElimEqualRows(Rows& rows);
/// Removes positive integer multiples of earlier rows of the same kind, which is column 0.
void ElimSimpleConstraints(Rows& rows);
void ElimNonMinimal(Rows& rows);
void SortRows(Rows& rows);
/// Hoare's quicksort of rows first to last by column `key`; only the columns `key` and `payload` move.
void QuickSort(Rows& rows, uint32_t first, uint32_t last, uint32_t key, uint32_t payload);

// --- integers. Entry 0 of a row is its status and takes no part.

int32_t Gcd(int32_t a, int32_t b);
void Normalize(Row& row);
/// Row `destination` = fa * row a + fb * row b, normalised, status 0. Appends what the program prints to
/// `output`. Returns 1 when the row cannot be represented, else 0.
int32_t CombineRow(uint32_t a, uint32_t b, uint32_t destination, int32_t fa, int32_t fb, Rows& rows,
                   std::string& output);

// --- solves

/// A pair filed for later combination: the constraint at which it combines, the numbers of the ray that
/// violates this and of the one that satisfies it.
struct FiledPair {
  int32_t constraint;
  uint32_t violator, satisfier;
  bool operator==(const FiledPair&) const = default;
};

struct Counters {
  int32_t tests = 0;        ///< pairs of new rays and their parents that were tested
  int32_t notAdjacent = 0;  ///< of these, not adjacent
  int32_t quick = 0;        ///< of these, because they saturate too few constraints in common
  int32_t deferred = 0;     ///< pairs that a constraint in between will find again
  uint64_t onFacets = 0;    ///< pairs of one facet that were compared with other rows; 0 for a failed solve
  bool operator==(const Counters&) const = default;
};

/// What a solve gives, by the reference or by the program.
struct Answer {
  bool failed = false;
  Rows rays;                     ///< in order, without status and homogenising coordinate
  Rows supports;                 ///< of a net only: the minimal siphons as 0/1 rows, in the report's order
  std::vector<FiledPair> pairs;  ///< in the order in which they were filed
  Counters counters;
  std::string output;  ///< what was printed
};

/// Arc multiplicities, a row per transition and a column per place; at least one of each.
struct Arcs {
  Rows output, input;
};

/// The rays of the cone of the constraints, at least one of at least two columns: column 0 is not read, the
/// last column is the constant term.
Answer Solve(const Rows& constraints, uint32_t maxRays);

/// The minimal siphons of a net.
Answer SolveNet(const Arcs& arcs);

}  // namespace reference
