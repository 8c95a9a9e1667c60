#include "netkit/verdict/exploration.h"

#include <algorithm>
#include <utility>

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
      const int32_t number = TakeNext();
      if (number < 0) return tooLarge_ ? End::kTooLarge : End::kExhausted;
      Expand(number);
    }
  }
  return End::kDeadlock;
}

void Exploration::SetGoal(Marking goal) {
  goal_ = std::move(goal);
  expanded_.assign(static_cast<size_t>(store_.Size()), true);
  nearest_.clear();
  for (const int32_t number : waiting_) {
    expanded_[static_cast<size_t>(number)] = false;
    store_.Unpack(number, marking_);
    nearest_.push_back({Distance(marking_), number});
  }
  std::make_heap(nearest_.begin(), nearest_.end());
}

/// The marking to be expanded next, or -1.
int32_t Exploration::TakeNext() {
  if (goal_.empty()) {
    if (waiting_.empty()) return -1;
    const int32_t number = waiting_.back();
    waiting_.pop_back();
    return number;
  }
  takeNearest_ = !takeNearest_;
  while (!waiting_.empty() && !nearest_.empty()) {
    int32_t number = waiting_.back();
    if (takeNearest_) {
      std::pop_heap(nearest_.begin(), nearest_.end());
      number = nearest_.back().number;
      nearest_.pop_back();
    } else {
      waiting_.pop_back();
    }
    if (expanded_[static_cast<size_t>(number)]) continue;
    expanded_[static_cast<size_t>(number)] = true;
    return number;
  }
  return -1;
}

int64_t Exploration::Distance(const Marking& marking) {
  constexpr int64_t kFar = int64_t{1} << 62;
  int64_t distance = 0;
  work_ += net_.PlaceCount();
  for (size_t p = 0; p < marking.size(); ++p) {
    const int64_t apart = marking[p] > goal_[p] ? marking[p] - goal_[p] : goal_[p] - marking[p];
    distance = std::min(kFar, distance) + std::min(kFar - 1, apart);
  }
  return distance;
}

void Exploration::Expand(int32_t number) {
  store_.Unpack(number, marking_);
  net_.Enabled(marking_, enabled_);
  if (enabled_.empty()) {
    dead_ = number;
    return;
  }
  if (stubborn_) {
    work_ -= stubborn_->Work();
    stubborn_->Reduce(marking_, enabled_);
    work_ += stubborn_->Work();
  }
  work_ += net_.TransitionCount() + static_cast<int64_t>(enabled_.size()) * store_.BytesPerMarking() / 8;
  for (const int32_t t : enabled_) {
    if (!net_.Fire(t, marking_)) {
      tooLarge_ = true;
      continue;
    }
    const MarkingStore::Entry entry = store_.Enter(number, net_.Changes(t), marking_);
    if (entry.isNew) {
      links_.push_back({number, t});
      if (stubborn_) waiting_.push_back(entry.number);
      if (!goal_.empty()) {
        expanded_.push_back(false);
        nearest_.push_back({Distance(marking_), entry.number});
        std::push_heap(nearest_.begin(), nearest_.end());
      }
    }
    net_.Unfire(t, marking_);
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
