#include "netkit/verdict/exploration.h"

#include <algorithm>

namespace siphons {

Exploration::Exploration(const FiringNet& net, ExplorationOrder order)
    : net_(net), order_(order), store_(net.Initial()), links_({{-1, -1}}), marking_(net.Initial()) {
  if (order != ExplorationOrder::kReduced) return;
  stubborn_.emplace(net);
  waiting_.push_back(0);
}

Exploration::End Exploration::Run(int64_t work, int64_t bytes, const std::function<bool()>& stop) {
  constexpr int kBetweenQuestions = 64;
  constexpr int32_t kMostMarkings = INT32_MAX / 2;  // the next expansion adds fewer than that
  for (int expanded = 1; dead_ < 0; ++expanded) {
    if (work_ >= work || Bytes() >= bytes || store_.Size() >= kMostMarkings) return End::kLimit;
    if (expanded % kBetweenQuestions == 0 && stop()) return End::kStopped;
    if (order_ == ExplorationOrder::kBreadthFirst) {
      if (next_ == store_.Size()) return tooLarge_ ? End::kTooLarge : End::kExhausted;
      Expand(next_++);
    } else {
      if (waiting_.empty()) return tooLarge_ ? End::kTooLarge : End::kExhausted;
      const int32_t number = waiting_.back();
      waiting_.pop_back();
      Expand(number);
    }
  }
  return End::kDeadlock;
}

void Exploration::Expand(int32_t number) {
  store_.Unpack(number, marking_);
  net_.Enabled(marking_, enabled_);
  if (enabled_.empty()) {
    dead_ = number;
    return;
  }
  if (stubborn_) stubborn_->Reduce(marking_, enabled_);
  work_ += net_.TransitionCount() + static_cast<int64_t>(enabled_.size()) * store_.BytesPerMarking() / 8;
  for (const int32_t t : enabled_) {
    if (!net_.Fire(t, marking_)) {
      tooLarge_ = true;
      continue;
    }
    const MarkingStore::Entry entry = store_.Enter(number, net_.Changes(t), marking_);
    net_.Unfire(t, marking_);
    if (!entry.isNew) continue;
    links_.push_back({number, t});
    if (stubborn_) waiting_.push_back(entry.number);
  }
}

std::vector<int32_t> Exploration::Sequence() const {
  std::vector<int32_t> sequence;
  for (int32_t number = dead_; number > 0; number = links_[static_cast<size_t>(number)].parent) {
    sequence.push_back(links_[static_cast<size_t>(number)].transition);
  }
  std::reverse(sequence.begin(), sequence.end());
  return sequence;
}

}  // namespace siphons
