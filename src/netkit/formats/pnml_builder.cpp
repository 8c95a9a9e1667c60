#include "netkit/formats/pnml_builder.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstring>
#include <utility>

#include "netkit/formats/plain_numbers.h"
#include "netkit/formats/pnml_reader.h"

namespace siphons {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

/// What nodes and arcs may have without any effect that is not taken into account.
constexpr std::array<std::string_view, 16> kKnownParts = {
    "name",   "graphics",       "toolspecific", "initialMarking", "inscription", "timed",
    "rate",   "infiniteServer", "priority",     "type",           "arctype",     "arcpath",
    "tagged", "orientation",    "text",         "labels"};

std::string Trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return "";
  return std::string(text.substr(first, text.find_last_not_of(kBlanks) + 1 - first));
}

/// A label as a name: on one line, with single blanks.
std::string AsName(std::string_view label) {
  std::string name;
  for (const char c : label) {
    const bool isBlank = static_cast<unsigned char>(c) <= ' ' || c == 0x7F;
    if (!isBlank) {
      name += c;
    } else if (!name.empty() && name.back() != ' ') {
      name += ' ';
    }
  }
  if (name.ends_with(' ')) name.pop_back();
  return name;
}

/// The name of the element without its namespace's prefix.
std::string_view LocalName(pugi::xml_node element) {
  const std::string_view name = element.name();
  return name.substr(name.rfind(':') + 1);
}

bool Is(pugi::xml_node element, std::string_view name) {
  return LocalName(element) == name;
}

/// Where a label stands: its offset from the node. Sums of decimal fractions are rounded to millionths, so
/// that a position comes back as it was written.
std::optional<Point> LabelPosition(const std::optional<Point>& position, const std::optional<Point>& offset) {
  constexpr double kMillion = 1e6, kLarge = 1e9;
  if (!position || !offset) return std::nullopt;
  const auto sum = [](double a, double b) {
    return std::abs(a + b) < kLarge ? std::round((a + b) * kMillion) / kMillion : a + b;
  };
  return Point{sum(position->x, offset->x), sum(position->y, offset->y)};
}

/// Why the net cannot be read as a place/transition net, by its type; empty when it can.
std::string HighLevelType(std::string_view type) {
  std::string lower(type);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  for (const char* part :
       {"highlevel", "hlpng", "hlcore", "symmetric", "hlnet", "coloured", "colored", "cpn"}) {
    if (lower.find(part) != std::string::npos) return std::string(type);
  }
  return "";
}

}  // namespace

std::string ValueOf(pugi::xml_node element) {
  for (const char* child : {"text", "value"}) {
    if (const pugi::xml_node value = element.child(child)) return Trimmed(value.child_value());
  }
  return Trimmed(element.child_value());
}

pugi::xml_node ToolDataOf(pugi::xml_node element) {
  return element.find_child([](pugi::xml_node child) {
    return Is(child, "toolspecific") && std::strcmp(child.attribute("tool").value(), kToolName) == 0;
  });
}

PetriNet PnmlBuilder::Build(pugi::xml_node net) {
  net_.name = net.child("name") ? AsName(ValueOf(net.child("name"))) : "";
  if (net_.name.empty()) net_.name = net.attribute("id").value();
  CheckType(net);
  TakeNetToolData(net);
  TakePage(net);
  for (const auto& [number, element] : transitionElements_) TakeToolData(element, net_.transitions[number]);
  GiveNames();
  TakeMarkingParameters();
  TakePositions(net);
  arcNumbers_.reserve(arcs_.size());
  for (const pugi::xml_node arc : arcs_) TakeArc(arc);
  if (net_.places.empty()) Error(net, "the net has no place; is this the right file?");
  if (net_.transitions.empty()) Error(net, "the net has no transition; is this the right file?");
  return std::move(net_);
}

void PnmlBuilder::CheckType(pugi::xml_node net) {
  const std::string highLevel = HighLevelType(net.attribute("type").value());
  if (!highLevel.empty()) {
    Error(net, "a high-level net (type " + Quoted(highLevel) +
                   "), whose tokens have values; unfold it to a place/transition net first");
  }
}

