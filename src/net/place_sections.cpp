// Header sections (net type, description, announced counts) and place sections.
#include "net/place_sections.h"

#include <cctype>
#include <cstdio>
#include <cstring>

#include "net/lookups.h"
#include "net/memory.h"
#include "net/name_index.h"
#include "net/section_text.h"

namespace siphons {

namespace {

/// A table of the net, as an announcement sets it.
template <typename Record>
struct Table {
  int32_t& count;
  int32_t& slots;
  Record*& records;
  NameIndex* names;  ///< or null, where nothing looks the table's names up
};

/// Announces a table: a second announcement starts a new table, and arcs may still refer into the old one.
template <typename Record>
int32_t Announce(const Net& net, const char* text, int32_t lowest, const char* fault, Table<Record> table) {
  const int32_t announced = DecimalInteger(skip_white(text));
  if (announced < lowest) return Fault(net, fault);
  Abandon(table.records);
  table.records = NewTable<Record>(announced);
  table.count = table.slots = announced;
  if (table.names != nullptr) table.names->Clear();
  return 0;
}

}  // namespace

int32_t f_nettype(Net& net, const char* text, int32_t) {
  constexpr const char* kNames[] = {"GSPN", "DSPN", "EDSPN", "CDSPN"};
  text = skip_white(text);
  net.nettype = kDspn;  // also for any text that names no type
  for (int32_t type = kGspn; type <= kCdspn; ++type) {
    if (std::strcmp(text, kNames[type]) == 0) net.nettype = static_cast<NetType>(type);
  }
  return 0;
}

int32_t f_descr(Net& net, const char* text, int32_t) {
  StoreText(net.comment, skip_white(text));
  return 0;
}

int32_t f_nplaces(Net& net, const char* text, int32_t) {
  return Announce(net, text, 1, "Invalid number of places",
                  Table<NetPlace>{net.nplaces, net.place_slots, net.places, &net.names->places});
}

int32_t f_ntrans(Net& net, const char* text, int32_t) {
  return Announce(
      net, text, 1, "Invalid number of transitions",
      Table<NetTransition>{net.ntrans, net.transition_slots, net.transitions, &net.names->transitions});
}

int32_t f_ndelaypar(Net& net, const char* text, int32_t) {
  return Announce(net, text, 0, "Invalid number of delay parameters",
                  Table<DelayPar>{net.ndelaypars, net.delaypar_slots, net.delaypars, &net.names->delaypars});
}

int32_t f_nrewards(Net& net, const char* text, int32_t) {
  return Announce(net, text, 0, "Invalid number of reward measures",
                  Table<RewardMeasure>{net.nrewards, net.reward_slots, net.rewards, nullptr});
}

int32_t f_place(Net& net, const char* text, int32_t occurrence) {
  if (net.nplaces < 1) return Fault(net, "No PLACES announced");
  if (occurrence >= net.nplaces) return Fault(net, "Place-table overflow");
  text = skip_white(text);
  NetPlace& place = net.places[occurrence];
  Words<2> words(std::strlen(text));
  // Whatever is missing stays empty or 0.
  std::sscanf(text, "%s %s %lf %lf %lf %lf", words[0], words[1], &place.pos.x, &place.pos.y,
              &place.name_pos.x, &place.name_pos.y);
  StoreText(place.name, words[0]);
  net.names->places.Add(place.name, occurrence);
  const char* const marking = words[1];
  place.is_value = 1;
  if (std::isalpha(static_cast<unsigned char>(marking[0])) == 0) {
    place.marking = DecimalInteger(marking);
    return 0;
  }
  if (net.ndelaypars < 1) return Fault(net, "f_place: no definition parameters defined");
  place.marking_par = find_delaypar(net, marking);
  if (place.marking_par != nullptr) place.is_value = 0;
  return 0;
}

}  // namespace siphons
