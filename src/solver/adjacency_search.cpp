#include "solver/adjacency_search.h"

#include <algorithm>
#include <bit>
#include <cassert>

#include "solver/sharedVars.h"

namespace siphons {

namespace {

/// How many maximal sets a candidate is compared with at most. Behind some hundred, a look into the tree of
/// the facet costs less.
constexpr size_t kMostKept = 256;

/// The least number of constraints up to k that the rows of an adjacent pair saturate in common.
uint32_t LeastCommon() {
  return Dimension >= 3 ? Dimension - 3 : 0;
}

/// The constraints `from` to `last` that a row of the solve saturates, into words from / 64 to last / 64; the
/// first constraint of a word is its highest bit.
void SaturatedConstraints(uint32_t row, uint32_t from, uint32_t last, uint64_t* words) {
  const uint32_t* const bits = SatWords(row);
  for (uint32_t w = from / 64; w <= last / 64; ++w) {
    const uint64_t high = bits[2 * w];
    const uint64_t low = 2 * w + 1 < nc ? bits[2 * w + 1] : 0;
    uint64_t saturated = ~(high << 32 | low);
    if (w == from / 64) saturated &= ~uint64_t{0} >> (from % 64);
    if (w == last / 64) saturated &= ~uint64_t{0} << (63 - last % 64);
    *words++ = saturated;
  }
}

PatternRows SaturationPatterns(uint32_t first, uint32_t from, uint32_t last) {
  PatternRows patterns{{}, last / 64 - from / 64 + 1};
  patterns.words.resize((NbRay - first) * patterns.wordCount);
  for (uint32_t row = first; row < NbRay; ++row) {
    SaturatedConstraints(row, from, last, patterns.words.data() + (row - first) * patterns.wordCount);
  }
  return patterns;
}

}  // namespace

AdjacencySearch::AdjacencySearch(uint32_t first, uint32_t k, InstructionSet set)
    : kernels_(KernelsFor(set, k / 64 + 1)),
      first_(first),
      k_(k),
      leastCommon_(LeastCommon()),
      patterns_(SaturationPatterns(first, 0, k)),
      order_(OrderForTree(patterns_, NbRay - first)),
      facet_(set, patterns_.wordCount),
      lastHolder_(kNoRow),
      partners_(set, patterns_.wordCount),
      between_{{}, 0},
      shared_{{}, patterns_.wordCount},
      kept_(kMostKept * patterns_.wordCount) {
  facet_.Build(patterns_, order_);
  assert(facet_.UnionsHold());
}

void AdjacencySearch::ChoosePartners(uint32_t from, uint32_t due) {
  partnerRows_.clear();
  for (const uint32_t offset : order_) {
    if (first_ + offset >= from && IsUnsaturated(first_ + offset, due)) partnerRows_.push_back(offset);
  }
  partners_.Build(patterns_, partnerRows_);
  assert(partners_.UnionsHold());
  between_ = due > k_ + 1 ? SaturationPatterns(first_, k_ + 1, due - 1) : PatternRows{{}, 0};
}

void AdjacencySearch::FindCandidates(uint32_t a, uint64_t& tests) {
  candidates_.clear();
  shared_.words.clear();
  if (Dimension < 2) return;
  const size_t wordCount = patterns_.wordCount;
  const uint64_t* const fixed = Pattern(a);
  const uint64_t* const between = between_[a - first_];
  for (const uint32_t position : partners_.SelectSharing(fixed, leastCommon_)) {
    uint32_t size = 0;
    for (size_t w = 0; w < wordCount; ++w) {
      const uint64_t word = fixed[w] & partners_.Word(position, w);
      shared_.words.push_back(word);
      size += static_cast<uint32_t>(std::popcount(word));
    }
    const uint64_t* const other = between_[partnerRows_[position]];
    bool passedOver = false;
    for (size_t w = 0; w < between_.wordCount; ++w) passedOver = passedOver || (between[w] & other[w]) != 0;
    tests += passedOver ? 0 : 1;
    candidates_.push_back({position, size, passedOver});
  }
}

/// Orders the candidates by falling size of S, by counting.
void AdjacencySearch::OrderCandidates() {
  start_.assign(64 * patterns_.wordCount + 1, 0);
  for (const Candidate& candidate : candidates_) ++start_[candidate.size];
  uint32_t sum = 0;
  for (size_t size = start_.size(); size-- > 0;) {
    sum += start_[size];
    start_[size] = sum - start_[size];
  }
  ordered_.resize(candidates_.size());
  for (uint32_t i = 0; i < candidates_.size(); ++i) ordered_[start_[candidates_[i].size]++] = i;
}

/// Whether a set that was kept holds this one. The block that held the last one is tried first.
bool AdjacencySearch::LiesInKept(const uint64_t* set) {
  const size_t blockSize = kBlockPatterns * patterns_.wordCount;
  const auto inBlocks = [&](size_t first, size_t count) {
    const size_t holder =
        kernels_.firstHolding({kept_.data() + first * blockSize, patterns_.wordCount}, count, set);
    if (first * kBlockPatterns + holder >= keptCount_ || holder == count * kBlockPatterns) return false;
    lastKeptBlock_ = first + holder / kBlockPatterns;
    return true;
  };
  const size_t blocks = (keptCount_ + kBlockPatterns - 1) / kBlockPatterns;
  return (lastKeptBlock_ < blocks && inBlocks(lastKeptBlock_, 1)) || inBlocks(0, blocks);
}

void AdjacencySearch::Keep(const uint64_t* set) {
  if (keptCount_ == kMostKept) return;
  const PatternBlocks kept{kept_.data(), patterns_.wordCount};
  if (keptCount_ % kBlockPatterns == 0) {
    const size_t blockSize = kBlockPatterns * patterns_.wordCount;
    std::fill_n(kept_.begin() + static_cast<ptrdiff_t>(keptCount_ / kBlockPatterns * blockSize), blockSize,
                0);
  }
  for (size_t w = 0; w < patterns_.wordCount; ++w) kept_[kept.IndexOf(keptCount_, w)] = set[w];
  ++keptCount_;
}

std::span<const uint32_t> AdjacencySearch::AdjacentPartners(uint32_t a, uint64_t& tests) {
  FindCandidates(a, tests);
  OrderCandidates();
  adjacent_.clear();
  keptCount_ = 0;
  for (const uint32_t i : ordered_) {
    if (LiesInKept(shared_[i])) continue;
    Keep(shared_[i]);
    if (candidates_[i].passedOver) continue;
    const uint32_t b = first_ + partnerRows_[candidates_[i].position];
    if (NoThirdRowHolds(shared_[i], a, b)) adjacent_.push_back(b);
  }
  std::sort(adjacent_.begin(), adjacent_.end());
  return adjacent_;
}

bool AdjacencySearch::HoldsAll(uint32_t row, const uint64_t* needed) const {
  const uint64_t* const pattern = Pattern(row);
  uint64_t missing = 0;
  for (size_t w = 0; w < patterns_.wordCount; ++w) missing |= needed[w] & ~pattern[w];
  return missing == 0;
}

/// Whether no row but a and b saturates all of `needed`. The row that separated the last pair is tried first.
bool AdjacencySearch::NoThirdRowHolds(const uint64_t* needed, uint32_t a, uint32_t b) {
  const bool haveHolder = lastHolder_ != kNoRow && lastHolder_ != a && lastHolder_ != b;
  if (haveHolder && HoldsAll(lastHolder_, needed)) return false;
  for (const uint32_t position : facet_.SelectHolding(needed)) {
    const uint32_t row = first_ + order_[position];
    if (row == a || row == b) continue;
    lastHolder_ = row;
    return false;
  }
  return true;
}

Adjacency AdjacencySearch::Test(uint32_t a, uint32_t b) {
  std::vector<uint64_t> needed(patterns_.wordCount), other(patterns_.wordCount);
  SaturatedConstraints(a, 0, k_, needed.data());
  SaturatedConstraints(b, 0, k_, other.data());
  uint32_t common = 0;
  for (size_t w = 0; w < needed.size(); ++w) {
    needed[w] &= other[w];
    common += static_cast<uint32_t>(std::popcount(needed[w]));
  }
  if (Dimension < 2 || common < leastCommon_) return Adjacency::kShareTooFew;
  return NoThirdRowHolds(needed.data(), a, b) ? Adjacency::kAdjacent : Adjacency::kSeparated;
}

}  // namespace siphons
