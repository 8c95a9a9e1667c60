// A marking that walks: it fires transitions one after the other and always knows which can fire next.
//
// Every transition counts the conditions of its arcs that fail. A firing looks only at the places it changes
// and at the conditions on them, so that its cost does not grow with the net.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "netkit/verdict/firing_net.h"

namespace siphons {

class Walker {
 public:
  /// Stands at the initial marking. The net must outlive the object and be exact.
  explicit Walker(const FiringNet& net);

  /// Back to the initial marking.
  void Reset();

  const Marking& At() const { return marking_; }
  bool Dead() const { return Enabled().empty(); }
  /// The transitions that can fire, in no particular order.
  std::span<const int32_t> Enabled() const;
  bool IsEnabled(int32_t transition) const;
  /// Fires an enabled transition; false, and nothing changed, where a number would leave 64 bits.
  bool Fire(int32_t transition);
  /// Takes a firing back.
  void Unfire(int32_t transition);
  /// Firings, places changed by them and conditions looked at, until now.
  int64_t Work() const { return work_; }

 private:
  void Update(int32_t place, int64_t before, int64_t after);
  void SetFailing(int32_t transition, int32_t failing);

  const FiringNet& net_;
  int64_t work_ = 0;
  Marking marking_;
  std::vector<int32_t> failing_;               ///< by transition: conditions that fail
  std::vector<int32_t> position_;              ///< by transition: where it stands in its level's list, or -1
  std::vector<std::vector<int32_t>> allowed_;  ///< by level: transitions whose arcs allow a firing
};

}  // namespace siphons
