#include "netkit/verdict/walker.h"

#include <algorithm>

namespace siphons {

Walker::Walker(const FiringNet& net)
    : net_(net),
      failing_(static_cast<size_t>(net.TransitionCount())),
      position_(failing_.size()),
      allowed_(static_cast<size_t>(net.LevelCount())) {
  Reset();
}

void Walker::Reset() {
  marking_ = net_.Initial();
  work_ += net_.TransitionCount();
  for (std::vector<int32_t>& list : allowed_) list.clear();
  position_.assign(position_.size(), -1);
  for (int32_t t = 0; t < net_.TransitionCount(); ++t) {
    failing_[static_cast<size_t>(t)] = 1;
    int32_t failing = 0;
    const auto tokens = [this](const PlaceTokens& arc) { return marking_[static_cast<size_t>(arc.place)]; };
    for (const PlaceTokens& input : net_.Inputs(t)) failing += tokens(input) < input.tokens ? 1 : 0;
    for (const PlaceTokens& inhibitor : net_.Inhibitors(t)) {
      failing += tokens(inhibitor) >= inhibitor.tokens ? 1 : 0;
    }
    SetFailing(t, failing);
  }
}

std::span<const int32_t> Walker::Enabled() const {
  const auto level =
      std::find_if(allowed_.rbegin(), allowed_.rend(), [](const auto& list) { return !list.empty(); });
  return level == allowed_.rend() ? std::span<const int32_t>() : *level;
}

bool Walker::IsEnabled(int32_t transition) const {
  const auto enabled = Enabled();
  return failing_[static_cast<size_t>(transition)] == 0 && net_.Level(transition) == net_.Level(enabled[0]);
}

bool Walker::Fire(int32_t transition) {
  ++work_;
  if (!net_.Fire(transition, marking_)) return false;
  for (const PlaceTokens& change : net_.Changes(transition)) {
    const int64_t after = marking_[static_cast<size_t>(change.place)];
    Update(change.place, after - change.tokens, after);
  }
  return true;
}

void Walker::Unfire(int32_t transition) {
  net_.Unfire(transition, marking_);
  for (const PlaceTokens& change : net_.Changes(transition)) {
    const int64_t after = marking_[static_cast<size_t>(change.place)];
    Update(change.place, after + change.tokens, after);
  }
}

void Walker::Update(int32_t place, int64_t before, int64_t after) {
  const auto watches = net_.Watches(place);
  work_ += 1 + static_cast<int64_t>(watches.size());
  for (const Watch& watch : watches) {
    const bool reached = before >= watch.tokens, reaches = after >= watch.tokens;
    if (reached == reaches) continue;
    SetFailing(watch.transition,
               failing_[static_cast<size_t>(watch.transition)] + (reaches == watch.inhibitor ? 1 : -1));
  }
}

void Walker::SetFailing(int32_t transition, int32_t failing) {
  const size_t t = static_cast<size_t>(transition);
  const bool was = failing_[t] == 0, is = failing == 0;
  failing_[t] = failing;
  if (was == is) return;
  std::vector<int32_t>& list = allowed_[static_cast<size_t>(net_.Level(transition))];
  if (is) {
    position_[t] = static_cast<int32_t>(list.size());
    list.push_back(transition);
    return;
  }
  const size_t free = static_cast<size_t>(position_[t]);
  list[free] = list.back();
  position_[static_cast<size_t>(list[free])] = position_[t];
  list.pop_back();
  position_[t] = -1;
}

}  // namespace siphons