void PnmlBuilder::TakePage(pugi::xml_node page) {
  for (const pugi::xml_node child : page.children()) {
    if (child.type() != pugi::node_element) continue;
    const std::string_view name = LocalName(child);
    if (name == "page") {
      TakePage(child);
    } else if (name == "place") {
      TakePlace(child);
    } else if (name == "transition") {
      TakeTransition(child);
    } else if (name == "referencePlace" || name == "referenceTransition") {
      TakeReference(child);
    } else if (name == "arc" || name == "inputArc" || name == "outputArc" || name == "inhibitorArc") {
      arcs_.push_back(child);
    } else if (name == "transportArc" || name == "declaration") {
      Error(child, "the element " + Quoted(child.name()) +
                       " belongs to another class of nets; netkit reads "
                       "place/transition nets");
    } else if (name == "toolspecific" || name == "name" || name == "graphics" || name == "token" ||
               name == "labels" || name == "text") {
      continue;
    } else if (child.attribute("source") && child.attribute("target")) {
      Error(child, "an arc of the unknown kind " + Quoted(child.name()) +
                       "; netkit reads normal and inhibitor arcs");
    } else {
      WarnOfUnknown(child);
    }
  }
}

/// Mentions the first element of each name that is left out.
void PnmlBuilder::WarnOfUnknown(pugi::xml_node element) {
  if (std::exchange(warned_[element.name()], true)) return;
  diagnostics_.Warn(Where(element),
                    "the element " + Quoted(element.name()) + " is not known and was left out");
}

PnmlBuilder::Node* PnmlBuilder::Declare(pugi::xml_node element, NodeKind kind) {
  const std::string_view id = element.attribute("id").value();
  if (id.empty()) {
    Error(element, "the element " + Quoted(element.name()) + " has no id; give it one");
    return nullptr;
  }
  if (AsName(id) != id) {  // it may have to serve as the name
    Error(element, "the id " + Quoted(id) +
                       " has blanks around it, next to each other, or that end a line; "
                       "correct it");
    return nullptr;
  }
  const auto [at, isNew] = nodes_.try_emplace(id);
  if (!isNew) {
    Error(element, "the id " + Quoted(id) + " is taken in line " + std::to_string(at->second.where.line) +
                       "; ids are unique in a file");
    return nullptr;
  }
  at->second.kind = kind;
  at->second.where = Where(element);
  CheckChildren(element);
  return &at->second;
}

/// Refuses what changes the meaning of a node or an arc beyond a place/transition net.
void PnmlBuilder::CheckChildren(pugi::xml_node element) {
  for (const pugi::xml_node child : element.children()) {
    if (child.type() != pugi::node_element) continue;
    const std::string_view name = LocalName(child);
    if (std::find(kKnownParts.begin(), kKnownParts.end(), name) != kKnownParts.end()) continue;
    const std::string value = name == "capacity" ? ValueOf(child) : "";
    if (name == "hlinitialMarking" || name == "hlinscription" || name == "condition") {
      Error(child, "the element " + Quoted(child.name()) +
                       " belongs to high-level nets; unfold the net to a place/transition net first");
    } else if (!value.empty() && value != "0" && !value.ends_with(",0")) {
      Error(child, "a capacity of " + Quoted(value) + "; write a place for the free room instead");
    } else if (name == "delay") {
      Error(child, "a time interval, which decides what can fire; netkit reads untimed and stochastic nets");
    } else if (name != "capacity") {
      WarnOfUnknown(child);
    }
  }
  const pugi::xml_attribute invariant = element.attribute("invariant");
  if (invariant && std::string_view(invariant.value()) != "< inf") {
    Error(element, "an age invariant, which untimed nets have not; remove it");
  }
  constexpr int kMostAttributes = 50;  // every pair of them is compared
  int count = 0;
  for (pugi::xml_attribute a = element.first_attribute(); a; a = a.next_attribute()) {
    if (++count > kMostAttributes) {
      Error(element, "more than 50 attributes; this is no PNML file");
      break;
    }
    for (pugi::xml_attribute b = a.next_attribute(); b; b = b.next_attribute()) {
      if (std::strcmp(a.name(), b.name()) == 0)
        Error(element, "the attribute " + Quoted(a.name()) + " stands twice; remove one");
    }
  }
}

