// Two containers of plain 32-bit numbers, chained blocks both.
//
// A pair list (LiList) files numbers, the companions, under key numbers. Keys stay in the order of their
// first insertion and companions in the order in which they came; the solver combines pairs in exactly this
// order. The free list keeps released numbers and hands them out first in, first out.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace siphons {

inline constexpr uint32_t kBlockKeys = 10;
inline constexpr uint32_t kElementValues = 1000;
inline constexpr uint32_t kFreeBlockRows = 10000;

/// One link of the companion chain of a key: 1 to kElementValues companions. The chain owns its links.
struct LLElement {
  std::vector<uint32_t> values;
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

/// Allocates an element of one companion (0), links it behind *last when that is not null and makes it *last.
/// Returns 0, or 2 after the message of StorePair.
int32_t CreateLLElement(LLElement** last);

/// Counts keys and companions.
void ScanList(const LiList* list, uint32_t* nbKeys, uint32_t* nbValues);

/// Print a list (null counts as empty) or a chain on standard output.
void printLiList(const LiList* list);
void printLiListElement(const LLElement* element);

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

// Whether the free list is empty stands in a flag of the caller's, 1 at the start: the operations keep it.

/// A free list of one empty block; the caller owns it.
FreeListBlock* InitFreeList();

/// Appends a number and sets the flag to 0.
void DelSingleRow(FreeListBlock** head, uint32_t* flag, uint32_t number);

/// Hands out the oldest number; the flag must be 0, and becomes 1 when this was the last.
uint32_t GetFreeRow(FreeListBlock** head, uint32_t* flag);

/// Releases all blocks; null is ignored.
void DelFreeList(FreeListBlock* head);

}  // namespace siphons
