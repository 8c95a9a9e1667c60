#include "net/default_error.h"

#include <cstdio>

#include "base/process_end.h"

namespace siphons {

int32_t DefaultError(const char* message, int32_t fatal) {
  if (fatal != 0) {
    std::fprintf(stderr, "Fatal: %s\n", message);
    EndProcess(fatal);
  }
  std::fprintf(stderr, "Warning: %s\n", message);
  return 0;
}

}  // namespace siphons
