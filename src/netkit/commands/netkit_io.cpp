#include "netkit/commands/netkit_io.h"

#include <array>
#include <cinttypes>
#include <cstdio>

#include "base/output_file.h"
#include "base/process_end.h"
#include "driver/model_files.h"
#include "netkit/commands/commands.h"
#include "structure/struct_vars.h"

namespace siphons {

namespace {

[[noreturn]] void TellUnwritable(const std::string& file) {
  std::fprintf(stderr, "ERROR: could not open %s for writing\n",
               file.empty() ? "standard output" : file.c_str());
  EndProcess(kFailure);
}

}  // namespace

std::string NetPath(const std::string& net) {
  FindModelDirectory();
  std::array<char, kPathBuffer> path;
  FormNetPath(path, net.c_str());
  return path.data();
}

int64_t TokensOf(const PlaceList& set) {
  int64_t tokens = 0;
  for (const int32_t p : set) tokens += places[p].init_mark;
  return tokens;
}

std::string MarkingLine(const PlaceList& set) {
  std::array<char, 32> tokens;
  std::snprintf(tokens.data(), tokens.size(), "MARKING: %4" PRId64 " { ", TokensOf(set));
  std::string line = tokens.data();
  for (const int32_t p : set) line.append(places[p].name).append(" ");
  return line + "}\n";
}

bool ShorterOrEarlier(const PlaceList& a, const PlaceList& b) {
  return a.size() != b.size() ? a.size() < b.size() : a < b;
}

Json JsonOf(const PlaceList& set) {
  Json names = Json::array();
  for (const int32_t p : set) names.push_back(places[p].name);
  return {{"places", std::move(names)}, {"tokens", TokensOf(set)}};
}

Json ReasonOf(const std::string& reason) {
  return reason.empty() ? Json() : Json(reason);
}

std::string LineOf(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

void TryOutput(const std::string& file) {
  if (file.empty()) return;
  std::FILE* const stream = std::fopen(file.c_str(), "a");
  if (stream == nullptr) TellUnwritable(file);
  std::fclose(stream);
}

void WriteAnswer(const std::string& file, const std::function<void(std::FILE*)>& write) {
  if (file.empty()) {
    write(stdout);
  } else if (!WriteWholeFile(file.c_str(), write)) {
    TellUnwritable(file);
  }
  if (!Written(stdout)) TellUnwritable("");
}

void WriteAnswer(const std::string& file, const std::string& text) {
  WriteAnswer(file, [&text](std::FILE* stream) { std::fwrite(text.data(), 1, text.size(), stream); });
}

}  // namespace siphons
