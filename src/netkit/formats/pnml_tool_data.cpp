// What a PNML net cannot say in elements of its own and a .PD file can: kinds, delays, priorities, functions
// and expressions. The writer keeps them in elements <toolspecific tool="netkit">, and here they come back.
// What a transition has in common with a plain exponential one is not written.
#include <algorithm>
#include <charconv>
#include <string_view>
#include <unordered_map>

#include "netkit/formats/plain_numbers.h"
#include "netkit/formats/pnml_builder.h"
#include "netkit/formats/tool_words.h"

namespace siphons {

namespace {

/// The number of the word; nothing for a word that is none of them.
template <size_t size>
std::optional<size_t> NumberOfWord(const std::array<std::string_view, size>& words, std::string_view word) {
  const auto found = std::find(words.begin(), words.end(), word);
  if (found == words.end()) return std::nullopt;
  return static_cast<size_t>(found - words.begin());
}

/// Takes the value that the attribute names, if it is there. False: it names none.
template <size_t size, typename Value>
bool TakeWord(pugi::xml_attribute attribute, const std::array<std::string_view, size>& words, Value& value) {
  if (!attribute) return true;
  const std::optional<size_t> number = NumberOfWord(words, attribute.value());
  if (number) value = static_cast<Value>(*number);
  return number.has_value();
}

std::optional<int64_t> SmallNumber(pugi::xml_attribute attribute, int64_t greatest) {
  const std::optional<int64_t> value = PlainDecimal(attribute.value());
  return value && *value <= greatest ? value : std::nullopt;
}

template <typename Value>
bool TakeNumber(pugi::xml_attribute attribute, int64_t greatest, Value& value) {
  if (!attribute) return true;
  const std::optional<int64_t> number = SmallNumber(attribute, greatest);
  if (number) value = static_cast<Value>(*number);
  return number.has_value();
}

/// The number or the text of a delay whose kind is known.
bool TakeDelay(pugi::xml_attribute attribute, TransitionDelay& delay) {
  if (delay.kind != TransitionDelay::Kind::kNumber) {
    delay.text = attribute.value();
    return true;
  }
  const std::optional<double> number = attribute ? PlainReal(attribute.value()) : delay.value;
  if (number) delay.value = *number;
  return number.has_value();
}

}  // namespace

void PnmlBuilder::TakeToolData(pugi::xml_node element, Transition& transition) {
  const pugi::xml_node data = ToolDataOf(element);
  if (!data) return;
  const bool isRight = TakeWord(data.attribute("kind"), kKindWords, transition.kind) &&
                       TakeWord(data.attribute("policy"), kPolicyWords, transition.policy) &&
                       TakeWord(data.attribute("server"), kServerWords, transition.infiniteServer) &&
                       TakeWord(data.attribute("delayKind"), kDelayWords, transition.delay.kind) &&
                       TakeNumber(data.attribute("priority"), INT32_MAX, transition.priority) &&
                       TakeNumber(data.attribute("orientation"), 3, transition.orientation) &&
                       TakeDelay(data.attribute("delay"), transition.delay);
  if (!isRight) {
    Error(data, "a value of this element is none that netkit writes; remove the element");
    return;
  }
  if (data.attribute("function")) transition.enablingFunction = data.attribute("function").value();
  if (data.attribute("auxiliaryCount")) {
    AuxiliaryValues& auxiliary = transition.auxiliary.emplace();
    auxiliary.count =
        static_cast<int16_t>(SmallNumber(data.attribute("auxiliaryCount"), INT16_MAX).value_or(1));
    auxiliary.flag =
        static_cast<int32_t>(SmallNumber(data.attribute("auxiliaryFlag"), INT32_MAX).value_or(0));
    auxiliary.value = PlainReal(data.attribute("auxiliaryValue").value()).value_or(1);
  }
  transition.delayPosition = PointOf(data, "delayX", "delayY");
}

void PnmlBuilder::TakeToolData(pugi::xml_node element, Arc& arc) {
  const pugi::xml_node data = ToolDataOf(element);
  if (!data.attribute("weight")) return;
  arc.markingDependent = true;
  arc.weight = 1;
  arc.weightText = data.attribute("weight").value();
}

void PnmlBuilder::TakeNetToolData(pugi::xml_node net) {
  const pugi::xml_node data = ToolDataOf(net);
  if (!data) return;
  const auto type = NumberOfWord(kTypeWords, data.attribute("type").value());
  if (type) net_.type = static_cast<NetClass>(*type);
  net_.description = data.child("description").child_value();
  for (const pugi::xml_node child : data.children("parameter")) {
    Parameter& parameter = net_.parameters.emplace_back();
    parameter.name = child.attribute("name").value();
    parameter.value = PlainReal(child.attribute("value").value()).value_or(0);
    if (child.attribute("text")) parameter.text = child.attribute("text").value();
    parameter.position = PointOf(child);
  }
  for (const pugi::xml_node child : data.children("measure")) {
    net_.measures.push_back({child.attribute("name").value(), child.attribute("text").value(), Where(child)});
  }
}

/// A file that says so has all of them there, unless another program has placed some nodes since.
void PnmlBuilder::TakePositions(pugi::xml_node net) {
  if (ToolDataOf(net).attribute("positions").value() != kAllAtOrigin) return;
  const auto isPlaced = [](const auto& node) { return node.position.has_value(); };
  if (std::any_of(net_.places.begin(), net_.places.end(), isPlaced)) return;
  if (std::any_of(net_.transitions.begin(), net_.transitions.end(), isPlaced)) return;
  for (Place& place : net_.places) place.position = place.labelPosition = Point{};
  for (Transition& transition : net_.transitions) {
    transition.position = transition.labelPosition = transition.delayPosition = Point{};
  }
}

/// A place whose tokens come from a parameter must have as many as that says.
void PnmlBuilder::TakeMarkingParameters() {
  std::unordered_map<std::string_view, double> values;
  for (const Parameter& parameter : net_.parameters) {
    if (!parameter.text) values.try_emplace(parameter.name, parameter.value);
  }
  for (const Place& place : net_.places) {
    if (place.markingParameter.empty()) continue;
    const auto found = values.find(place.markingParameter);
    if (found != values.end() && found->second == static_cast<double>(place.tokens)) continue;
    diagnostics_.Error(place.where, "the tokens are not those of the parameter " +
                                        Quoted(place.markingParameter) +
                                        "; remove the parameter, or correct one of the two");
  }
}

}  // namespace siphons
