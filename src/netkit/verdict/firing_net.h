// A net as the token game needs it: arcs in flat arrays, priorities as levels.
//
// Exploration and walks fire transitions by the million; the record of the net (model/petri_net.h) is made
// for readers and keeps texts and positions between the numbers. This copy holds the numbers alone, one array
// per kind of arc with the transitions' shares one after the other.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "netkit/model/petri_net.h"

namespace siphons {

/// Tokens by place, each at least 0.
using Marking = std::vector<int64_t>;

/// A place and a number of tokens: what an arc asks for (at least 1), or what a firing changes (not 0).
struct PlaceTokens {
  int32_t place = 0;
  int64_t tokens = 0;
};

/// What a transition asks of a place, seen from the place.
struct Watch {
  int32_t transition = 0;
  bool inhibitor = false;  ///< the condition is M(p) < tokens, else M(p) >= tokens
  int64_t tokens = 0;
};

/// Lists one after the other in one array.
template <class T>
class FlatLists {
 public:
  void Add(T item) { items_.push_back(item); }
  void EndList() { ends_.push_back(items_.size()); }
  size_t Size() const { return ends_.size() - 1; }
  std::span<const T> operator[](int32_t list) const {
    const size_t i = static_cast<size_t>(list);
    return {items_.data() + ends_[i], ends_[i + 1] - ends_[i]};
  }

 private:
  std::vector<T> items_;
  std::vector<size_t> ends_ = {0};
};

class FiringNet {
 public:
  explicit FiringNet(const PetriNet& net);

  int32_t PlaceCount() const { return static_cast<int32_t>(initial_.size()); }
  int32_t TransitionCount() const { return static_cast<int32_t>(levels_.size()); }
  const Marking& Initial() const { return initial_; }

  /// Whether arcs and priorities say all about the firings: no enabling function, no marking-dependent arc.
  /// Only then the rest is of use.
  bool Exact() const { return exact_; }

  std::span<const PlaceTokens> Inputs(int32_t transition) const { return inputs_[transition]; }
  std::span<const PlaceTokens> Inhibitors(int32_t transition) const { return inhibitors_[transition]; }
  /// What a firing changes: outputs less inputs, places without a difference left out.
  std::span<const PlaceTokens> Changes(int32_t transition) const { return changes_[transition]; }
  /// The conditions on a place.
  std::span<const Watch> Watches(int32_t place) const { return watches_[place]; }
  /// The transitions that put more tokens into a place than they take, and the other way round.
  std::span<const int32_t> Fillers(int32_t place) const { return fillers_[place]; }
  std::span<const int32_t> Drainers(int32_t place) const { return drainers_[place]; }

  /// 0 for timed transitions; immediate ones from 1 on, by priority. Of the transitions whose arcs allow a
  /// firing, those of the greatest level can fire.
  int32_t Level(int32_t transition) const { return levels_[static_cast<size_t>(transition)]; }
  int32_t LevelCount() const { return levelCount_; }
  /// All transitions, those of greater levels first.
  const std::vector<int32_t>& ByLevel() const { return byLevel_; }

  /// Whether the arcs of a transition allow it to fire.
  bool ArcsAllow(int32_t transition, const Marking& marking) const;

  /// The transitions that can fire, in the order of ByLevel.
  void Enabled(const Marking& marking, std::vector<int32_t>& enabled) const;

  /// Fires, whether it can or not; false, and the marking unchanged, where a number would leave 64 bits.
  bool Fire(int32_t transition, Marking& marking) const;
  /// Takes a firing back.
  void Unfire(int32_t transition, Marking& marking) const;

 private:
  void SetLevels(const PetriNet& net);

  bool exact_ = true;
  int32_t levelCount_ = 1;
  Marking initial_;
  std::vector<int32_t> levels_, byLevel_;
  FlatLists<PlaceTokens> inputs_, inhibitors_, changes_;
  FlatLists<Watch> watches_;
  FlatLists<int32_t> fillers_, drainers_;
};

}  // namespace siphons
