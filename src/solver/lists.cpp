// Pair lists and the free list: making, reading and releasing them. Pairs are filed in store_pair.cpp.
#include "solver/lists.h"

#include <utility>

#include "solver/key_index.h"

namespace siphons {

LLElement* NewElement(uint32_t companion) {
  return new LLElement{{companion}, nullptr};
}

LiList* CreateLiList() {
  return new LiList{{0xFFFFFFFF}, {}, 0, nullptr, nullptr};
}

void FreeLiList(LiList* list) {
  if (list != nullptr) delete list->index;
  while (list != nullptr) {
    for (uint32_t i = 0; i < list->nbKeys; ++i) FreeLiListElement(list->chains[i]);
    delete std::exchange(list, list->next);
  }
}

void FreeLiListElement(LLElement* element) {
  while (element != nullptr) delete std::exchange(element, element->next);
}

FreeListBlock* InitFreeList() {
  return new FreeListBlock{{}, 0, 0, nullptr};
}

void DelSingleRow(FreeListBlock** head, uint32_t* flag, uint32_t number) {
  FreeListBlock* last = *head;
  while (last->next != nullptr) last = last->next;
  if (last->nbRows == kFreeBlockRows) {
    last->next = InitFreeList();
    last = last->next;
  }
  last->rows[last->nbRows] = number;
  ++last->nbRows;
  *flag = 0;
}

uint32_t GetFreeRow(FreeListBlock** head, uint32_t* flag) {
  FreeListBlock* const block = *head;
  const uint32_t number = block->rows[block->readPos];
  if (block->nbRows != block->readPos + 1) {
    ++block->readPos;
  } else if (block->next != nullptr) {
    *head = block->next;
    delete block;
  } else {
    *flag = 1;
    block->nbRows = 0;
    block->readPos = 0;
  }
  return number;
}

void DelFreeList(FreeListBlock* head) {
  while (head != nullptr) delete std::exchange(head, head->next);
}

}  // namespace siphons
