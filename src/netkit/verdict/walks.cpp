#include "netkit/verdict/walks.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace siphons {

namespace {

constexpr size_t kLookahead = 12;  ///< transitions tried for the fewest enabled

/// The Luby series 1 1 2 1 1 2 4 1 1 2 ..., from number 1 on: long walks are as many firings as short ones.
int64_t Luby(uint64_t number) {
  while (!std::has_single_bit(number + 1)) number -= std::bit_floor(number) - 1;
  return static_cast<int64_t>((number + 1) / 2);
}

}  // namespace

Walks::Walks(const FiringNet& net)
    : net_(net), walker_(net), ranks_(static_cast<size_t>(net.TransitionCount())) {}

bool Walks::Run(int64_t work, const std::function<bool()>& stop) {
  constexpr int64_t kShortest = 200;
  constexpr uint64_t kWays = 4;
  const int64_t shortest = kShortest + net_.TransitionCount();
  const int64_t end = walker_.Work() + work;
  if (Walk(Way::kAny, work, walker_.Work() + work / 2, stop)) return true;
  while (walker_.Work() < end) {
    if (stop()) return false;
    const uint64_t walk = static_cast<uint64_t>(walks_++);
    Way way = static_cast<Way>(walk % kWays);
    if (way == Way::kGuided && guide_.empty()) way = Way::kAny;
    if (Walk(way, shortest * Luby(walk / kWays + 1), end, stop)) return true;
  }
  return false;
}

bool Walks::FollowGuide(const std::function<bool()>& stop) {
  constexpr int64_t kMost = 1'000'000;
  int64_t length = net_.TransitionCount();
  for (const int64_t firings : guide_) length += std::min(firings, kMost - std::min(length, kMost));
  return Walk(Way::kGuided, length, INT64_MAX, stop);
}

/// Walks from the initial marking on, for so many firings and until the walker has done so much work.
bool Walks::Walk(Way way, int64_t length, int64_t mostWork, const std::function<bool()>& stop) {
  constexpr int64_t kBetweenQuestions = 4096;
  walker_.Reset();
  sequence_.clear();
  Prepare(way);
  for (int64_t fired = 0; fired < length && walker_.Work() < mostWork; ++fired) {
    if (walker_.Dead()) return true;
    if (fired % kBetweenQuestions == 0 && stop()) return false;
    const int32_t t = Choose(way);
    if (!walker_.Fire(t)) return false;
    sequence_.push_back(t);
    ++firings_;
    if (!left_.empty()) --left_[static_cast<size_t>(t)];
  }
  return walker_.Dead();
}

void Walks::Prepare(Way way) {
  left_.clear();
  if (way == Way::kGuided) left_ = guide_;
  if (way == Way::kRanked) std::generate(ranks_.begin(), ranks_.end(), std::ref(random_));
}

int32_t Walks::Choose(Way way) {
  const auto enabled = walker_.Enabled();
  if (enabled.size() == 1) return enabled[0];
  switch (way) {
    case Way::kAny:
      break;
    case Way::kRanked: {
      const int32_t a = Any(enabled), b = Any(enabled);
      return ranks_[static_cast<size_t>(a)] > ranks_[static_cast<size_t>(b)] ? a : b;
    }
    case Way::kFewest:
      return LeavingFewest(enabled);
    case Way::kGuided:
      return ByGuide(enabled);
  }
  return Any(enabled);
}

int32_t Walks::Any(std::span<const int32_t> enabled) {
  return enabled[random_() % enabled.size()];
}

int32_t Walks::LeavingFewest(std::span<const int32_t> enabled) {
  constexpr uint64_t kOneIn = 8;  // steps anywhere, so that the walk does not turn in a circle
  if (random_() % kOneIn == 0) return Any(enabled);
  tried_.clear();
  for (size_t i = 0; i < kLookahead; ++i) tried_.push_back(Any(enabled));
  int32_t best = tried_.front();
  size_t fewest = SIZE_MAX;
  for (const int32_t t : tried_) {
    if (!walker_.Fire(t)) continue;
    ++firings_;
    const size_t left = walker_.Enabled().size();
    walker_.Unfire(t);
    if (left >= fewest) continue;
    fewest = left;
    best = t;
  }
  return best;
}

int32_t Walks::ByGuide(std::span<const int32_t> enabled) {
  const auto wanted = [this](int32_t t) { return left_[static_cast<size_t>(t)] > 0; };
  constexpr int kTries = 8;
  for (int i = 0; i < kTries; ++i) {
    const int32_t t = Any(enabled);
    if (wanted(t)) return t;
  }
  const auto some = std::find_if(enabled.begin(), enabled.end(), wanted);
  return some != enabled.end() ? *some : Any(enabled);
}

}  // namespace siphons
