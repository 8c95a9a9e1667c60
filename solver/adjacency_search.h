// Deciding adjacency against one fixed row at a time.
//
// Two rows are adjacent at constraint k when they saturate at least Dimension - 2 constraints up to k in
// common (the one being processed counted once more) and no third row saturates all of these.
//
// For a fixed row a, with Z(t) the constraints up to k that row t saturates: a third row t that proves (a, b)
// not adjacent holds the intersection of Z(a) and Z(b), so it shares at least as many constraints with a as b
// does, and itself passes the count with a. So one pass over the rows finds all that can matter to a, usually
// less than a hundredth of them; everything else happens among these, on their intersections with Z(a). In
// the order of the size of that intersection, largest first, only the rows before b and those of its own size
// can hold b's.
//
// Rows are excluded from their own test by number, never by value: rows may repeat, and a repeated row is a
// third row like any other.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "solver/bit_kernels.h"

namespace siphons {

class AdjacencySearch {
 public:
  /// Copies the saturation of the rows from `first` on, the bits up to constraint k, out of Sat. The rows of
  /// the solve stay where they are as long as the search is used.
  AdjacencySearch(uint32_t first, uint32_t k, const BitKernels& kernels);

  /// Fixes row a and finds its candidates among the rows from `from` on; both at least `first`.
  void Fix(uint32_t a, uint32_t from);

  /// Number of rows, a left out, that pass the count with a.
  size_t CandidateCount() const { return count_; }

  /// The i-th of them, ascending.
  uint32_t Candidate(size_t i) const { return first_ + near_[i].row; }

  /// Whether a and the i-th candidate are adjacent.
  bool IsAdjacent(size_t i);

 private:
  size_t Select(size_t begin, size_t end, size_t found);
  void OrderNearRows();
  uint64_t SharedWord(size_t row, size_t w) const { return fixed_[w] & columns_[w * stride_ + row]; }

  const BitKernels& kernels_;
  uint32_t first_;
  size_t rows_;
  size_t words_;
  size_t stride_;
  std::vector<uint64_t>
      columns_;  ///< saturated constraints, word by word; row t is row first_ + t of the solve

  size_t fixedRow_ = 0;
  size_t from_ = 0;
  std::vector<uint64_t> fixed_;    ///< Z(a)
  std::vector<SelectedRow> near_;  ///< rows that pass the count with a: first the candidates, then the others
  size_t count_ = 0;               ///< candidates in near_

  // The near rows by falling intersection with Z(a), made when the first test asks for them.
  bool ordered_ = false;
  size_t orderedStride_ = 0;
  std::vector<uint64_t> orderedColumns_;
  std::vector<uint32_t> position_;  ///< of each candidate in that order
  std::vector<uint32_t> end_;  ///< by size of the intersection: the end of the near rows of that size or more
  std::vector<uint64_t> needed_;
};

}  // namespace siphons
