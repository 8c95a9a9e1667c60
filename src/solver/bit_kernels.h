// The inner loops of the adjacency tests. They run over patterns, which are rows of bits, eight patterns at a
// time. There is a version for AVX-512, one for AVX2 and a portable one; all give the same answers, and the
// best that the machine has is chosen at run time.
//
// The versions with wide instructions have no branch per pattern: the numbers of the selected patterns are
// compressed to the front of a vector, which is stored whole, and the next vector overwrites what was too
// much. Only a few patterns of a thousand are selected, in no order that a branch predictor could learn.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace siphons {

/// Patterns of a block.
inline constexpr size_t kBlockPatterns = 8;

/// Patterns of `wordCount` 64-bit words, in blocks of eight. A block holds the first word of each of its
/// patterns, then the second word of each, and so on.
struct PatternBlocks {
  const uint64_t* data;
  size_t wordCount;

  /// Where word w of pattern i stands in `data`.
  size_t IndexOf(size_t i, size_t w) const {
    return (i / kBlockPatterns * wordCount + w) * kBlockPatterns + i % kBlockPatterns;
  }
};

struct BitKernels {
  // The first two write the numbers of selected patterns, out of the blocks named in `blocks` and in that
  // order, to `out`, and return how many there are. `out` has room for kBlockPatterns numbers per block.

  /// Selects the patterns that have at least `least` bits in common with `mask`.
  size_t (*selectSharing)(PatternBlocks patterns, std::span<const uint32_t> blocks, const uint64_t* mask,
                          uint32_t least, uint32_t* out);

  /// Selects the patterns that hold all bits of `needed`.
  size_t (*selectHolding)(PatternBlocks patterns, std::span<const uint32_t> blocks, const uint64_t* needed,
                          uint32_t* out);

  /// The first pattern of blocks 0 to blockCount - 1 that holds all bits of `needed`, or
  /// kBlockPatterns * blockCount when none does.
  size_t (*firstHolding)(PatternBlocks patterns, size_t blockCount, const uint64_t* needed);
};

enum class InstructionSet { kPortable, kAvx2, kAvx512 };

/// Whether this machine has it.
bool IsSupported(InstructionSet set);

/// The best that this machine supports.
InstructionSet BestInstructionSet();

/// The kernels of a supported instruction set for patterns of so many words.
const BitKernels& KernelsFor(InstructionSet set, size_t wordCount);

}  // namespace siphons
