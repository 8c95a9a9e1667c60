#include "netkit/formats/pnml_writer.h"

#include <algorithm>
#include <cmath>
#include <pugixml.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "netkit/formats/plain_numbers.h"
#include "netkit/formats/pnml_builder.h"
#include "netkit/formats/tool_words.h"
#include "netkit/model/net_class.h"

namespace siphons {

namespace {

void Set(pugi::xml_node element, const char* name, std::string_view value) {
  element.append_attribute(name).set_value(std::string(value).c_str());
}

void AddPoint(pugi::xml_node element, const char* name, Point point) {
  pugi::xml_node child = element.append_child(name);
  Set(child, "x", RealText(point.x));
  Set(child, "y", RealText(point.y));
}

void AddText(pugi::xml_node element, const char* name, const std::string& text) {
  element.append_child(name).append_child("text").text().set(text.c_str());
}

pugi::xml_node AddToolData(pugi::xml_node element) {
  pugi::xml_node data = element.append_child("toolspecific");
  Set(data, "tool", kToolName);
  Set(data, "version", "1");
  return data;
}

/// Rounded to millionths, as the reader rounds the sum.
double Difference(double a, double b) {
  constexpr double kMillion = 1e6, kLarge = 1e9;
  return std::abs(a - b) < kLarge ? std::round((a - b) * kMillion) / kMillion : a - b;
}

bool IsOrigin(const std::optional<Point>& point) {
  return point && point->x == 0 && point->y == 0 && !std::signbit(point->x) && !std::signbit(point->y);
}

/// Generated .PD files put everything at the origin. Without that, a large file is a third shorter, and a
/// program that lays nets out does so.
bool IsAllAtOrigin(const PetriNet& net) {
  const auto isAtOrigin = [](const auto& node) {
    return IsOrigin(node.position) && IsOrigin(node.labelPosition);
  };
  return std::all_of(net.places.begin(), net.places.end(), isAtOrigin) &&
         std::all_of(net.transitions.begin(), net.transitions.end(), [&](const Transition& transition) {
           return isAtOrigin(transition) && IsOrigin(transition.delayPosition);
         });
}

/// Name and, with `placed`, label and position, as places and transitions have them.
template <typename Item>
void AddNode(pugi::xml_node element, const Item& item, bool placed) {
  pugi::xml_node name = element.append_child("name");
  name.append_child("text").text().set(item.name.c_str());
  if (!placed) return;
  if (item.position && item.labelPosition) {
    AddPoint(name.append_child("graphics"), "offset",
             {Difference(item.labelPosition->x, item.position->x),
              Difference(item.labelPosition->y, item.position->y)});
  }
  if (item.position) AddPoint(element.append_child("graphics"), "position", *item.position);
}

/// The id of a node: that of the file that it was read from, if all nodes have one; else one that is hardly a
/// name, because a label that is another node's id would not be read as a name.
std::string IdOf(bool keepsIds, const std::string& id, char kind, size_t number) {
  return keepsIds ? id : std::string("id-") + kind + std::to_string(number + 1);
}

class Writer {
 public:
  explicit Writer(const PetriNet& net) : net_(net), isAllAtOrigin_(IsAllAtOrigin(net)) {
    const auto hasId = [](const auto& item) { return !item.id.empty(); };
    keepsIds_ = std::all_of(net.places.begin(), net.places.end(), hasId) &&
                std::all_of(net.transitions.begin(), net.transitions.end(), hasId);
  }

  std::string Write() {
    pugi::xml_document document;
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    Set(declaration, "version", "1.0");
    Set(declaration, "encoding", "UTF-8");
    pugi::xml_node root = document.append_child("pnml");
    Set(root, "xmlns", "http://www.pnml.org/version-2009/grammar/pnml");
    pugi::xml_node net = root.append_child("net");
    Set(net, "id", "net");
    Set(net, "type", "http://www.pnml.org/version-2009/grammar/ptnet");
    AddText(net, "name", net_.name);
    page_ = net.append_child("page");
    Set(page_, "id", "page");
    for (size_t p = 0; p < net_.places.size(); ++p) AddPlace(p);
    for (size_t t = 0; t < net_.transitions.size(); ++t) AddTransition(t);
    for (size_t t = 0; t < net_.transitions.size(); ++t) AddArcs(t);
    AddNetData(net);
    std::ostringstream text;
    document.save(text, "  ");
    return text.str();
  }

 private:
  void AddPlace(size_t p) {
    const Place& place = net_.places[p];
    pugi::xml_node element = page_.append_child("place");
    Set(element, "id", IdOf(keepsIds_, place.id, 'p', p));
    AddNode(element, place, !isAllAtOrigin_);
    if (place.tokens > 0) AddText(element, "initialMarking", std::to_string(place.tokens));
    if (!place.markingParameter.empty()) Set(AddToolData(element), "parameter", place.markingParameter);
  }

