// netkit siphons and netkit traps: the minimal ones, ordered by number of places and then by place numbers.
#include <algorithm>
#include <cstdio>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "netkit/commands/commands.h"
#include "netkit/commands/netkit_io.h"
#include "netkit/commands/run_control.h"
#include "netkit/siphons/minimal_siphons.h"
#include "structure/struct_IO.h"
#include "structure/struct_vars.h"

namespace siphons {

namespace {

/// The first place of the name.
std::optional<int32_t> PlaceOfName(const std::string& name) {
  for (int32_t p = 0; p < no_places; ++p) {
    if (name == places[p].name) return p;
  }
  return std::nullopt;
}

PlaceList UnmarkedPlaces() {
  PlaceList unmarked;
  for (int32_t p = 0; p < no_places; ++p) {
    if (places[p].init_mark <= 0) unmarked.push_back(p);
  }
  return unmarked;
}

std::string TextOf(const char* kind, const std::vector<PlaceList>& sets, const std::string& reason) {
  std::string text = std::string("No. of ") + kind + " = " + std::to_string(sets.size()) +
                     (reason.empty() ? "" : " (incomplete: " + reason + ")") + "\n";
  for (const PlaceList& set : sets) text += MarkingLine(set);
  return text;
}

std::string JsonText(const std::string& net, const char* kind, const std::vector<PlaceList>& sets,
                     bool complete, const std::string& reason) {
  Json list = Json::array();
  for (const PlaceList& set : sets) list.push_back(JsonOf(set));
  return LineOf({{"net", net},
                 {"counts", {{"places", no_places}, {"transitions", no_trans}, {kind, sets.size()}}},
                 {"complete", complete},
                 {"reason", ReasonOf(reason)},
                 {kind, std::move(list)}});
}

}  // namespace

int32_t ListMinimalSets(const EnumerationOptions& options) {
  const char* const kind = options.traps ? "traps" : "siphons";
  RunControl control(options.timeout, kind);
  read_net(NetPath(options.net).c_str());
  const ArcSets arcs = options.traps ? Reversed(ArcSetsOfTables()) : ArcSetsOfTables();
  SiphonQuery query{options.unmarked ? UnmarkedPlaces() : AllPlaces(arcs), {}};
  for (const std::string& name : options.containing) {
    const std::optional<int32_t> place = PlaceOfName(name);
    if (!place) {
      std::fprintf(stderr, "Unknown place %s\n", name.c_str());
      return kUsage;
    }
    query.containing.push_back(*place);
  }

  TryOutput(options.output);

  std::vector<PlaceList> sets;
  const auto take = [&](std::span<const int32_t> set) {
    if (options.max > 0 && static_cast<int64_t>(sets.size()) == options.max) {
      control.SetReason("maximum reached");  // only now it is certain that there are more
      return false;
    }
    sets.emplace_back(set.begin(), set.end());
    control.Count();
    return true;
  };
  const bool complete = ForEachMinimalSiphon(arcs, query, take, [&control] { return control.Stop(); });
  std::sort(sets.begin(), sets.end(), ShorterOrEarlier);
  control.EndProgress();
  WriteAnswer(options.output, options.json ? JsonText(options.net, kind, sets, complete, control.Reason())
                                           : TextOf(kind, sets, control.Reason()));
  return complete ? kComplete : kIncomplete;
}

}  // namespace siphons
