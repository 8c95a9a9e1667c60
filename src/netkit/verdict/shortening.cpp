#include "netkit/verdict/shortening.h"

#include <algorithm>
#include <iterator>
#include <random>
#include <unordered_map>

#include "netkit/verdict/walker.h"

namespace siphons {

namespace {

/// Whether the sequence can be fired and ends in a dead marking.
bool EndsDead(Walker& walker, const std::vector<int32_t>& sequence) {
  walker.Reset();
  for (const int32_t t : sequence) {
    if (walker.Dead() || !walker.IsEnabled(t) || !walker.Fire(t)) return false;
  }
  return walker.Dead();
}

/// Without the parts between two equal markings, which are found by sums of random factors per place.
std::vector<int32_t> WithoutCircles(const FiringNet& net, const std::vector<int32_t>& sequence) {
  std::mt19937_64 random(1);
  std::vector<uint64_t> factors(static_cast<size_t>(net.PlaceCount()));
  std::generate(factors.begin(), factors.end(), std::ref(random));
  std::unordered_map<uint64_t, size_t> lengthAt = {{0, 0}};
  std::vector<uint64_t> sums = {0};
  std::vector<int32_t> kept;
  for (const int32_t t : sequence) {
    uint64_t sum = sums.back();
    for (const PlaceTokens& change : net.Changes(t)) {
      sum += factors[static_cast<size_t>(change.place)] * static_cast<uint64_t>(change.tokens);
    }
    const auto before = lengthAt.find(sum);
    if (before == lengthAt.end()) {
      kept.push_back(t);
      sums.push_back(sum);
      lengthAt[sum] = kept.size();
      continue;
    }
    for (; kept.size() > before->second; kept.pop_back(), sums.pop_back()) lengthAt.erase(sums.back());
    lengthAt[sum] = kept.size();
  }
  return kept;
}

}  // namespace

std::vector<int32_t> Shortened(const FiringNet& net, std::vector<int32_t> sequence,
                               const std::function<bool()>& stop) {
  constexpr int64_t kMostFirings = 20'000'000;
  Walker walker(net);
  std::vector<int32_t> shorter = WithoutCircles(net, sequence);
  if (EndsDead(walker, shorter)) sequence = shorter;
  int64_t firings = 0;
  for (size_t run = (sequence.size() + 1) / 2; run > 0; run = run == 1 ? 0 : (run + 1) / 2) {
    for (size_t from = 0; from < sequence.size();) {
      firings += static_cast<int64_t>(sequence.size()) + net.TransitionCount();
      if (firings > kMostFirings || stop()) return sequence;
      const auto begin = sequence.begin() + static_cast<std::ptrdiff_t>(from);
      const size_t length = std::min(run, sequence.size() - from);
      shorter.assign(sequence.begin(), begin);
      shorter.insert(shorter.end(), begin + static_cast<std::ptrdiff_t>(length), sequence.end());
      if (EndsDead(walker, shorter)) {
        sequence = shorter;
      } else {
        from += run;
      }
    }
  }
  return sequence;
}

}  // namespace siphons
