// What lists.cpp and store_pair.cpp share about the inside of a pair list: where the chain of a key ends.
//
// A table with open addressing, at most half full, since a long solve files millions of pairs and gives all
// lists up again: one block of memory for all keys costs a third of a node for each. The key that was filed
// last is tried first, because the pairs of one ray come one after the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "solver/lists.h"

namespace siphons {

class KeyIndex {
 public:
  explicit KeyIndex(LiList* list) : lastBlock_(list) {}

  /// Where the last element of a key's chain stands, or null for a key that is not there. The place is valid
  /// until the next Add.
  LLElement** TailOf(uint32_t key);

  /// Makes room for one more key. Throws std::bad_alloc, the index as before.
  void Reserve();

  /// Adds a key that is not there, after Reserve.
  void Add(uint32_t key, LLElement* tail);

  /// The last block of the list, which AppendKey fills; it may be set to the one behind.
  LiList*& LastBlock() { return lastBlock_; }

 private:
  struct Entry {
    uint32_t key;
    LLElement* tail;  ///< null in an entry that is free
  };
  size_t EntryOf(uint32_t key) const;

  LiList* lastBlock_;
  std::vector<Entry> entries_;  ///< a power of two of them, or none
  size_t keys_ = 0;
  size_t last_ = 0;  ///< entry of the key that was looked for last
};

inline constexpr const char* kNoMemory = "CreateLLElement: no more memory available!";

/// A new chain of one companion; the caller owns it. Throws std::bad_alloc.
LLElement* NewElement(uint32_t companion);

}  // namespace siphons
