// Messages that the programs cannot give, or only by chance: those of operations for other callers, and those
// of single tables that find no memory. Each comes from a process of its own.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include "net/load_net.h"
#include "net/memory.h"
#include "solver/inequalities.h"
#include "solver/lists.h"
#include "solver/sharedVars.h"
#include "structure/sparse.h"
#include "tests/messages.h"
#include "tests/rows.h"

namespace siphons {
namespace {

Outcome InChild(const std::function<void()>& run) {
  const TemporaryDirectory streams;
  const fs::path out = streams.path() / "out", err = streams.path() / "err";
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    if (std::freopen(out.c_str(), "w", stdout) == nullptr ||
        std::freopen(err.c_str(), "w", stderr) == nullptr) {
      _exit(99);
    }
    run();
    std::fflush(nullptr);
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return {ReadFile(out).value_or(""), ReadFile(err).value_or(""),
          WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status)};
}

/// Lets no further page be had and uses up what the allocator still holds.
void UseUpMemory() {
  const rlimit none{1 << 20, RLIM_INFINITY};
  setrlimit(RLIMIT_AS, &none);
  for (size_t size = 1 << 20; size >= 16; size /= 2) {
    while (std::malloc(size) != nullptr) {
    }
  }
}

TEST(LibraryMessages, NoMemory) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer's shadow needs terabytes of addresses";
#endif
  ExpectRowsOfThisTest({InChild([] {
                          void* const block = nMalloc(8);
                          UseUpMemory();
                          nRealloc(block, 1 << 30);
                        }),
                        InChild([] {
                          UseUpMemory();
                          nStrdup("name");
                        }),
                        InChild([] {
                          Matrix* m = ZeroMatrix(2, 2);
                          UseUpMemory();
                          ResizeRows(&m, 1000);
                        }),
                        InChild([] {
                          LLElement* last = nullptr;
                          UseUpMemory();
                          CreateLLElement(&last);
                        })});
}

/// |x| + |y| + |z| <= t.
Matrix* Octahedron() {
  Rows rows;
  for (int32_t signs = 0; signs < 8; ++signs) {
    const auto sign = [signs](int32_t bit) { return (signs >> bit & 1) != 0 ? 1 : -1; };
    rows.push_back({1, sign(0), sign(1), sign(2), 1, 0});
  }
  return MatrixOf(rows).release();
}

TEST(LibraryMessages, OfOperationsForOtherCallers) {
  const TemporaryDirectory model;
  const std::string net = (model.path() / "net").string();
  WriteFile(net + ".PD",
            "PLACES: 1\nPLACE a\nTRANSITIONS: 1\nDEFINITION_PARAMETERS: 0\nREWARD_MEASURES: 0\n"
            "TRANSITION t <MD> IS EXP RS 0 0 1 2 3 4 5 6 INPARCS 0 OUTPARCS 0 INHARCS 0\nEXP_DELAY t 1;\n");
  const ErrorFunc ignore = [](const char*, int32_t) { return 0; };
  const sp_entry marked{0, 1, 1, 0, nullptr};
  ExpectRowsOfThisTest({InChild([] {
                          unsetenv("MODELDIR");
                          load_net("no/net", nullptr, false);
                        }),
                        InChild([&] { load_net(net.c_str(), nullptr, true); }),
                        InChild([&] { find_place(*load_net(net.c_str(), ignore, false), "b"); }),
                        InChild([&] {
                          sp_entry difference{};
                          minus(&marked, &marked, &difference);
                        }),
                        InChild([] {
                          adjcounter = 499999;
                          Matrix* rays = nullptr;
                          SolveInequationSystem(&rays, Octahedron(), 1000);
                        }),
                        InChild([] { SIZEOFMATI(nullptr); }), InChild([] { SIZEOFMATI(ZeroMatrix(3, 5)); })});
}

}  // namespace
}  // namespace siphons
