#include <new>

#include "driver/siphondisplay.h"
#include "matrix/out_of_memory.h"

int main(int argc, char** argv) {
  try {
    return siphons::RunSiphons(argc, argv);
  } catch (const std::bad_alloc&) {
    siphons::OutOfMemory();
  }
}
