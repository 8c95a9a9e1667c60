// Filing a pair. The blocks of the list fix the order; a hash index beside them finds the chain of a key and
// its tail, so filing costs the same however many keys and companions there are. A chain takes as much memory
// as it holds companions.
#include <cstdio>
#include <new>

#include "solver/key_index.h"
#include "solver/lists.h"

namespace siphons {

namespace {

void AppendKey(LiList* list, uint32_t key, uint32_t companion) {
  KeyIndex& index = *list->index;
  if (index.lastBlock->nbKeys == kBlockKeys) {
    index.lastBlock->next = CreateLiList();
    index.lastBlock = index.lastBlock->next;
  }
  LLElement* const element = NewElement(companion);
  try {
    index.tails.emplace(key, element);
  } catch (...) {
    delete element;
    throw;
  }
  LiList& block = *index.lastBlock;
  block.keys[block.nbKeys] = key;
  block.chains[block.nbKeys] = element;
  ++block.nbKeys;
}

}  // namespace

int32_t StorePair(LiList* list, uint32_t key, uint32_t companion) {
  try {
    if (list->index == nullptr) list->index = new KeyIndex{{}, list};
    const auto found = list->index->tails.find(key);
    if (found == list->index->tails.end()) {
      AppendKey(list, key, companion);
    } else if (LLElement*& tail = found->second; tail->values.size() < kElementValues) {
      tail->values.push_back(companion);
    } else {
      tail->next = NewElement(companion);
      tail = tail->next;
    }
    return 0;
  } catch (const std::bad_alloc&) {
    std::puts(kNoMemory);
    return 1;
  }
}

}  // namespace siphons
