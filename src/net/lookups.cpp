// Lookups by name, and the default error report.
#include <cstdio>
#include <cstring>

#include "base/process_end.h"
#include "net/load_net.h"

namespace siphons {

namespace {

template <typename Record>
Record* FindByName(Record* table, int32_t count, const char* name) {
  for (int32_t i = 0; i < count; ++i) {
    if (table[i].name != nullptr && std::strcmp(table[i].name, name) == 0) return &table[i];
  }
  return nullptr;
}

}  // namespace

NetPlace* find_place(const Net& net, const char* name) {
  NetPlace* const place = FindByName(net.places, net.nplaces, name);
  if (place != nullptr) return place;
  net.error_func("Place not found", 1);
  std::printf("problem with place %s\n", name);
  if (net.nplaces > 0) net.error_func("Place not found", 1);
  return nullptr;
}

NetTransition* find_trans(const Net& net, const char* name) {
  if (net.ntrans < 0) return nullptr;
  NetTransition* const t = FindByName(net.transitions, net.ntrans, name);
  if (t == nullptr) net.error_func("Transition not found", 1);
  return t;
}

DelayPar* find_delaypar(const Net& net, const char* name) {
  if (net.ndelaypars < 0) return nullptr;
  DelayPar* const parameter = FindByName(net.delaypars, net.ndelaypars, name);
  if (parameter == nullptr) net.error_func("Definition parameter not found", 1);
  return parameter;
}

const char* skip_white(const char* text) {
  return text + std::strspn(text, " \t");
}

int32_t DefaultError(const char* message, int32_t fatal) {
  if (fatal != 0) {
    std::fprintf(stderr, "Fatal: %s\n", message);
    EndProcess(fatal);
  }
  std::fprintf(stderr, "Warning: %s\n", message);
  return 0;
}

}  // namespace siphons
