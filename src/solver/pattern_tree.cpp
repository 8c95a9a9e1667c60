#include "solver/pattern_tree.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <numeric>

namespace siphons {

namespace {

constexpr size_t BlocksOf(size_t patterns) {
  return (patterns + kBlockPatterns - 1) / kBlockPatterns;
}

/// Divides patterns until the parts fit into blocks.
class Divider {
 public:
  explicit Divider(const PatternRows& patterns) : patterns_(patterns), counts_(64 * patterns.wordCount) {}

  void Divide(std::span<uint32_t> numbers) {
    if (numbers.size() <= kBlockPatterns) return;
    const size_t bit = HalvingBit(numbers);
    if (bit == counts_.size()) return;
    const auto lacks = [this, bit](uint32_t i) { return (patterns_[i][bit / 64] >> (bit % 64) & 1) == 0; };
    const auto middle = std::partition(numbers.begin(), numbers.end(), lacks);
    const size_t lacking = static_cast<size_t>(middle - numbers.begin());
    Divide(numbers.first(lacking));
    Divide(numbers.subspan(lacking));
  }

 private:
  /// The bit that comes nearest to halving a sample, or the number of bits when none divides it.
  size_t HalvingBit(std::span<const uint32_t> numbers) {
    constexpr size_t kSample = 32;
    const size_t sample = std::min(kSample, numbers.size());
    std::fill(counts_.begin(), counts_.end(), 0);
    for (size_t i = 0; i < sample; ++i) {
      const uint64_t* const pattern = patterns_[numbers[i * numbers.size() / sample]];
      for (size_t w = 0; w < patterns_.wordCount; ++w) {
        for (uint64_t bits = pattern[w]; bits != 0; bits &= bits - 1) {
          ++counts_[64 * w + static_cast<size_t>(std::countr_zero(bits))];
        }
      }
    }
    const auto smallerPart = [&](size_t bit) {
      return std::min<size_t>(counts_[bit], sample - counts_[bit]);
    };
    size_t best = 0;
    for (size_t bit = 1; bit < counts_.size(); ++bit) {
      if (smallerPart(bit) > smallerPart(best)) best = bit;
    }
    return smallerPart(best) == 0 ? counts_.size() : best;
  }

  const PatternRows& patterns_;
  std::vector<uint32_t> counts_;  ///< of each bit: the patterns of the sample that have it
};

}  // namespace

std::vector<uint32_t> OrderForTree(const PatternRows& patterns, uint32_t count) {
  std::vector<uint32_t> numbers(count);
  std::iota(numbers.begin(), numbers.end(), 0);
  Divider(patterns).Divide(numbers);
  return numbers;
}

PatternTree::PatternTree(InstructionSet set, size_t wordCount)
    : wordCount_(wordCount), kernels_(KernelsFor(set, wordCount)) {}

void PatternTree::Build(const PatternRows& patterns, std::span<const uint32_t> numbers) {
  sizes_.assign(1, numbers.size());
  if (levels_.empty()) levels_.emplace_back();
  levels_[0].assign(BlocksOf(numbers.size()) * kBlockPatterns * wordCount_, 0);
  for (size_t i = 0; i < numbers.size(); ++i) {
    for (size_t w = 0; w < wordCount_; ++w) levels_[0][Level(0).IndexOf(i, w)] = patterns[numbers[i]][w];
  }
  while (sizes_.back() > kBlockPatterns) AddLevelAbove();
  for (std::vector<uint32_t>* room : {&blocks_, &selected_}) {
    room->resize(std::max(room->size(), BlocksOf(numbers.size()) * kBlockPatterns));
  }
}

void PatternTree::AddLevelAbove() {
  const size_t level = sizes_.size();
  const size_t size = BlocksOf(sizes_.back());
  sizes_.push_back(size);
  if (levels_.size() == level) levels_.emplace_back();
  levels_[level].assign(BlocksOf(size) * kBlockPatterns * wordCount_, 0);
  for (size_t i = 0; i < size; ++i) {
    for (size_t w = 0; w < wordCount_; ++w) {
      const uint64_t* const lanes = &levels_[level - 1][Level(0).IndexOf(i * kBlockPatterns, w)];
      levels_[level][Level(0).IndexOf(i, w)] =
          std::accumulate(lanes, lanes + kBlockPatterns, uint64_t{0}, std::bit_or<>());
    }
  }
}

template <typename Kernel>
std::span<const uint32_t> PatternTree::Descend(Kernel kernel) {
  if (Size() == 0) return {};
  selected_[0] = 0;
  size_t count = 1;
  for (size_t level = sizes_.size(); level-- > 0;) {
    selected_.swap(blocks_);
    count = kernel(Level(level), std::span(blocks_).first(count), selected_.data());
    // The last block may be filled up with patterns that do not exist.
    while (count > 0 && selected_[count - 1] >= sizes_[level]) --count;
  }
  return std::span(selected_).first(count);
}

std::span<const uint32_t> PatternTree::SelectSharing(const uint64_t* mask, uint32_t least) {
  return Descend([&](PatternBlocks level, std::span<const uint32_t> blocks, uint32_t* out) {
    return kernels_.selectSharing(level, blocks, mask, least, out);
  });
}

std::span<const uint32_t> PatternTree::SelectHolding(const uint64_t* needed) {
  return Descend([&](PatternBlocks level, std::span<const uint32_t> blocks, uint32_t* out) {
    return kernels_.selectHolding(level, blocks, needed, out);
  });
}

bool PatternTree::UnionsHold() const {
  for (size_t level = 1; level < sizes_.size(); ++level) {
    for (size_t i = 0; i < sizes_[level]; ++i) {
      for (size_t w = 0; w < wordCount_; ++w) {
        uint64_t below = 0;
        for (size_t j = 0; j < kBlockPatterns; ++j) {
          below |= levels_[level - 1][Level(0).IndexOf(i * kBlockPatterns + j, w)];
        }
        if (below != levels_[level][Level(0).IndexOf(i, w)]) return false;
      }
    }
  }
  return true;
}

}  // namespace siphons
