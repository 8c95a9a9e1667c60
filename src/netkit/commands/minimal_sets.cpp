// netkit siphons and netkit traps: the minimal ones, ordered by number of places and then by place numbers.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "netkit/commands/commands.h"
#include "netkit/commands/question.h"
#include "netkit/formats/near_names.h"
#include "netkit/siphons/minimal_siphons.h"

namespace siphons {

namespace {

struct EnumerationOptions : QuestionOptions {
  std::vector<std::string> containing;  ///< place names
  bool unmarked = false;
  bool traps = false;
  int64_t max = 0;  ///< 0: all
};

/// The number of the place; throws WrongUsage when the net has none of this name.
int32_t PlaceOfName(const PetriNet& net, const std::string& name) {
  std::vector<std::string_view> names;
  for (const Place& place : net.places) names.push_back(place.name);
  const auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) throw WrongUsage{"Unknown place " + name + DidYouMean(name, names)};
  return static_cast<int32_t>(found - names.begin());
}

PlaceList UnmarkedPlaces(const PetriNet& net) {
  PlaceList unmarked;
  for (size_t p = 0; p < net.places.size(); ++p) {
    if (net.places[p].tokens == 0) unmarked.push_back(static_cast<int32_t>(p));
  }
  return unmarked;
}

std::string TextOf(const PetriNet& net, const char* kind, const std::vector<PlaceList>& sets,
                   const std::string& reason) {
  std::string text = std::string("No. of ") + kind + " = " + std::to_string(sets.size()) +
                     (reason.empty() ? "" : " (incomplete: " + reason + ")") + "\n";
  for (const PlaceList& set : sets) text += MarkingLine(net, set);
  return text;
}

Json JsonAnswer(const PetriNet& net, const char* kind, const std::vector<PlaceList>& sets, bool complete,
                const std::string& reason) {
  Json list = Json::array();
  for (const PlaceList& set : sets) list.push_back(JsonOf(net, set));
  return {{"counts",
           {{"places", net.places.size()}, {"transitions", net.transitions.size()}, {kind, sets.size()}}},
          {"complete", complete},
          {"reason", ReasonOf(reason)},
          {kind, std::move(list)}};
}

Answer AnswerAbout(const PetriNet& net, const EnumerationOptions& options, RunControl& control) {
  const char* const kind = options.traps ? "traps" : "siphons";
  const ArcSets arcs = options.traps ? Reversed(ArcSetsOf(net)) : ArcSetsOf(net);
  SiphonQuery query{options.unmarked ? UnmarkedPlaces(net) : AllPlaces(arcs), {}};
  for (const std::string& name : options.containing) query.containing.push_back(PlaceOfName(net, name));

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
  const std::string& reason = control.Reason();
  return {options.json ? "" : TextOf(net, kind, sets, reason),
          options.json ? JsonAnswer(net, kind, sets, complete, reason) : Json(),
          complete ? kComplete : kIncomplete};
}

}  // namespace

void AddMinimalSets(CLI::App& app, bool traps, int32_t& status) {
  const auto options = std::make_shared<EnumerationOptions>();
  options->traps = traps;
  CLI::App* const command =
      AddLongQuestion(app, traps ? "traps" : "siphons",
                      traps ? "List all minimal traps" : "List all minimal siphons", *options);
  command->add_flag("--unmarked", options->unmarked, "only those whose places are all unmarked initially");
  command->add_option("--containing", options->containing, "only those that contain PLACE; may be repeated")
      ->type_name("PLACE")
      ->allow_extra_args(false);
  command->add_option("--max", options->max, "stop after N")->check(FaultOfCount)->type_name("N");
  command->footer(
      "Exit status: 0 complete, 1 a net cannot be read or an answer not be written, 2 wrong usage, "
      "3 stopped at a limit or interrupted (what was found is written then, too), 255 out of memory.");
  command->callback([options, &status] {
    status = AnswerEach(
        *options, options->traps ? "traps" : "siphons",
        [&options](const PetriNet& net, RunControl& control) { return AnswerAbout(net, *options, control); });
  });
}

}  // namespace siphons
