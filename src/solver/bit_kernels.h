// The inner loops of the adjacency tests: two over rows of bits that are stored word by word (word w of row t
// stands at columns[w * stride + t]), one over bitmaps of rows, so that neighbouring rows are handled at
// once. There is a version for AVX-512, one for AVX2 and a portable one; all give the same answers, and the
// best that the machine has is chosen at run time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace siphons {

/// Rows of bits, `words` 64-bit words each. Up to the next multiple of kRowsPadding behind `rows`, words of
/// rows that do not exist may be read; they do not count.
struct BitColumns {
  const uint64_t* columns;
  size_t stride;
  size_t words;
  size_t rows;
};

inline constexpr size_t kRowsPadding = 8;

/// A row and the number of bits that it has in common with a mask.
struct SelectedRow {
  uint32_t row;
  uint32_t common;
};

struct BitKernels {
  /// Writes the rows that have at least `least` bits in common with `mask` (one word per word of a row) to
  /// `out`, in ascending order; `out` has room for all rows. Returns how many there are.
  size_t (*selectRows)(const BitColumns& bits, const uint64_t* mask, uint32_t least, SelectedRow* out);

  /// Whether a row other than `except` holds all bits of `needed`.
  bool (*anyRowHolds)(const BitColumns& bits, const uint64_t* needed, size_t except);

  /// Whether a row below `rows`, other than `except`, has its bit set in every bitmap. A bitmap holds row t
  /// in bit t % 64 of word t / 64 and has a multiple of kBitmapPadding words. Bitmaps with few bits should
  /// come first.
  bool (*anyRowInAll)(std::span<const uint64_t* const> bitmaps, size_t rows, size_t except);
};

inline constexpr size_t kBitmapPadding = 8;

enum class InstructionSet { kPortable, kAvx2, kAvx512 };

/// Whether this machine has it.
bool IsSupported(InstructionSet set);

/// The kernels of an instruction set that is supported.
const BitKernels& KernelsFor(InstructionSet set);

/// The best that this machine supports.
const BitKernels& BestKernels();

}  // namespace siphons
