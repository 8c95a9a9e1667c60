// Which slot of a table has a name, without a walk over the table: a net of 50,000 places has some hundred
// thousand arcs, each of which names its place.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace siphons {

class NameIndex {
 public:
  static constexpr int32_t kNone = -1;

  /// Enters the name of a slot. A name that is there already keeps its slot; slots are entered in ascending
  /// order, so that this is the first one of the table. The text is not copied and must stay.
  void Add(const char* name, int32_t slot) { slots_.try_emplace(name, slot); }

  /// The first slot of the name, or kNone.
  int32_t Find(const char* name) const {
    const auto found = slots_.find(name);
    return found != slots_.end() ? found->second : kNone;
  }

  void Clear() { slots_.clear(); }

 private:
  std::unordered_map<std::string_view, int32_t> slots_;
};

/// The names of a net's tables, with those slots that have one.
struct NetNames {
  NameIndex places, transitions, delaypars;
};

}  // namespace siphons
