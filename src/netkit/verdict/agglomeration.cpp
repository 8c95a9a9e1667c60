// H are the transitions that feed place p, F those that take from it; none is both. Neither p nor anything
// else whose time of change moves is tested by an inhibitor arc.
//
// After: each f takes from p and nothing else, so p is empty in a dead marking, and every f of a sequence
// into one can be fired as soon as its tokens are there, which is at once behind the h that puts them there.
// So the pairs h f replace H and F. A pair is enabled exactly when its h is, hence the same markings are
// dead. With several f each arc at p has weight 1 and p starts empty; a single f may take k tokens at once,
// of which every h puts a multiple, and what p holds initially is used up before everything else.
//
// Before: each h puts one token into p and nothing else, and what it takes is taken by no transition outside
// of H. So every h of a sequence can wait until just before the f that takes its token, and those whose token
// is left over in the dead marking need not fire: then the f lack something else than p, and the pairs are as
// dead. The other way round, in a marking where all pairs are dead, H is fired as long as possible; where it
// fires, the f lack something else. Each arc at p has weight 1, and p starts empty.
#include "netkit/verdict/agglomeration.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace siphons {

namespace {

constexpr int64_t kMostWeight = 1'000'000;      // of a joined arc
constexpr int64_t kMostEarlyFirings = 100'000;  // of one transition

size_t ArcCount(const MutableTransition& transition) {
  return transition.inputs.size() + transition.outputs.size() + transition.inhibitors.size();
}

/// a + times b without the place; nothing where a weight becomes too great.
std::optional<ArcList> Joined(const ArcList& a, const ArcList& b, int64_t times, int32_t without) {
  ArcList sum;
  for (size_t i = 0, j = 0; i < a.size() || j < b.size();) {
    const int32_t place =
        std::min(i < a.size() ? a[i].place : INT32_MAX, j < b.size() ? b[j].place : INT32_MAX);
    PlaceTokens arc = {place, 0};
    if (i < a.size() && a[i].place == place) arc.tokens = a[i++].tokens;
    if (j < b.size() && b[j].place == place) {
      if (b[j].tokens > kMostWeight || times > kMostWeight) return std::nullopt;
      arc.tokens += times * b[j++].tokens;
    }
    if (place == without) continue;
    if (arc.tokens > kMostWeight) return std::nullopt;
    sum.push_back(arc);
  }
  return sum;
}

bool AnyWatched(const MutableNet& net, const ArcList& arcs) {
  return std::any_of(arcs.begin(), arcs.end(),
                     [&net](const PlaceTokens& arc) { return net.Watched(arc.place); });
}

/// Whether a place between so many transitions can be considered at all.
bool MayJoin(const MutableNet& net, int32_t place) {
  const auto& before = net.Producers(place);
  const auto& after = net.Consumers(place);
  constexpr size_t kOverSum = 4;
  if (net.Gone(place) || net.Watched(place) || before.empty() || after.empty()) return false;
  if (std::min(before.size(), after.size()) > 1 &&
      before.size() * after.size() > before.size() + after.size() + kOverSum) {
    return false;
  }
  return std::none_of(after.begin(), after.end(),
                      [&](int32_t f) { return WeightAt(net.At(f).outputs, place) > 0; });
}

/// Replaces the transitions at the place by the joined ones, unless these have far more arcs.
bool Replace(MutableNet& net, int32_t place, std::vector<MutableTransition> joined,
             const std::vector<std::vector<MacroPart>>& parts) {
  constexpr size_t kTimes = 3, kMore = 20;
  std::vector<int32_t> old = net.Producers(place);
  old.insert(old.end(), net.Consumers(place).begin(), net.Consumers(place).end());
  size_t arcs = 0, oldArcs = 0;
  for (const MutableTransition& transition : joined) arcs += ArcCount(transition);
  for (const int32_t t : old) oldArcs += ArcCount(net.At(t));
  if (arcs > kTimes * oldArcs + kMore) return false;
  for (const int32_t t : old) net.RemoveTransition(t);
  net.RemovePlace(place);
  for (size_t i = 0; i < joined.size(); ++i) {
    joined[i].macro = net.AddMacro(parts[i]);
    net.AddTransition(std::move(joined[i]));
  }
  return true;
}

/// Whether each f takes from the place alone, whole numbers of times.
bool FollowsAtOnce(const MutableNet& net, int32_t place) {
  const auto& after = net.Consumers(place);
  const int64_t taken = WeightAt(net.At(after.front()).inputs, place);
  if (after.size() > 1 && (taken != 1 || net.Tokens(place) > 0)) return false;
  if (net.Tokens(place) % taken != 0 || net.Tokens(place) / taken > kMostEarlyFirings) return false;
  const auto& before = net.Producers(place);
  return std::all_of(before.begin(), before.end(),
                     [&](int32_t h) {
                       const int64_t put = WeightAt(net.At(h).outputs, place);
                       return after.size() > 1 ? put == 1 : put % taken == 0;
                     }) &&
         std::all_of(after.begin(), after.end(), [&](int32_t f) {
           const MutableTransition& transition = net.At(f);
           return transition.inputs.size() == 1 && transition.inputs[0].tokens == taken &&
                  transition.inhibitors.empty() && !AnyWatched(net, transition.outputs);
         });
}

/// Whether each h puts one token into the place and nothing else, and can wait.
bool CanWait(const MutableNet& net, int32_t place) {
  const auto& before = net.Producers(place);
  const auto& after = net.Consumers(place);
  const auto isBefore = [&before](int32_t t) {
    return std::find(before.begin(), before.end(), t) != before.end();
  };
  const auto takenByThemAlone = [&](const PlaceTokens& arc) {
    const auto& takers = net.Consumers(arc.place);
    return takers.size() <= before.size() && std::all_of(takers.begin(), takers.end(), isBefore);
  };
  return net.Tokens(place) == 0 &&
         std::all_of(before.begin(), before.end(),
                     [&](int32_t h) {
                       const MutableTransition& transition = net.At(h);
                       return transition.outputs.size() == 1 && transition.outputs[0].tokens == 1 &&
                              !transition.inputs.empty() && transition.inhibitors.empty() &&
                              !AnyWatched(net, transition.inputs) &&
                              std::all_of(transition.inputs.begin(), transition.inputs.end(),
                                          takenByThemAlone);
                     }) &&
         std::all_of(after.begin(), after.end(),
                     [&](int32_t f) { return WeightAt(net.At(f).inputs, place) == 1; });
}

/// Whether the places of the arcs have room for what so many firings put.
bool HaveRoom(const MutableNet& net, const ArcList& arcs, int64_t times) {
  constexpr int64_t kMostTokens = int64_t{1} << 62;  // what 100,000 firings put, a million each, adds little
  return times == 0 || std::all_of(arcs.begin(), arcs.end(), [&net](const PlaceTokens& arc) {
           return arc.tokens <= kMostWeight && net.Tokens(arc.place) <= kMostTokens;
         });
}

}  // namespace