  void AddTransition(size_t t) {
    const Transition& transition = net_.transitions[t];
    pugi::xml_node element = page_.append_child("transition");
    Set(element, "id", IdOf(keepsIds_, transition.id, 't', t));
    AddNode(element, transition, !isAllAtOrigin_);
    // Most transitions of most nets are standard ones, which a block each would make half of a large file.
    const Transition standard;
    pugi::xml_node data;
    const auto set = [&](const char* name, std::string_view value, bool isStandard = false) {
      if (isStandard) return;
      if (!data) data = AddToolData(element);
      Set(data, name, value);
    };
    set("kind", WordOf(kKindWords, transition.kind), transition.kind == standard.kind);
    set("priority", std::to_string(transition.priority), transition.priority == standard.priority);
    set("server", kServerWords[1], !transition.infiniteServer);
    set("policy", WordOf(kPolicyWords, transition.policy), transition.policy == standard.policy);
    set("orientation", std::to_string(static_cast<int>(transition.orientation)),
        transition.orientation == standard.orientation);
    const TransitionDelay& delay = transition.delay;
    const bool isNumber = delay.kind == TransitionDelay::Kind::kNumber;
    set("delayKind", WordOf(kDelayWords, delay.kind), isNumber);
    set("delay", isNumber ? RealText(delay.value) : delay.text,
        isNumber && delay.value == standard.delay.value);
    if (transition.enablingFunction) set("function", *transition.enablingFunction);
    if (transition.auxiliary) {
      set("auxiliaryCount", std::to_string(transition.auxiliary->count));
      set("auxiliaryFlag", std::to_string(transition.auxiliary->flag));
      set("auxiliaryValue", RealText(transition.auxiliary->value));
    }
    if (transition.delayPosition && !isAllAtOrigin_) {
      set("delayX", RealText(transition.delayPosition->x));
      set("delayY", RealText(transition.delayPosition->y));
    }
  }

  void AddArcs(size_t t) {
    const Transition& transition = net_.transitions[t];
    const std::string id = IdOf(keepsIds_, transition.id, 't', t);
    for (const std::vector<Arc>* arcs : {&transition.inputs, &transition.outputs, &transition.inhibitors}) {
      for (const Arc& arc : *arcs) {
        const auto p = static_cast<size_t>(arc.place);
        const std::string place = IdOf(keepsIds_, net_.places[p].id, 'p', p);
        const bool isOutput = arcs == &transition.outputs;
        pugi::xml_node element = page_.append_child("arc");
        Set(element, "id", NewArcId());
        Set(element, "source", isOutput ? id : place);
        Set(element, "target", isOutput ? place : id);
        if (arcs == &transition.inhibitors) Set(element, "type", "inhibitor");
        if (arc.weight != 1) AddText(element, "inscription", std::to_string(arc.weight));
        if (!arc.path.empty()) {
          pugi::xml_node graphics = element.append_child("graphics");
          for (const Point& point : arc.path) AddPoint(graphics, "position", point);
        }
        if (arc.markingDependent) Set(AddToolData(element), "weight", arc.weightText);
      }
    }
  }

  std::string NewArcId() { return (keepsIds_ ? "netkit-arc" : "a") + std::to_string(++arcs_); }

  void AddNetData(pugi::xml_node net) const {
    pugi::xml_node data = AddToolData(net);
    Set(data, "type", WordOf(kTypeWords, net_.type));
    if (isAllAtOrigin_) Set(data, "positions", kAllAtOrigin);
    if (!net_.description.empty()) data.append_child("description").text().set(net_.description.c_str());
    for (const Parameter& parameter : net_.parameters) {
      pugi::xml_node child = data.append_child("parameter");
      Set(child, "name", parameter.name);
      if (parameter.text) {
        Set(child, "text", *parameter.text);
      } else {
        Set(child, "value", RealText(parameter.value));
      }
      if (parameter.position) {
        Set(child, "x", RealText(parameter.position->x));
        Set(child, "y", RealText(parameter.position->y));
      }
    }
    for (const Measure& measure : net_.measures) {
      pugi::xml_node child = data.append_child("measure");
      Set(child, "name", measure.name);
      Set(child, "text", measure.text);
    }
  }

  const PetriNet& net_;
  const bool isAllAtOrigin_;
  bool keepsIds_ = false;
  int64_t arcs_ = 0;
  pugi::xml_node page_;
};

}  // namespace

std::string WritePnml(const PetriNet& net) {
  return Writer(net).Write();
}

std::string HiddenInPnml(const PetriNet& net) {
  const NetFeatures features = FeaturesOf(net);
  return TextOfCounts({{features.functions, "enabling functions"},
                       {features.markingDependent, "marking-dependent weights"},
                       {features.priorities, "priorities"}});
}

}  // namespace siphons
