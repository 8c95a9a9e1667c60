#include "driver/model_files.h"

#include <array>
#include <cstdio>
#include <cstdlib>

#include "driver/fetch_path.h"
#include "matrix/process_end.h"
#include "net/bounded_text.h"
#include "structure/struct_vars.h"

namespace siphons {

void FindModelDirectory() {
  modeldir = std::getenv("MODELDIR");
  if (modeldir != nullptr) return;
  std::fputs("'MODELDIR' not set\n", stderr);
  EndProcess(1);
}

void FormNetPath(std::span<char, kPathBuffer> path, const char* net) {
  FormatBounded(path, "%s/%s", modeldir, net);
  fetch_path(path.data());
  FormatBounded(model_name, "%s", net);
}

void OpenDefinitionInfo(const char* netPath) {
  std::array<char, kPathBuffer> path;
  FormatBounded(path, "%s.DEFINFO", netPath);
  fetch_path(path.data());
  inf_file.open(path.data());
  if (inf_file.is_open()) return;
  std::printf("ERROR: could not open %s for reading\n", path.data());
  EndProcess(1);
}

}  // namespace siphons
