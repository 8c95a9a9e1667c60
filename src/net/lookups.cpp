// Lookups take constant time by the index of names that the handlers keep. Slots are shrunk away when loading
// ends (load_net.cpp) without leaving the index, so the slot found is held against the count.
#include "net/lookups.h"

#include <cstdio>

#include "net/name_index.h"

namespace siphons {

namespace {

template <typename Record>
Record* FindByName(Record* table, int32_t count, const NameIndex& names, const char* name) {
  const int32_t slot = names.Find(name);
  return slot != NameIndex::kNone && slot < count ? &table[slot] : nullptr;
}

}  // namespace

NetPlace* find_place(const Net& net, const char* name) {
  NetPlace* const place = FindByName(net.places, net.nplaces, net.names->places, name);
  if (place != nullptr) return place;
  net.error_func("Place not found", 1);
  std::printf("problem with place %s\n", name);
  if (net.nplaces > 0) net.error_func("Place not found", 1);
  return nullptr;
}

NetTransition* find_trans(const Net& net, const char* name) {
  if (net.ntrans < 0) return nullptr;
  NetTransition* const t = FindByName(net.transitions, net.ntrans, net.names->transitions, name);
  if (t == nullptr) net.error_func("Transition not found", 1);
  return t;
}

DelayPar* find_delaypar(const Net& net, const char* name) {
  if (net.ndelaypars < 0) return nullptr;
  DelayPar* const parameter = FindByName(net.delaypars, net.ndelaypars, net.names->delaypars, name);
  if (parameter == nullptr) net.error_func("Definition parameter not found", 1);
  return parameter;
}

}  // namespace siphons
