// Filing a pair by looking through all keys, and through the chain for its end.
#include <cstdio>
#include <new>

#include "solver/key_index.h"
#include "solver/lists.h"

namespace siphons {

int32_t StorePair(LiList* list, uint32_t key, uint32_t companion) {
  LiList* block = list;
  for (;; block = block->next) {
    for (uint32_t i = 0; i < block->nbKeys; ++i) {
      if (block->keys[i] != key) continue;
      LLElement* tail = block->chains[i];
      while (tail->next != nullptr) tail = tail->next;
      if (tail->values.size() < kElementValues) {
        tail->values.push_back(companion);
      } else {
        tail->next = NewElement(companion);
      }
      return 0;
    }
    if (block->next == nullptr) break;
  }
  if (block->nbKeys == kBlockKeys) block = block->next = CreateLiList();
  block->keys[block->nbKeys] = key;
  block->chains[block->nbKeys++] = NewElement(companion);
  return 0;
}

}  // namespace siphons
