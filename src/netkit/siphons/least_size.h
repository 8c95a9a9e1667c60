// The least number of places that the siphons of a search still have.
//
// Each place is first wished to be out. Wishes that contradict each other (a core) say that one more place is
// held than was known. They are given up, their places are counted, and the next wish is that no two of them
// are held, and so on. When no wishes contradict each other, a siphon that fulfils them all has the least
// number of places, and with the clauses of the siphons that were found, the next one has the least of what
// is left. (Core-guided search: Andres et al. 2012, Morgado et al. 2014.) A counter is a binary tree of the
// counted literals, whose nodes have a variable for "at least so many below are true" (totalizer: Bailleux
// and Boufkhad 2003), made when a wish needs it (Martins et al. 2014). A counter of n literals, wished to be
// at most k, takes at most n k clauses; few have to count far.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "netkit/siphons/clause_search.h"

namespace siphons {

class LeastSize {
 public:
  /// The first `places` variables are the places. The search must outlive the object.
  LeastSize(ClauseSearch& search, uint32_t places);

  /// Every siphon that is left has at least so many places.
  size_t Value() const { return value_; }

  /// Literals which, all true, leave siphons of the least size alone.
  std::span<const Literal> Wishes() const { return wishes_; }

  /// Without decisions: takes notice that not all of these wishes can be true, and adds clauses.
  void Raise(std::span<const Literal> core);

 private:
  /// A node: how many literals are below, and a literal for each number of them that is at least true.
  struct Counter {
    uint32_t left, right;  ///< counters; of no meaning in a leaf
    uint32_t size;
    std::vector<Literal> atLeast;  ///< from 1 on
  };

  /// What a wish "not so many" is about.
  struct Limit {
    uint32_t counter;
    uint32_t number;
  };

  uint32_t CounterOf(std::span<const Literal> wishes);
  void CountTo(uint32_t counter, uint32_t number);
  void WishFewerThan(uint32_t counter, uint32_t number);

  ClauseSearch& search_;
  std::vector<Literal> wishes_;
  std::vector<Counter> counters_;
  std::unordered_map<Literal, Limit> limits_;  ///< by wish, of those about counters
  size_t value_ = 0;
  std::vector<Literal> clause_;
};

}  // namespace siphons
