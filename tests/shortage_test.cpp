// What single tables tell when they find no memory, which a run meets by chance only. Each in a process of
// its own.
#include <sys/resource.h>

#include "matrix/matrix.h"
#include "net/memory.h"
#include "solver/uncalled.h"
#include "tests/messages.h"

namespace siphons {
namespace {

/// Runs in a process that gets no further page and whose allocator holds nothing any more.
Outcome WithoutMemory(const std::function<void()>& run) {
  return InChild([&run] {
    const rlimit none{1 << 20, RLIM_INFINITY};
    setrlimit(RLIMIT_AS, &none);
    for (size_t size = 1 << 20; size >= 16; size /= 2) {
      for (void* volatile block = std::malloc(size); block != nullptr;) block = std::malloc(size);
    }
    run();
  });
}

TEST(Shortage, IsTold) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer's shadow needs terabytes of addresses";
#endif
  Matrix* m = ZeroMatrix(2, 2);
  LLElement* last = nullptr;
  ExpectRowsOfThisTest({WithoutMemory([] { nStrdup("name"); }), WithoutMemory([&] {
                          if (ResizeRows(&m, 1000) != 2 || m->NbRows != 2) std::abort();
                        }),
                        WithoutMemory([&] {
                          if (CreateLLElement(&last) != 2 || last != nullptr) std::abort();
                        })});
  FreeMat(m);
}

}  // namespace
}  // namespace siphons
