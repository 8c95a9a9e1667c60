// Arcs of a PNML file, in the notations of the editors in use: an inhibitor arc is marked by an attribute, by
// an element, or by the name of the arc's element.
#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <set>

#include "netkit/formats/near_names.h"
#include "netkit/formats/pnml_builder.h"

namespace siphons {

namespace {

enum Group : uint64_t { kInputs, kOutputs, kInhibitors };

}  // namespace

std::optional<PnmlBuilder::ArcKind> PnmlBuilder::KindOf(pugi::xml_node element) {
  std::string type = element.attribute("type").value();
  for (const char* name : {"type", "arctype"}) {
    const pugi::xml_node child = element.child(name);
    if (!child) continue;
    type = child.attribute("value") ? child.attribute("value").value() : ValueOf(child);
  }
  if (std::strcmp(element.name(), "inhibitorArc") == 0) type = "inhibitor";
  if (type == "inhibitor" || type == "tapnInhibitor") return ArcKind::kInhibitor;
  if (type.empty() || type == "normal" || type == "timed") return ArcKind::kNormal;
  Error(element, "an arc of type " + Quoted(type) + "; netkit reads normal and inhibitor arcs");
  return std::nullopt;
}

/// The place or transition at an end of the arc, through reference nodes; null after a report. References on
/// the way are shortened to its end, so that long chains of them cost their length once.
const PnmlBuilder::Node* PnmlBuilder::EndOf(pugi::xml_node element, const char* attribute) {
  std::string_view id = element.attribute(attribute).value();
  std::set<std::string_view> seen;
  const auto shorten = [&] {
    for (const std::string_view reference : seen) nodes_[reference].reference = id;
  };
  while (true) {
    const auto found = nodes_.find(id);
    if (found == nodes_.end()) {
      shorten();
      std::vector<std::string_view> ids;
      if (diagnostics_.Errors() < Diagnostics::kShown) {
        for (const auto& [known, node] : nodes_) ids.push_back(known);
        std::sort(ids.begin(), ids.end());
      }
      Error(element, std::string("the ") + attribute + " of the arc is " + Quoted(id) +
                         ", which is no id of a node" + DidYouMean(id, ids, "; correct it"));
      return nullptr;
    }
    if (found->second.kind != NodeKind::kReference) {
      shorten();
      return &found->second;
    }
    if (!seen.insert(id).second) {
      shorten();
      Error(element, "the reference node " + Quoted(id) + " stands for itself; correct its ref");
      return nullptr;
    }
    id = found->second.reference;
  }
}

std::optional<int64_t> PnmlBuilder::WeightOf(pugi::xml_node element) {
  if (const pugi::xml_node inscription = element.child("inscription")) {
    return Count(inscription, ValueOf(inscription), "weight", 1);
  }
  if (const pugi::xml_attribute weight = element.attribute("weight")) {
    return Count(element, weight.value(), "weight", 1);
  }
  const std::string inscription = element.attribute("inscription").value();
  if (inscription.empty() || inscription == "[0,inf)") return 1;
  if (inscription.starts_with("[") || inscription.starts_with("(")) {
    Error(element, "an age interval " + Quoted(inscription) + ", which untimed nets have not; remove it");
    return std::nullopt;
  }
  return Count(element, inscription, "weight", 1);
}

std::vector<Point> PnmlBuilder::PathOf(pugi::xml_node element) {
  std::vector<Point> path;
  for (const pugi::xml_node position : element.child("graphics").children("position")) {
    if (const std::optional<Point> point = PointOf(position)) path.push_back(*point);
  }
  // Where points stand in elements of their own, the first and the last are the ends of the arc.
  std::vector<Point> points;
  for (const pugi::xml_node position : element.children("arcpath")) {
    if (const std::optional<Point> point = PointOf(position)) points.push_back(*point);
  }
  if (path.empty() && points.size() > 2) path.assign(points.begin() + 1, points.end() - 1);
  return path;
}

void PnmlBuilder::TakeArc(pugi::xml_node element) {
  CheckChildren(element);
  const std::optional<ArcKind> kind = KindOf(element);
  const Node* const source = EndOf(element, "source");
  const Node* const target = EndOf(element, "target");
  const std::optional<int64_t> weight = WeightOf(element);
  if (!kind || source == nullptr || target == nullptr || !weight) return;
  const bool fromPlace = source->kind == NodeKind::kPlace;
  if (source->kind == target->kind) {
    Error(element, std::string("an arc from a ") +
                       (fromPlace ? "place to a place" : "transition to a transition") +
                       "; an arc joins one of each");
    return;
  }
  Arc arc;
  arc.place = (fromPlace ? source : target)->number;
  arc.weight = *weight;
  arc.path = PathOf(element);
  arc.where = Where(element);
  TakeToolData(element, arc);
  const int32_t number = (fromPlace ? target : source)->number;
  if (*kind == ArcKind::kNormal) {
    Add(number, fromPlace ? kInputs : kOutputs, std::move(arc));
  } else if (fromPlace) {
    Add(number, kInhibitors, std::move(arc));
  } else {
    Error(element, "an inhibitor arc from a transition to a place; it goes from the place to the transition");
  }
}

/// Adds the arc to the group, or to the arc that the group has to the same place.
void PnmlBuilder::Add(int32_t transition, uint64_t group, Arc arc) {
  Transition& owner = net_.transitions[static_cast<size_t>(transition)];
  std::vector<Arc>& arcs = group == kInputs    ? owner.inputs
                           : group == kOutputs ? owner.outputs
                                               : owner.inhibitors;
  const uint64_t key =
      (static_cast<uint64_t>(transition) << 33) | (static_cast<uint64_t>(arc.place) << 2) | group;
  const auto [at, isNew] = arcNumbers_.try_emplace(key, arcs.size());
  if (isNew) {
    arcs.push_back(std::move(arc));
    return;
  }
  Arc& same = arcs[at->second];
  if (group == kInhibitors) {
    same.weight = std::min(same.weight, arc.weight);
  } else if (same.markingDependent || arc.markingDependent) {
    diagnostics_.Error(arc.where,
                       "a second arc beside one whose weight depends on the marking; write one arc");
  } else if (same.weight > std::numeric_limits<int64_t>::max() - arc.weight) {
    diagnostics_.Error(arc.where,
                       "the weights of the arcs between these two nodes sum up to more than "
                       "9223372036854775807; lower them");
  } else {
    same.weight += arc.weight;
  }
}

}  // namespace siphons
