#include "netkit/verdict/stubborn_set.h"

#include <algorithm>

namespace siphons {

namespace {

constexpr size_t kClosures = 8;  ///< tried at most in a marking

}  // namespace

StubbornSet::StubbornSet(const FiringNet& net)
    : net_(net),
      memberSince_(static_cast<size_t>(net.TransitionCount())),
      enabledSince_(static_cast<size_t>(net.TransitionCount())) {
  std::vector<std::vector<int32_t>> conflicts(memberSince_.size());
  for (int32_t t = 0; t < net.TransitionCount(); ++t) {
    for (const PlaceTokens& change : net.Changes(t)) {
      for (const Watch& watch : net.Watches(change.place)) {
        if (watch.inhibitor != (change.tokens > 0) || watch.transition == t) continue;
        conflicts[static_cast<size_t>(t)].push_back(watch.transition);
        conflicts[static_cast<size_t>(watch.transition)].push_back(t);
      }
    }
  }
  for (std::vector<int32_t>& list : conflicts) {
    std::sort(list.begin(), list.end());
    list.erase(std::unique(list.begin(), list.end()), list.end());
    for (const int32_t other : list) conflicts_.Add(other);
    conflicts_.EndList();
  }
}

void StubbornSet::Reduce(const Marking& marking, std::vector<int32_t>& enabled) {
  if (enabled.size() == 1) return;
  marking_ = &marking;
  ++marked_;
  for (const int32_t t : enabled) enabledSince_[static_cast<size_t>(t)] = marked_;
  best_ = enabled;
  const size_t step = std::max<size_t>(1, enabled.size() / kClosures);
  for (size_t i = 0; i < enabled.size() && best_.size() > 1; i += step) {
    if (Close(enabled[i], best_.size())) best_ = enabledMembers_;
  }
  enabled = best_;
}

/// The closure around a transition; false as soon as it has that many enabled members.
bool StubbornSet::Close(int32_t from, size_t mostEnabled) {
  ++round_;
  members_.clear();
  enabledMembers_.clear();
  Add(from);
  for (size_t next = 0; next < members_.size(); ++next) {
    const int32_t t = members_[next];
    if (enabledSince_[static_cast<size_t>(t)] != marked_) {
      AddMenders(t);
      continue;
    }
    enabledMembers_.push_back(t);
    if (enabledMembers_.size() >= mostEnabled) return false;
    work_ += static_cast<int64_t>(conflicts_[t].size());
    for (const int32_t other : conflicts_[t]) Add(other);
  }
  return true;
}

void StubbornSet::Add(int32_t transition) {
  uint64_t& since = memberSince_[static_cast<size_t>(transition)];
  if (since == round_) return;
  since = round_;
  members_.push_back(transition);
}

/// Of the conditions that fail, the one whose menders add the fewest members.
void StubbornSet::AddMenders(int32_t transition) {
  std::span<const int32_t> least;
  size_t leastNew = SIZE_MAX;
  const auto weigh = [&](std::span<const int32_t> menders) {
    size_t added = 0;
    work_ += static_cast<int64_t>(menders.size());
    for (const int32_t t : menders) added += memberSince_[static_cast<size_t>(t)] != round_ ? size_t{1} : 0;
    if (added >= leastNew) return;
    leastNew = added;
    least = menders;
  };
  for (const PlaceTokens& input : net_.Inputs(transition)) {
    if ((*marking_)[static_cast<size_t>(input.place)] < input.tokens) weigh(net_.Fillers(input.place));
  }
  for (const PlaceTokens& inhibitor : net_.Inhibitors(transition)) {
    if ((*marking_)[static_cast<size_t>(inhibitor.place)] >= inhibitor.tokens)
      weigh(net_.Drainers(inhibitor.place));
  }
  for (const int32_t t : least) Add(t);
}

}  // namespace siphons
