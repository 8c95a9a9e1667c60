#include "net/section_text.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/arithmetic.h"
#include "net/memory.h"

namespace siphons {

int32_t DecimalInteger(const char* token) {
  return WrapToInt32(std::strtol(token, nullptr, 10));
}

const char* FirstWords::Of(const char* text, int32_t count) {
  constexpr const char* kBlanks = " \t\n\v\f\r";
  const char* end = text;
  for (int32_t i = 0; i < count; ++i) {
    end += std::strspn(end, kBlanks);
    end += std::strcspn(end, kBlanks);
  }
  copy_.assign(text, end);
  return copy_.c_str();
}

void StoreText(char*& field, const char* text) {
  char* const copy = nStrdup(text);
  Free(field);
  field = copy;
}

bool ReadNamedText(const char* text, NamedText* definition) {
  Words<2> words(std::strlen(text));
  if (std::sscanf(text, "%s %[^;]", words[0], words[1]) != 2) return false;
  definition->name = words[0];
  definition->text = std::string(words[1]) + ";";
  return true;
}

int32_t Fault(const Net& net, const char* message) {
  net.error_func(message, 1);
  return 0;
}

const char* skip_white(const char* text) {
  return text + std::strspn(text, " \t");
}

}  // namespace siphons
