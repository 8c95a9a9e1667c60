// Filing a pair. The blocks of the list fix the order; an index beside them finds the chain of a key and its
// tail, so filing costs the same however many keys and companions there are. A chain takes as much memory as
// it holds companions.
#include <cstdio>
#include <new>

#include "solver/key_index.h"
#include "solver/lists.h"

namespace siphons {

size_t KeyIndex::EntryOf(uint32_t key) const {
  constexpr uint32_t kGoldenRatio = 0x9E3779B1;  // spreads neighbouring keys (Knuth, volume 3, 6.4)
  const size_t mask = entries_.size() - 1;
  size_t entry = (key * kGoldenRatio >> 7) & mask;
  while (entries_[entry].tail != nullptr && entries_[entry].key != key) entry = (entry + 1) & mask;
  return entry;
}

LLElement** KeyIndex::TailOf(uint32_t key) {
  if (entries_.empty()) return nullptr;
  if (entries_[last_].key != key || entries_[last_].tail == nullptr) last_ = EntryOf(key);
  return entries_[last_].tail != nullptr ? &entries_[last_].tail : nullptr;
}

void KeyIndex::Reserve() {
  constexpr size_t kFirstSize = 8;
  if (2 * (keys_ + 1) <= entries_.size()) return;
  std::vector<Entry> grown(entries_.empty() ? kFirstSize : 2 * entries_.size());
  entries_.swap(grown);
  last_ = 0;
  for (const Entry& entry : grown) {
    if (entry.tail != nullptr) entries_[EntryOf(entry.key)] = entry;
  }
}

void KeyIndex::Add(uint32_t key, LLElement* tail) {
  last_ = EntryOf(key);
  entries_[last_] = {key, tail};
  ++keys_;
}

namespace {

void AppendKey(LiList* list, uint32_t key, uint32_t companion) {
  KeyIndex& index = *list->index;
  index.Reserve();
  LLElement* const element = NewElement(companion);
  if (index.LastBlock()->nbKeys == kBlockKeys) {
    try {
      index.LastBlock()->next = CreateLiList();
    } catch (...) {
      delete element;
      throw;
    }
    index.LastBlock() = index.LastBlock()->next;
  }
  index.Add(key, element);
  LiList& block = *index.LastBlock();
  block.keys[block.nbKeys] = key;
  block.chains[block.nbKeys] = element;
  ++block.nbKeys;
}

}  // namespace

int32_t StorePair(LiList* list, uint32_t key, uint32_t companion) {
  try {
    if (list->index == nullptr) list->index = new KeyIndex(list);
    LLElement** const tail = list->index->TailOf(key);
    if (tail == nullptr) {
      AppendKey(list, key, companion);
    } else if ((*tail)->values.size() < kElementValues) {
      (*tail)->values.push_back(companion);
    } else {
      (*tail)->next = NewElement(companion);
      *tail = (*tail)->next;
    }
    return 0;
  } catch (const std::bad_alloc&) {
    std::puts(kNoMemory);
    return 1;
  }
}

}  // namespace siphons
