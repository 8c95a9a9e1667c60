#include "netkit/commands/answers.h"

#include <array>
#include <cinttypes>
#include <cstdio>
#include <string_view>
#include <utility>

#include "base/exit_status.h"
#include "base/output_file.h"
#include "base/process_end.h"

namespace siphons {

namespace {

[[noreturn]] void TellUnwritable(const std::string& file) {
  std::fprintf(stderr, "ERROR: could not open %s for writing\n",
               file.empty() ? "standard output" : file.c_str());
  EndProcess(kFailure);
}

}  // namespace

int64_t TokensOf(const PetriNet& net, const PlaceList& set) {
  int64_t tokens = 0;
  for (const int32_t p : set) tokens += net.places[static_cast<size_t>(p)].tokens;
  return tokens;
}

std::string MarkingLine(const PetriNet& net, const PlaceList& set) {
  std::array<char, 32> tokens;
  std::snprintf(tokens.data(), tokens.size(), "MARKING: %4" PRId64 " { ", TokensOf(net, set));
  const std::string_view head = tokens.data(), end = "}\n";
  size_t length = head.size() + end.size();
  for (const int32_t p : set) length += net.places[static_cast<size_t>(p)].name.size() + 1;
  std::string line;
  line.reserve(length);
  line += head;
  for (const int32_t p : set) (line += net.places[static_cast<size_t>(p)].name) += ' ';
  line += end;
  return line;
}

Json JsonOf(const PetriNet& net, const PlaceList& set) {
  Json names = Json::array(), ids = Json::array();
  for (const int32_t p : set) {
    names.push_back(net.places[static_cast<size_t>(p)].name);
    ids.push_back(net.places[static_cast<size_t>(p)].id);
  }
  Json json = {{"places", std::move(names)}};
  if (!net.places.empty() && !net.places[0].id.empty()) json["ids"] = std::move(ids);
  json["tokens"] = TokensOf(net, set);
  return json;
}

Json JsonOf(const Diagnostics& diagnostics) {
  Json list = Json::array();
  for (const Diagnostic& diagnostic : diagnostics.Sorted()) {
    const bool placed = diagnostic.where.line > 0;
    list.push_back({{"file", diagnostics.File()},
                    {"line", placed ? Json(diagnostic.where.line) : Json()},
                    {"column", placed ? Json(diagnostic.where.column) : Json()},
                    {"severity", diagnostic.isError ? "error" : "warning"},
                    {"message", diagnostic.message}});
  }
  return list;
}

Json ReasonOf(const std::string& reason) {
  return reason.empty() ? Json() : Json(reason);
}

std::string JsonLine(const Json& json) {
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
