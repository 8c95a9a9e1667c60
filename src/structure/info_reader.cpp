#include "structure/info_reader.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "base/arithmetic.h"
#include "net/memory.h"
#include "structure/struct_vars.h"

namespace siphons {

int32_t InfoReader::Number() {
  NextWord();
  return WrapToInt32(std::strtol(word_.c_str(), nullptr, 10));
}

int32_t* InfoReader::PlaceSet() {
  static bool warned = false;
  Label();
  const int32_t count = Number();
  int32_t* const set = NewTable<int32_t>(no_places);
  for (int32_t i = 0; i < count; ++i) {
    const int32_t place = Number();
    if (place >= 0 && place < no_places) {
      set[place] = 1;
    } else {
      WarnOnce(&warned, "place", place, no_places);
    }
    if (Ended()) break;  // the count may be huge, and the rest repeats this place
  }
  return set;
}

void InfoReader::NextWord() {
  std::string word;
  if (stream_ >> word) word_ = std::move(word);
}

void WarnOnce(bool* warned, const char* what, int32_t number, int32_t count) {
  if (*warned) return;
  *warned = true;
  std::fprintf(stderr, "Warning: definition info names %s %d, the net has %d; ignored\n", what, number,
               count);
}

}  // namespace siphons
