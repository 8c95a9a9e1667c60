// Two containers of plain 32-bit numbers: the pair list and the free list. Each is a chain of blocks.
//
// A pair list (LiList) files numbers, the companions, under other numbers, the keys. Keys stay in the order
// in which they were first filed, and the companions of a key in the order in which they were; the solver
// combines pairs in exactly this order. A hard net has up to 28,000 keys in one list, most of them with one
// to four companions (sharedVars.h). The free list keeps released numbers and hands them out first in, first
// out.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace siphons {

inline constexpr uint32_t kBlockKeys = 10;
inline constexpr uint32_t kElementValues = 1000;
inline constexpr uint32_t kFreeBlockRows = 10000;

/// One link of the companion chain of a key. The chain owns its links.
struct LLElement {
  std::vector<uint32_t> values;  ///< 1 to kElementValues companions; their number is its size
  LLElement* next;
};

class KeyIndex;

/// One block of a pair list; a list is named by its first block, which also owns the key index.
struct LiList {
  std::array<uint32_t, kBlockKeys> keys;
  std::array<LLElement*, kBlockKeys> chains;
  uint32_t nbKeys;
  LiList* next;
  KeyIndex* index;  ///< null until the first pair is stored, and in every other block
};

/// A new empty list. The caller owns it and releases it with FreeLiList.
LiList* CreateLiList();

/// Files `companion` under `key`, also when the pair is already there. Returns 0, or 1 after
/// "CreateLLElement: no more memory available!" on standard output, the pair not filed.
int32_t StorePair(LiList* list, uint32_t key, uint32_t companion);

/// Releases a list with all its chains; null is ignored.
void FreeLiList(LiList* list);

/// Releases a chain from this element on; null is ignored.
void FreeLiListElement(LLElement* element);

/// Calls visit(key, companion) for every pair in the list's order until it returns nonzero; returns that, or
/// 0.
template <typename Visit>
int32_t ForEachPair(const LiList* list, Visit visit) {
  for (const LiList* block = list; block != nullptr; block = block->next) {
    for (uint32_t i = 0; i < block->nbKeys; ++i) {
      for (const LLElement* element = block->chains[i]; element != nullptr; element = element->next) {
        for (const uint32_t companion : element->values) {
          if (const int32_t status = visit(block->keys[i], companion); status != 0) return status;
        }
      }
    }
  }
  return 0;
}

struct FreeListBlock {
  std::array<uint32_t, kFreeBlockRows> rows;
  uint32_t nbRows;   ///< entries written
  uint32_t readPos;  ///< next entry to hand out
  FreeListBlock* next;
};

// Whether the free list is empty is not stored in it. The caller keeps a flag, 1 for empty as it is at the
// start, and the operations set it.

/// A free list of one empty block; the caller owns it.
FreeListBlock* InitFreeList();

/// Appends a number and sets the flag to 0.
void DelSingleRow(FreeListBlock** head, uint32_t* flag, uint32_t number);

/// Hands out the oldest number; the flag must be 0, and becomes 1 when this was the last.
uint32_t GetFreeRow(FreeListBlock** head, uint32_t* flag);

/// Releases all blocks; null is ignored.
void DelFreeList(FreeListBlock* head);

}  // namespace siphons
