#include "solver/adjacency_search.h"

#include <algorithm>
#include <bit>
#include <numeric>

#include "solver/sharedVars.h"

namespace siphons {

namespace {

constexpr size_t Padded(size_t count, size_t unit) {
  return (count + unit - 1) / unit * unit;
}

/// The least number of constraints up to k that the rows of an adjacent pair saturate in common.
uint32_t LeastCommon() {
  return Dimension >= 3 ? Dimension - 3 : 0;
}

/// Calls see(c) for the constraints up to k that a row of the solve saturates.
template <typename See>
void ForEachSaturated(uint32_t row, uint32_t k, See see) {
  const uint32_t* const bits = SatWords(row);
  for (uint32_t w = 0; w <= WordOf(k); ++w) {
    uint32_t saturated = ~bits[w];
    if (w == WordOf(k)) saturated &= ~(BitOf(k) - 1);
    for (; saturated != 0; saturated &= ~BitOf(static_cast<uint32_t>(std::countl_zero(saturated)))) {
      see(32 * w + static_cast<uint32_t>(std::countl_zero(saturated)));
    }
  }
}

}  // namespace

AdjacencySearch::AdjacencySearch(uint32_t first, uint32_t k, const BitKernels& kernels)
    : kernels_(kernels),
      first_(first),
      rows_(NbRay - first),
      words_(k / 64 + 1),
      stride_(Padded(rows_, kRowsPadding)),
      columns_(words_ * stride_),
      bitmapWords_(Padded(rows_ / 64 + 1, kBitmapPadding)),
      bitmaps_((size_t{k} + 1) * bitmapWords_),
      fixed_(words_),
      needed_(words_) {
  RankConstraints(k);
  for (size_t t = 0; t < rows_; ++t) {
    ForEachSaturated(first + static_cast<uint32_t>(t), k, [this, t](uint32_t c) {
      const size_t rank = rank_[c];
      columns_[rank / 64 * stride_ + t] |= uint64_t{1} << (rank % 64);
      bitmaps_[rank * bitmapWords_ + t / 64] |= uint64_t{1} << (t % 64);
    });
  }
}

void AdjacencySearch::RankConstraints(uint32_t k) {
  std::vector<uint32_t> saturating(size_t{k} + 1);
  for (size_t t = 0; t < rows_; ++t) {
    ForEachSaturated(first_ + static_cast<uint32_t>(t), k, [&saturating](uint32_t c) { ++saturating[c]; });
  }
  std::vector<uint32_t> order(size_t{k} + 1);
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(),
                   [&saturating](uint32_t a, uint32_t b) { return saturating[a] < saturating[b]; });
  rank_.resize(order.size());
  for (uint32_t rank = 0; rank <= k; ++rank) rank_[order[rank]] = rank;
}

void AdjacencySearch::Fix(uint32_t a, uint32_t from) {
  fixedRow_ = a - first_;
  from_ = from - first_;
  for (size_t w = 0; w < words_; ++w) fixed_[w] = columns_[w * stride_ + fixedRow_];
  ordered_ = false;
  candidates_.clear();
  if (Dimension < 2) return;                                 // no pair passes
  const size_t begin = from_ / kRowsPadding * kRowsPadding;  // so that the padding ends where the columns end
  const BitColumns behind{columns_.data() + begin, stride_, words_, rows_ - begin};
  selected_.resize(std::max(selected_.size(), behind.rows));
  const size_t count = kernels_.selectRows(behind, fixed_.data(), LeastCommon(), selected_.data());
  for (size_t i = 0; i < count; ++i) {
    const size_t row = begin + selected_[i].row;
    if (row < from_ || row == fixedRow_) continue;
    candidates_.push_back({static_cast<uint32_t>(row), selected_[i].common});
  }
}

void AdjacencySearch::OrderCandidates() {
  const size_t count = candidates_.size();
  // Counting sort: start[s] is where the candidates with an intersection of size s begin.
  const size_t sizes = 64 * words_ + 1;
  std::vector<uint32_t> start(sizes);
  end_.assign(sizes, 0);
  for (const SelectedRow& candidate : candidates_) ++end_[candidate.common];
  uint32_t sum = 0;
  for (size_t size = sizes; size-- > 0;) {
    start[size] = sum;
    sum += end_[size];
    end_[size] = sum;
  }
  orderedStride_ = Padded(count, kRowsPadding);
  orderedColumns_.resize(std::max(orderedColumns_.size(), words_ * orderedStride_));
  position_.resize(count);
  for (size_t i = 0; i < count; ++i) {
    position_[i] = start[candidates_[i].common]++;
    for (size_t w = 0; w < words_; ++w) {
      orderedColumns_[w * orderedStride_ + position_[i]] = SharedWord(candidates_[i].row, w);
    }
  }
  ordered_ = true;
}

/// Whether a row before from_, other than the fixed one, saturates all of `needed`.
bool AdjacencySearch::AnyBefore(std::span<const uint64_t> needed) {
  if (from_ == 0) return false;
  neededBitmaps_.clear();
  for (size_t w = 0; w < words_; ++w) {
    for (uint64_t ranks = needed[w]; ranks != 0; ranks &= ranks - 1) {
      const size_t rank = 64 * w + static_cast<size_t>(std::countr_zero(ranks));
      neededBitmaps_.push_back(bitmaps_.data() + rank * bitmapWords_);
    }
  }
  return kernels_.anyRowInAll(neededBitmaps_, from_, fixedRow_);
}

bool AdjacencySearch::IsAdjacent(size_t i) {
  if (!ordered_) OrderCandidates();
  const SelectedRow& candidate = candidates_[i];
  for (size_t w = 0; w < words_; ++w) needed_[w] = SharedWord(candidate.row, w);
  const BitColumns before{orderedColumns_.data(), orderedStride_, words_, end_[candidate.common]};
  return !kernels_.anyRowHolds(before, needed_.data(), position_[i]) && !AnyBefore(needed_);
}

}  // namespace siphons
