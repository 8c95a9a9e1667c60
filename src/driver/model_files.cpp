#include "driver/model_files.h"

#include <array>
#include <cstdio>
#include <cstdlib>

#include "base/bounded_text.h"
#include "base/exit_status.h"
#include "base/fetch_path.h"
#include "base/input_file.h"
#include "base/process_end.h"
#include "structure/definition_info.h"
#include "structure/struct_vars.h"

namespace siphons {

namespace {

void FormInfoPath(std::span<char, kPathBuffer> path, const char* netPath) {
  FormatBounded(path, "%s.DEFINFO", netPath);
  fetch_path(path.data());
}

[[noreturn]] void TellUnreadableInfo(const char* path) {
  std::printf("ERROR: could not open %s for reading\n", path);
  EndProcess(kFailure);
}

}  // namespace

void FindModelDirectory() {
  modeldir = std::getenv("MODELDIR");
  if (modeldir != nullptr) return;
  std::fputs("'MODELDIR' not set\n", stderr);
  EndProcess(kFailure);
}

void FormNetPath(std::span<char, kPathBuffer> path, const char* net) {
  FormatBounded(path, "%s/%s", modeldir, net);
  fetch_path(path.data());
  FormatBounded(model_name, "%s", net);
}

void OpenDefinitionInfo(const char* netPath) {
  std::array<char, kPathBuffer> path;
  FormInfoPath(path, netPath);
  OpenInput(inf_file, path.data());
  if (!inf_file.is_open()) TellUnreadableInfo(path.data());
}

void ReadDefinitionInfo(const char* netPath) {
  try {
    read_info(inf_file);
  } catch (const std::ios_base::failure&) {
    std::array<char, kPathBuffer> path;
    FormInfoPath(path, netPath);
    TellUnreadableInfo(path.data());
  }
}

}  // namespace siphons
