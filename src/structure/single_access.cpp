#include "structure/single_access.h"

#include "structure/info_reader.h"

namespace siphons {

int32_t sp_access(sp_matrix m, int32_t row, int32_t column) {
  const sp_entry* element = m[row];
  while (element != nullptr && element->index < column) element = element->next;
  return element != nullptr && element->index == column ? element->value : 0;
}

void sp_input(sp_matrix m, int32_t row, int32_t column, int32_t value) {
  for (sp_entry* element = m[row]; element != nullptr; element = element->next) {
    if (element->index == column) element->value = value;
  }
}

void deter_in(std::istream& stream, int32_t** set) {
  *set = InfoReader(stream).PlaceSet();
}

}  // namespace siphons
