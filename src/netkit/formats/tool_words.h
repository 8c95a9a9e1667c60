// The words for the enumerations of a net in the files that netkit writes.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace siphons {

inline constexpr std::array<std::string_view, 4> kTypeWords = {"GSPN", "DSPN", "EDSPN", "CDSPN"};
inline constexpr std::array<std::string_view, 4> kKindWords = {"IMM", "EXP", "DET", "GEN"};
inline constexpr std::array<std::string_view, 3> kPolicyWords = {"RS", "RA", "RE"};
inline constexpr std::array<std::string_view, 2> kServerWords = {"SS", "IS"};
inline constexpr std::array<std::string_view, 4> kDelayWords = {"number", "parameter", "marking",
                                                                "distribution"};

/// The word of an enumerator.
template <typename Enum, size_t size>
std::string_view WordOf(const std::array<std::string_view, size>& words, Enum value) {
  return words[static_cast<size_t>(value)];
}

}  // namespace siphons
