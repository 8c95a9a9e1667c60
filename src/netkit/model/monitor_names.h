// How places that were added as monitors are told from the net's own: by their names, which is all that every
// file format keeps of them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

namespace siphons {

inline constexpr std::string_view kMonitorName = "monitor";  ///< with a number behind it

inline std::string MonitorName(int32_t number) {
  return std::string(kMonitorName) + std::to_string(number);
}

inline bool IsMonitorName(std::string_view name) {
  if (!name.starts_with(kMonitorName) || name.size() == kMonitorName.size()) return false;
  name.remove_prefix(kMonitorName.size());
  return std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace siphons
