#include "base/out_of_memory.h"

#include <cinttypes>
#include <cstdio>

#include "base/process_end.h"

namespace siphons {

namespace {

constexpr int32_t kStatus = 255;

}  // namespace

void OutOfMemory(uint64_t bytes) {
  std::fprintf(stderr, "Unable to malloc %" PRIu64 " bytes\n", bytes);
  EndProcess(kStatus);
}

void OutOfMemory() {
  std::fputs("Unable to malloc more memory\n", stderr);
  EndProcess(kStatus);
}

}  // namespace siphons
