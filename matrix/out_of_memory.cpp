#include "matrix/out_of_memory.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>

namespace siphons {

void OutOfMemory(uint64_t bytes) {
  std::fprintf(stderr, "Unable to malloc %" PRIu64 " bytes\n", bytes);
  std::exit(255);
}

}  // namespace siphons
