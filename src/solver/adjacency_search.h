// Deciding adjacency against one fixed row at a time.
//
// Two rows are adjacent at constraint k when they saturate at least Dimension - 2 constraints up to k in
// common (the one being processed counted once more) and no third row saturates all of these. Let Z(t) be the
// constraints up to k that row t saturates.
//
// For a fixed row a, the partners b that may pair with it stand in a tree over their Z(b), which gives those
// that share enough with Z(a): the candidates, one row in some thousand on a large facet. Whatever holds the
// intersection S(b) of Z(a) and Z(b) separates a from b, and most third rows that do are candidates
// themselves. So the S(b) are looked at by falling size, and those that are maximal are kept: a candidate
// whose S lies in one that was kept is separated, and only the others need a look at the rest of the facet,
// through a second tree over all its rows. When two S are equal, the first is separated there, by the row of
// the second.
//
// The cost is one walk through the partners' tree for each a, and one through the facet's tree for each
// maximal S; a few pairs in ten thousand are looked at.
//
// Rows are excluded from their own test by number, never by value: rows may repeat, and a repeated row is a
// third row like any other.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "solver/bit_kernels.h"
#include "solver/pattern_tree.h"

namespace siphons {

enum class Adjacency { kShareTooFew, kSeparated, kAdjacent };

class AdjacencySearch {
 public:
  /// A search among the rows from `first` on at constraint k. The rows of the solve stay where they are as
  /// long as it is used.
  AdjacencySearch(uint32_t first, uint32_t k, InstructionSet set);

  /// Chooses the partners of the searches to come: the rows from `from` on, at least `first`, that do not
  /// saturate constraint `due`, which is behind k. Pairs that saturate a common constraint between k and
  /// `due` are then passed over, but separate others.
  void ChoosePartners(uint32_t from, uint32_t due);

  /// The partners that are adjacent to row a, which lies between `first` and the partners, ascending; valid
  /// until the next call. Adds to `tests` the number of candidates that were not passed over.
  std::span<const uint32_t> AdjacentPartners(uint32_t a, uint64_t& tests);

  /// What the test of two rows says, which may stand outside the rows of the search.
  Adjacency Test(uint32_t a, uint32_t b);

 private:
  struct Candidate {
    uint32_t position;  ///< in the tree of the partners
    uint32_t size;      ///< of S
    bool passedOver;
  };

  const uint64_t* Pattern(uint32_t row) const { return patterns_[row - first_]; }
  void FindCandidates(uint32_t a, uint64_t& tests);
  void OrderCandidates();
  bool LiesInKept(const uint64_t* set);
  void Keep(const uint64_t* set);
  bool NoThirdRowHolds(const uint64_t* needed, uint32_t a, uint32_t b);
  bool HoldsAll(uint32_t row, const uint64_t* needed) const;

  const BitKernels& kernels_;
  uint32_t first_, k_;
  uint32_t leastCommon_;
  PatternRows patterns_;         ///< Z of row first + i
  std::vector<uint32_t> order_;  ///< rows, as offsets from first, in the order of the tree
  PatternTree facet_;
  uint32_t lastHolder_;  ///< a row that separated the last pair which the facet's tree separated

  PatternTree partners_;
  std::vector<uint32_t> partnerRows_;  ///< offset of the row at each position of the tree
  PatternRows between_;                ///< of each row: the constraints between k and due that it saturates

  std::vector<Candidate> candidates_;
  std::vector<uint32_t> ordered_;  ///< their numbers, by falling size
  PatternRows shared_;             ///< S of each candidate, as found
  std::vector<uint32_t> start_;    ///< scratch of the sort
  std::vector<uint64_t> kept_;     ///< blocks of the S that are maximal
  size_t keptCount_ = 0;
  size_t lastKeptBlock_ = 0;  ///< the block that held the last S which one of them held
  std::vector<uint32_t> adjacent_;
};

}  // namespace siphons
