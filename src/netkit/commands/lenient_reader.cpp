#include "netkit/commands/lenient_reader.h"

#include <algorithm>
#include <memory>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "base/arithmetic.h"
#include "net/load_net.h"

namespace siphons {

namespace {

/// The loader's texts end with ';', those of the net do not.
std::string TextOf(const char* text) {
  std::string_view whole = text == nullptr ? "" : text;
  if (whole.ends_with(';')) whole.remove_suffix(1);
  return std::string(whole);
}

std::string NameOf(const char* name) {
  return name == nullptr ? "" : name;
}

class Converter {
 public:
  Converter(const Net& loaded, Diagnostics& diagnostics) : loaded_(loaded), diagnostics_(diagnostics) {}

  PetriNet Convert() {
    net_.type = static_cast<NetClass>(loaded_.nettype);
    net_.description = NameOf(loaded_.comment);
    for (int32_t i = 0; i < loaded_.ndelaypars; ++i) AddParameter(loaded_.delaypars[i]);
    for (int32_t p = 0; p < loaded_.nplaces; ++p) AddPlace(loaded_.places[p]);
    for (int32_t t = 0; t < loaded_.ntrans; ++t) AddTransition(loaded_.transitions[t]);
    for (int32_t i = 0; i < loaded_.nrewards; ++i) {
      net_.measures.push_back({NameOf(loaded_.rewards[i].name), TextOf(loaded_.rewards[i].def), {}});
    }
    return std::move(net_);
  }

 private:
  void Error(const std::string& message) { diagnostics_.Error({}, message); }

  void AddParameter(const DelayPar& parameter) {
    Parameter& added = net_.parameters.emplace_back();
    added.name = NameOf(parameter.name);
    added.value = parameter.value;
    if (parameter.is_value == 0) added.text = TextOf(parameter.text);
    added.position = Point{parameter.pos.x, parameter.pos.y};
  }

  void AddPlace(const NetPlace& place) {
    Place& added = net_.places.emplace_back();
    added.name = NameOf(place.name);
    if (place.is_value != 0) {
      added.tokens = place.marking;
    } else {
      added.tokens = TruncateToInt32(place.marking_par->value);
      added.markingParameter = NameOf(place.marking_par->name);
    }
    if (added.tokens < 0)
      Error("the place " + Quoted(added.name) + " has a negative number of tokens; correct it");
    if (!names_.try_emplace(added.name, 0).second)
      Error("the name " + Quoted(added.name) + " is used twice; rename one of the two");
    added.position = Point{place.pos.x, place.pos.y};
    added.labelPosition = Point{place.name_pos.x, place.name_pos.y};
  }

  void AddTransition(const NetTransition& transition) {
    Transition& added = net_.transitions.emplace_back();
    added.name = NameOf(transition.name);
    if (!names_.try_emplace(added.name, 0).second)
      Error("the name " + Quoted(added.name) + " is used twice; rename one of the two");
    added.kind = static_cast<TransitionKind>(transition.type);
    added.priority = transition.priority;
    added.delay.kind = static_cast<TransitionDelay::Kind>(transition.delay_type);
    added.delay.value = transition.delay.value;
    added.delay.text = transition.delay_type == kDelayParameter ? NameOf(transition.delay.parameter->name)
                                                                : TextOf(transition.delay.text);
    added.infiniteServer = transition.inf_server != 0;
    added.policy = static_cast<MemoryPolicy>(transition.f_policy);
    if (transition.md_enable != nullptr) added.enablingFunction = TextOf(transition.md_enable);
    AddArcs({transition.inarcs, static_cast<size_t>(transition.ninarcs)}, false, added.name, added.inputs);
    AddArcs({transition.outarcs, static_cast<size_t>(transition.noutarcs)}, false, added.name, added.outputs);
    AddArcs({transition.inharcs, static_cast<size_t>(transition.ninharcs)}, true, added.name,
            added.inhibitors);
    added.orientation = static_cast<Orientation>(std::clamp(transition.orient, 0, 3));
    added.position = Point{transition.pos.x, transition.pos.y};
    added.labelPosition = Point{transition.name_pos.x, transition.name_pos.y};
    added.delayPosition = Point{transition.delay_pos.x, transition.delay_pos.y};
  }

  void AddArcs(std::span<const NetArc> arcs, bool inhibitors, const std::string& transition,
               std::vector<Arc>& added) {
    std::unordered_map<int32_t, size_t> arcOfPlace;
    for (const NetArc& source : arcs) {
      const auto place = static_cast<int32_t>(source.place - loaded_.places);
      if (place < 0 || place >= loaded_.nplaces) {
        Error("an arc of " + Quoted(transition) +
              " leads to a place that was announced anew; announce the places once");
        continue;
      }
      if (source.is_value != 0 && source.multiplicity == 0) continue;
      if (source.is_value != 0 && source.multiplicity < 0) {
        Error("an arc of " + Quoted(transition) + " has a negative multiplicity; correct it");
        continue;
      }
      const auto [at, isNew] = arcOfPlace.try_emplace(place, added.size());
      if (isNew) {
        Arc& arc = added.emplace_back();
        arc.place = place;
        arc.markingDependent = source.is_value == 0;
        arc.weight = arc.markingDependent ? 1 : source.multiplicity;
        arc.weightText = TextOf(source.md_mult);
        for (int32_t i = 0; i < source.npoints; ++i)
          arc.path.push_back({source.point[i].x, source.point[i].y});
      } else if (inhibitors && source.is_value != 0) {
        added[at->second].weight = std::min<int64_t>(added[at->second].weight, source.multiplicity);
      } else if (source.is_value == 0 || added[at->second].markingDependent) {
        added[at->second].markingDependent = true;
      } else {
        added[at->second].weight += source.multiplicity;
      }
    }
  }

  const Net& loaded_;
  Diagnostics& diagnostics_;
  PetriNet net_;
  std::unordered_map<std::string, int> names_;
};

}  // namespace

int32_t ReportLoaderFault(const char* message, int32_t fatal) {
  const std::string_view text = message;
  const bool usual = text.starts_with("-1 ") || text.starts_with("I'm error_func");
  return usual && fatal == 0 ? 0 : DefaultError(message, fatal);
}

std::optional<PetriNet> ReadLeniently(const std::string& path, Diagnostics& diagnostics) {
  const std::unique_ptr<Net, void (*)(Net*)> loaded(
      load_net(path.empty() ? nullptr : path.c_str(), ReportLoaderFault, false), free_net);
  if (loaded == nullptr) {
    diagnostics.Error({}, "the report program's loader has no net; read it without --lenient to see why");
    return std::nullopt;
  }
  PetriNet net = Converter(*loaded, diagnostics).Convert();
  if (diagnostics.HasErrors()) return std::nullopt;
  return net;
}

}  // namespace siphons
