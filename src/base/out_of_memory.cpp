#include "base/out_of_memory.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <limits>

#include "base/exit_status.h"
#include "base/process_end.h"

namespace siphons {

void OutOfMemory(uint64_t bytes) {
  constexpr uint64_t kGreatest = std::numeric_limits<uint32_t>::max();
  std::fprintf(stderr, "Unable to malloc %" PRIu32 " bytes\n",
               static_cast<uint32_t>(std::min(bytes, kGreatest)));
  EndProcess(kOutOfMemory);
}

void OutOfMemory() {
  std::fputs("Unable to malloc more memory\n", stderr);
  EndProcess(kOutOfMemory);
}

}  // namespace siphons