void PnmlBuilder::TakePlace(pugi::xml_node element) {
  Node* const node = Declare(element, NodeKind::kPlace);
  if (node == nullptr) return;
  node->number = static_cast<int32_t>(net_.places.size());
  Place& place = net_.places.emplace_back();
  place.id = element.attribute("id").value();
  place.where = node->where;
  placeLabels_.push_back(
      AsName(element.child("name") ? ValueOf(element.child("name")) : element.attribute("name").value()));
  const pugi::xml_node marking = element.child("initialMarking");
  if (marking) {
    place.tokens = Count(marking, ValueOf(marking), "number of tokens", 0).value_or(0);
  } else if (const pugi::xml_attribute tokens = element.attribute("initialMarking")) {
    place.tokens = Count(element, tokens.value(), "number of tokens", 0).value_or(0);
  }
  place.position = PointOf(element.child("graphics").child("position"));
  if (!place.position) place.position = PointOf(element, "positionX", "positionY");
  const std::optional<Point> offset = PointOf(element.child("name").child("graphics").child("offset"));
  place.labelPosition = LabelPosition(place.position, offset);
  if (const pugi::xml_node data = ToolDataOf(element))
    place.markingParameter = data.attribute("parameter").value();
}

void PnmlBuilder::TakeTransition(pugi::xml_node element) {
  Node* const node = Declare(element, NodeKind::kTransition);
  if (node == nullptr) return;
  node->number = static_cast<int32_t>(net_.transitions.size());
  transitionElements_.emplace_back(net_.transitions.size(), element);
  Transition& transition = net_.transitions.emplace_back();
  transition.id = element.attribute("id").value();
  transition.where = node->where;
  transitionLabels_.push_back(
      AsName(element.child("name") ? ValueOf(element.child("name")) : element.attribute("name").value()));
  transition.position = PointOf(element.child("graphics").child("position"));
  if (!transition.position) transition.position = PointOf(element, "positionX", "positionY");
  const std::optional<Point> offset = PointOf(element.child("name").child("graphics").child("offset"));
  transition.labelPosition = LabelPosition(transition.position, offset);
  TakeDelayed(element);
}

/// Kind, rate, priority and server as generalised stochastic nets give them.
void PnmlBuilder::TakeDelayed(pugi::xml_node element) {
  Transition& transition = net_.transitions.back();
  const pugi::xml_node timed = element.child("timed");
  if (timed && ValueOf(timed) == "false") transition.kind = TransitionKind::kImmediate;
  if (const pugi::xml_node rate = element.child("rate")) {
    const std::optional<double> value = PlainReal(ValueOf(rate));
    if (!value)
      diagnostics_.Warn(Where(rate), "the rate " + Quoted(ValueOf(rate)) + " is no number, 1 is taken");
    transition.delay.value = value.value_or(1);
  }
  transition.infiniteServer = ValueOf(element.child("infiniteServer")) == "true";
  if (const pugi::xml_node priority = element.child("priority")) {
    const auto value = Count(priority, ValueOf(priority), "priority", 0);
    if (value && *value > INT32_MAX) Error(priority, "the priority is out of range; it goes to 2147483647");
    transition.priority = static_cast<int32_t>(std::min<int64_t>(value.value_or(0), INT32_MAX));
  }
}

void PnmlBuilder::TakeReference(pugi::xml_node element) {
  Node* const node = Declare(element, NodeKind::kReference);
  if (node == nullptr) return;
  node->reference = element.attribute("ref").value();
  if (node->reference.empty())
    Error(element, "a reference node without ref; name the node that it stands for");
}

