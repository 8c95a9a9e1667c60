#include <cstdlib>
#include <new>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "base/out_of_memory.h"
#include "base/output_file.h"
#include "driver/siphondisplay.h"

namespace {

/// Makes the allocator keep freed memory. The solver gives up and asks for the same megabytes at every
/// constraint; handing them back to the system in between costs a fifth of a long run.
void KeepFreedMemory() {
#ifdef __GLIBC__
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  mallopt(M_MMAP_THRESHOLD, 1 << 25);
#endif
}

}  // namespace

int main(int argc, char** argv) {
  KeepFreedMemory();
  siphons::IgnoreFileSizeSignal();
  try {
    return siphons::RunSiphons(argc, argv);
  } catch (const std::bad_alloc&) {
    siphons::OutOfMemory();
  }
}
