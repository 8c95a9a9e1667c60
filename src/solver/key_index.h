// What lists.cpp and store_pair.cpp share about the inside of a pair list.
#pragma once

#include <cstdint>
#include <unordered_map>

#include "solver/lists.h"

namespace siphons {

struct KeyIndex {
  std::unordered_map<uint32_t, LLElement*> tails;  ///< last element of each key's chain
  LiList* lastBlock;
};

inline constexpr const char* kNoMemory = "CreateLLElement: no more memory available!";

/// A new chain of one companion; the caller owns it. Throws std::bad_alloc.
LLElement* NewElement(uint32_t companion);

}  // namespace siphons
