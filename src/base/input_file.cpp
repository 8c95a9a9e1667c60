#include "base/input_file.h"

#include <cerrno>

#include "base/out_of_memory.h"

namespace siphons {

void OpenInput(std::ifstream& file, const char* path) {
  errno = 0;
  file.open(path);
  if (file.is_open()) {
    file.exceptions(std::ios::badbit);
  } else if (errno == ENOMEM) {
    OutOfMemory();
  }
}

}  // namespace siphons
