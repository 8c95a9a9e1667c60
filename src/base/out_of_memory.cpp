#include "base/out_of_memory.h"

#include <cinttypes>
#include <cstdio>

#include "base/exit_status.h"
#include "base/process_end.h"

namespace siphons {

void OutOfMemory(uint64_t bytes) {
  std::fprintf(stderr, "Unable to malloc %" PRIu64 " bytes\n", bytes);
  EndProcess(kOutOfMemory);
}

void OutOfMemory() {
  std::fputs("Unable to malloc more memory\n", stderr);
  EndProcess(kOutOfMemory);
}

}  // namespace siphons
