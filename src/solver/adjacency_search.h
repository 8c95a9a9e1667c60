// Deciding adjacency against one fixed row at a time.
//
// Two rows are adjacent at constraint k when they saturate at least Dimension - 2 constraints up to k in
// common (the one being processed counted once more) and no third row saturates all of these.
//
// For a fixed row a, with Z(t) the constraints up to k that row t saturates: a third row t that proves (a, b)
// not adjacent holds the intersection of Z(a) and Z(b), so it shares at least as many constraints with a as b
// does, and itself passes the count with a. So one pass over the rows that may pair with a finds its
// candidates, usually about a hundredth of them, and most third rows are among these. In the order of the
// size of the intersection with Z(a), largest first, only the rows before b and those of its own size can
// hold b's.
//
// What is left are the third rows among those that cannot pair with a. They are looked for by constraint: for
// each constraint there is a bitmap of the rows that saturate it, and the bitmaps of the intersection are
// united by AND, the rarest first, some hundred rows at a time and only as long as any row is left.
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
  size_t CandidateCount() const { return candidates_.size(); }

  /// The i-th of them, ascending.
  uint32_t Candidate(size_t i) const { return first_ + candidates_[i].row; }

  /// Whether a and the i-th candidate are adjacent.
  bool IsAdjacent(size_t i);

 private:
  void RankConstraints(uint32_t k);
  void OrderCandidates();
  bool AnyBefore(std::span<const uint64_t> needed);
  uint64_t SharedWord(size_t row, size_t w) const { return fixed_[w] & columns_[w * stride_ + row]; }

  const BitKernels& kernels_;
  uint32_t first_;
  size_t rows_;
  size_t words_;
  size_t stride_;

  // Row t is row first_ + t of the solve. Bit r of a row stands for the constraint of rank r: rank 0 is the
  // one that the fewest rows saturate.
  std::vector<uint64_t> columns_;  ///< the rows' saturated constraints, word by word
  size_t bitmapWords_;
  std::vector<uint64_t> bitmaps_;  ///< per rank: the rows that saturate the constraint
  std::vector<uint32_t> rank_;     ///< of each constraint

  size_t fixedRow_ = 0;
  size_t from_ = 0;
  std::vector<uint64_t> fixed_;  ///< Z(a)
  std::vector<SelectedRow> candidates_;
  std::vector<SelectedRow> selected_;  ///< room for a selection

  // The candidates by falling intersection with Z(a), made when the first test asks for them.
  bool ordered_ = false;
  size_t orderedStride_ = 0;
  std::vector<uint64_t> orderedColumns_;
  std::vector<uint32_t> position_;  ///< of each candidate in that order
  std::vector<uint32_t>
      end_;  ///< by size of the intersection: the end of the candidates of that size or more
  std::vector<uint64_t> needed_;
  std::vector<const uint64_t*> neededBitmaps_;
};

}  // namespace siphons