/// A label is a name when no other node has it as its label or as its id.
void PnmlBuilder::GiveNames() {
  std::unordered_map<std::string_view, int64_t> uses;
  uses.reserve(placeLabels_.size() + transitionLabels_.size());
  for (const auto* labels : {&placeLabels_, &transitionLabels_}) {
    for (const std::string& label : *labels) ++uses[label];
  }
  const auto nameOf = [&](const std::string& label, const std::string& id) {
    const auto node = label == id ? nodes_.end() : nodes_.find(label);
    return label.empty() || uses[label] > 1 || node != nodes_.end() ? id : label;
  };
  for (size_t p = 0; p < net_.places.size(); ++p)
    net_.places[p].name = nameOf(placeLabels_[p], net_.places[p].id);
  for (size_t t = 0; t < net_.transitions.size(); ++t) {
    net_.transitions[t].name = nameOf(transitionLabels_[t], net_.transitions[t].id);
  }
}

std::optional<int64_t> PnmlBuilder::Count(pugi::xml_node element, std::string_view text,
                                          std::string_view what, int64_t least) {
  // Some editors count tokens of several classes: "Default,1,Red,0".
  std::optional<std::string_view> first;
  for (size_t comma = text.find(','); comma != std::string_view::npos;) {
    const size_t end = text.find(',', comma + 1);
    const std::string_view count = text.substr(comma + 1, end - comma - 1);
    if (!first) {
      first = count;
    } else if (count != "0") {
      Error(element, "tokens of more than one class in " + Quoted(text) + "; unfold the net first");
      return std::nullopt;
    }
    comma = end == std::string_view::npos ? end : text.find(',', end + 1);
  }
  const std::string_view number = first.value_or(text);
  const std::string trimmed = Trimmed(number);
  const std::optional<int64_t> value = PlainDecimal(trimmed);
  if (value && *value >= least) return value;
  Error(element, "the " + std::string(what) + " " + Quoted(text) +
                     (IsPlainDecimal(trimmed) ? " is out of range; it goes from "
                                              : " is no plain number; write digits from ") +
                     std::to_string(least) + " to 9223372036854775807");
  return std::nullopt;
}

std::optional<Point> PnmlBuilder::PointOf(pugi::xml_node element, const char* x, const char* y) {
  const std::optional<double> px = PlainReal(element.attribute(x).value());
  const std::optional<double> py = PlainReal(element.attribute(y).value());
  if (!px || !py) return std::nullopt;
  return Point{*px, *py};
}

std::optional<PetriNet> ReadPnml(std::string text, Diagnostics& diagnostics) {
  if (!PrepareXml(text, diagnostics)) return std::nullopt;
  const LineTable lines(text);
  pugi::xml_document document;
  const pugi::xml_parse_result result =
      document.load_buffer_inplace(text.data(), text.size(), pugi::parse_default, pugi::encoding_utf8);
  if (!result) {
    diagnostics.Error(lines.Where(result.offset), std::string("the XML is faulty: ") + result.description());
    return std::nullopt;
  }
  const pugi::xml_node root = document.document_element();
  const auto isNet = [](pugi::xml_node child) { return Is(child, "net"); };
  const pugi::xml_node net = root.find_child(isNet);
  if (!Is(root, "pnml") || !net) {
    diagnostics.Error(lines.Where(root.offset_debug()), "no <pnml> with a <net> in it; is this a PNML file?");
    return std::nullopt;
  }
  for (pugi::xml_node other = net.next_sibling(); other; other = other.next_sibling()) {
    if (isNet(other))
      diagnostics.Error(lines.Where(other.offset_debug()), "a second net; keep one in a file");
  }
  for (pugi::xml_node other = root.next_sibling(); other; other = other.next_sibling()) {
    if (other.type() == pugi::node_element) {
      diagnostics.Error(lines.Where(other.offset_debug()), "an element behind the end of <pnml>; remove it");
    }
  }
  PetriNet read = PnmlBuilder(lines, diagnostics).Build(net);
  if (diagnostics.HasErrors()) return std::nullopt;
  return read;
}

}  // namespace siphons
