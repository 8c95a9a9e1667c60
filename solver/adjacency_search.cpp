#include "solver/adjacency_search.h"

#include <algorithm>

#include "solver/sharedVars.h"

namespace siphons {

namespace {

constexpr size_t Padded(size_t rows) {
  return (rows + kRowsPadding - 1) / kRowsPadding * kRowsPadding;
}

/// The least number of constraints up to k that the rows of an adjacent pair saturate in common.
uint32_t LeastCommon() {
  return Dimension >= 3 ? Dimension - 3 : 0;
}

}  // namespace

AdjacencySearch::AdjacencySearch(uint32_t first, uint32_t k, const BitKernels& kernels)
    : kernels_(kernels),
      first_(first),
      rows_(NbRay - first),
      words_(WordOf(k) / 2 + 1),
      stride_(Padded(rows_)),
      columns_(words_ * stride_),
      fixed_(words_),
      near_(rows_),
      needed_(words_) {
  const uint32_t last = WordOf(k);
  const uint32_t lastMask = ~(BitOf(k) - 1);
  for (size_t t = 0; t < rows_; ++t) {
    const uint32_t* const bits = SatWords(first + static_cast<uint32_t>(t));
    for (uint32_t w = 0; w <= last; ++w) {
      const uint32_t saturated = ~bits[w] & (w == last ? lastMask : 0xFFFFFFFF);
      columns_[w / 2 * stride_ + t] |= uint64_t{saturated} << (32 * (w % 2));
    }
  }
}

/// Selects the near rows from begin to end - 1 behind the first `found` entries of near_; returns the new
/// number.
size_t AdjacencySearch::Select(size_t begin, size_t end, size_t found) {
  if (Dimension < 2) return found;  // no pair passes
  SelectedRow* const out = near_.data() + found;
  const size_t selected = kernels_.selectRows({columns_.data() + begin, stride_, words_, end - begin},
                                              fixed_.data(), LeastCommon(), out);
  SelectedRow* const kept = std::remove_if(out, out + selected, [this, begin](SelectedRow& near) {
    near.row += static_cast<uint32_t>(begin);
    return near.row == fixedRow_;
  });
  return static_cast<size_t>(kept - near_.data());
}

void AdjacencySearch::Fix(uint32_t a, uint32_t from) {
  fixedRow_ = a - first_;
  from_ = from - first_;
  for (size_t w = 0; w < words_; ++w) fixed_[w] = columns_[w * stride_ + fixedRow_];
  count_ = Select(from_, rows_, 0);
  ordered_ = false;
}

void AdjacencySearch::OrderNearRows() {
  const size_t count = Select(0, from_, count_);
  // Counting sort: start[s] is where the rows with an intersection of size s begin.
  const size_t sizes = 64 * words_ + 1;
  std::vector<uint32_t> start(sizes);
  end_.assign(sizes, 0);
  for (size_t i = 0; i < count; ++i) ++end_[near_[i].common];
  uint32_t sum = 0;
  for (size_t size = sizes; size-- > 0;) {
    start[size] = sum;
    sum += end_[size];
    end_[size] = sum;
  }
  orderedStride_ = Padded(count);
  orderedColumns_.resize(std::max(orderedColumns_.size(), words_ * orderedStride_));
  position_.resize(count_);
  for (size_t i = 0; i < count; ++i) {
    const uint32_t position = start[near_[i].common]++;
    if (i < count_) position_[i] = position;
    for (size_t w = 0; w < words_; ++w)
      orderedColumns_[w * orderedStride_ + position] = SharedWord(near_[i].row, w);
  }
  ordered_ = true;
}

bool AdjacencySearch::IsAdjacent(size_t i) {
  if (!ordered_) OrderNearRows();
  const SelectedRow& candidate = near_[i];
  for (size_t w = 0; w < words_; ++w) needed_[w] = SharedWord(candidate.row, w);
  const BitColumns before{orderedColumns_.data(), orderedStride_, words_, end_[candidate.common]};
  return !kernels_.anyRowHolds(before, needed_.data(), position_[i]);
}

}  // namespace siphons