bool AgglomerateAfter(MutableNet& net, int32_t place) {
  if (!MayJoin(net, place) || !FollowsAtOnce(net, place)) return false;
  std::vector<MutableTransition> joined;
  std::vector<std::vector<MacroPart>> parts;
  for (const int32_t h : net.Producers(place)) {
    for (const int32_t f : net.Consumers(place)) {
      const int64_t times = WeightAt(net.At(h).outputs, place) / net.At(f).inputs[0].tokens;
      auto outputs = Joined(net.At(h).outputs, net.At(f).outputs, times, place);
      if (!outputs) return false;
      joined.push_back(
          {.inputs = net.At(h).inputs, .outputs = std::move(*outputs), .inhibitors = net.At(h).inhibitors});
      parts.push_back({{net.At(h).macro, 1}, {net.At(f).macro, times}});
    }
  }
  const MutableTransition first = net.At(net.Consumers(place).front());
  const int64_t times = net.Tokens(place) / first.inputs[0].tokens;  // 0 unless it is the only one
  if (!HaveRoom(net, first.outputs, times) || !Replace(net, place, std::move(joined), parts)) return false;
  if (times == 0) return true;
  for (const PlaceTokens& arc : first.outputs)
    net.tokens[static_cast<size_t>(arc.place)] += times * arc.tokens;
  net.tokens[static_cast<size_t>(place)] = 0;
  net.early.push_back({first.macro, times});
  return true;
}

bool AgglomerateBefore(MutableNet& net, int32_t place) {
  if (!MayJoin(net, place) || !CanWait(net, place)) return false;
  std::vector<MutableTransition> joined;
  std::vector<std::vector<MacroPart>> parts;
  std::vector<LateFiring> late;
  for (const int32_t h : net.Producers(place)) {
    late.push_back({net.At(h).inputs, net.At(h).macro});
    for (const int32_t f : net.Consumers(place)) {
      auto inputs = Joined(net.At(h).inputs, net.At(f).inputs, 1, place);
      if (!inputs) return false;
      joined.push_back(
          {.inputs = std::move(*inputs), .outputs = net.At(f).outputs, .inhibitors = net.At(f).inhibitors});
      parts.push_back({{net.At(h).macro, 1}, {net.At(f).macro, 1}});
    }
  }
  if (!Replace(net, place, std::move(joined), parts)) return false;
  net.late.push_back(std::move(late));
  return true;
}

}  // namespace siphons
