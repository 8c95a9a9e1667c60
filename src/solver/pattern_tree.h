// A search tree over patterns: which of them share enough bits with a mask, which of them hold all of its
// bits?
//
// The leaves are blocks of eight patterns. Above them stands a tree whose nodes have eight children each: the
// pattern of a node is the union of the patterns below it. A node shares at least as many bits with a mask as
// any pattern below it does, and holds all that any of these holds, so whatever is below a node that fails
// can be passed over. The nodes of a level are the blocks of the level below in their order, so nodes need
// neither pointers nor bounds.
//
// How well a tree prunes depends on the order of the patterns: neighbours should be alike. OrderForTree makes
// such an order, and a subset of the patterns in the same order makes nearly as good a tree, at the cost of
// one pass.
//
// A query goes down level by level, with all nodes of a level that are left at once. Depth first would need
// fewer steps where one answer is enough, but the kernels, which have no branch per node, make up for it.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "solver/bit_kernels.h"

namespace siphons {

/// Patterns one after the other, pattern i in words i * wordCount to (i + 1) * wordCount - 1.
struct PatternRows {
  std::vector<uint64_t> words;
  size_t wordCount;

  const uint64_t* operator[](size_t i) const { return words.data() + i * wordCount; }
};

/// The numbers of the patterns, 0 to count - 1, in an order in which neighbours are alike: the patterns are
/// divided by the bit that comes nearest to halving them, then each part by its own. The cost is that of
/// sorting.
std::vector<uint32_t> OrderForTree(const PatternRows& patterns, uint32_t count);

class PatternTree {
 public:
  PatternTree(InstructionSet set, size_t wordCount);

  /// Makes the tree over the patterns of these numbers. A query gives positions in this list.
  void Build(const PatternRows& patterns, std::span<const uint32_t> numbers);

  // Answers are positions, ascending, in memory of the tree that the next query writes over.

  /// The patterns that share at least `least` bits with the mask.
  std::span<const uint32_t> SelectSharing(const uint64_t* mask, uint32_t least);

  /// The patterns that hold all bits of `needed`.
  std::span<const uint32_t> SelectHolding(const uint64_t* needed);

  size_t Size() const { return sizes_.empty() ? 0 : sizes_[0]; }

  /// Word w of the pattern at a position.
  uint64_t Word(size_t position, size_t w) const {
    return levels_[0][PatternBlocks{nullptr, wordCount_}.IndexOf(position, w)];
  }

  /// Whether every node is the union of what is below it.
  bool UnionsHold() const;

 protected:
  /// The blocks of every level, for tests that spoil a tree.
  std::vector<std::vector<uint64_t>>& Levels() { return levels_; }

 private:
  template <typename Kernel>
  std::span<const uint32_t> Descend(Kernel kernel);
  PatternBlocks Level(size_t level) const { return {levels_[level].data(), wordCount_}; }
  void AddLevelAbove();

  std::vector<std::vector<uint64_t>> levels_;  ///< blocks; level 0 the patterns, the last one at most a block
  size_t wordCount_;
  const BitKernels& kernels_;
  std::vector<size_t> sizes_;                ///< patterns or nodes of each level
  std::vector<uint32_t> blocks_, selected_;  ///< what a query goes through on a level, and what it selects
};

}  // namespace siphons
