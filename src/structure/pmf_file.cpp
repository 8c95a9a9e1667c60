#include "structure/pmf_file.h"

#include <array>
#include <cstdio>

#include "base/bounded_text.h"
#include "base/exit_status.h"
#include "base/output_file.h"
#include "base/process_end.h"

namespace siphons {

void generate_pmf(const char* path, const Net& net) {
  std::array<char, 256> name;
  FormatBounded(name, "%s.pmf", path);
  const auto write = [&net](std::FILE* file) {
    for (int32_t t = 0; t < net.ntrans; ++t) {
      const NetTransition& transition = net.transitions[t];
      if (transition.type != kGeneral) continue;
      std::fprintf(file, "TRANSITION %s\n%s\n\n", TextOrEmpty(transition.name),
                   TextOrEmpty(transition.delay.text));
    }
  };
  if (!WriteWholeFile(name.data(), write)) {
    std::printf("ERROR: unable to create file '%s'\n", name.data());
    EndProcess(kFailure);
  }
}

}  // namespace siphons
