#include "matrix/out_of_memory.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>

namespace siphons {

namespace {

constexpr int kStatus = 255;

}  // namespace

void OutOfMemory(uint64_t bytes) {
  std::fprintf(stderr, "Unable to malloc %" PRIu64 " bytes\n", bytes);
  std::exit(kStatus);
}

void OutOfMemory() {
  std::fputs("Unable to malloc more memory\n", stderr);
  std::exit(kStatus);
}

}  // namespace siphons
