// Rows are lists because most have fewer than ten elements; all operations but the insertion of many elements
// walk along them. The order of elements with the same index is part of the result: the first one counts in
// the dense form.
#include "structure/sparse.h"

#include <cstdio>
#include <map>

#include "base/arithmetic.h"
#include "base/exit_status.h"
#include "base/process_end.h"
#include "net/memory.h"

namespace siphons {

sp_matrix sparse_function(sp_matrix a, sp_matrix b, int32_t rows, sp_function f) {
  const sp_matrix result = NewTable<sp_entry*>(rows);
  for (int32_t r = 0; r < rows; ++r) result[r] = sparse_function_row(a[r], b[r], f);
  return result;
}

sp_entry* sparse_function_row(const sp_entry* a, const sp_entry* b, sp_function f) {
  sp_entry* head = nullptr;
  sp_entry** end = &head;
  while (a != nullptr || b != nullptr) {
    const bool takeA = a != nullptr && (b == nullptr || a->index <= b->index);
    const bool takeB = b != nullptr && (a == nullptr || b->index <= a->index);
    sp_entry* const element = NewTable<sp_entry>(1);
    f(takeA ? a : nullptr, takeB ? b : nullptr, element);
    element->index = takeA ? a->index : b->index;
    if (takeA) a = a->next;
    if (takeB) b = b->next;
    // A marking-dependent arc stays visible where its value cancels.
    if (element->value == 0 && element->mark == 0 && element->md_func == 0) {
      Free(element);
    } else {
      *end = element;
      end = &element->next;
    }
  }
  return head;
}

int32_t minus(const sp_entry* a, const sp_entry* b, sp_entry* out) {
  if (a != nullptr && b != nullptr && (a->mark != 0 || b->mark != 0)) {
    std::puts("Error in minus.");
    EndProcess(kFailure);
  }
  out->mark = b != nullptr ? b->md_func : 0;
  out->md_func = a != nullptr ? a->md_func : 0;
  out->value = WrapSub(a != nullptr ? a->value : 0, b != nullptr ? b->value : 0);
  return out->value;
}

void sp_insert(sp_entry** row, sp_entry* element) {
  sp_entry** place = row;
  if (*row != nullptr && (*row)->index <= element->index) {
    place = &(*row)->next;
    while (*place != nullptr && (*place)->index < element->index) place = &(*place)->next;
  }
  element->next = *place;
  *place = element;
}

void sp_insert_all(sp_entry** row, std::span<sp_entry* const> elements) {
  std::map<int32_t, sp_entry*> groups;  // the elements of each index, linked in their order
  for (sp_entry* element = *row; element != nullptr;) {
    groups.try_emplace(element->index, element);
    sp_entry* const next = element->next;
    if (next != nullptr && next->index != element->index) element->next = nullptr;
    element = next;
  }
  for (sp_entry* const element : elements) {
    const auto [group, isNew] = groups.try_emplace(element->index, element);
    if (isNew) {
      element->next = nullptr;
      continue;
    }
    const bool holdsHead = group == groups.begin();
    sp_entry** const place = holdsHead ? &group->second->next : &group->second;
    element->next = *place;
    *place = element;
  }
  sp_entry** end = row;
  for (const auto& [index, first] : groups) {
    *end = first;
    while (*end != nullptr) end = &(*end)->next;
  }
}

Matrix* conv_matrix(sp_matrix m) {
  Matrix* const dense = ZeroMatrix(static_cast<uint32_t>(no_trans), static_cast<uint32_t>(no_places));
  for (int32_t t = 0; t < no_trans; ++t) {
    const sp_entry* previous = nullptr;
    for (const sp_entry* element = m[t]; element != nullptr; element = element->next) {
      const bool first = previous == nullptr || previous->index != element->index;
      if (first) dense->p[t][element->index] = element->value;
      previous = element;
    }
  }
  return dense;
}

}  // namespace siphons
