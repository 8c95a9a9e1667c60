// Sections that define things by text: parameters, marking-dependent delays, enabling functions and weights,
// measures. The texts are kept as they stand; each must end with ';', because the report program takes
// everything for text that stands before it, the next misspelt section too.
#include <algorithm>
#include <array>

#include "netkit/formats/pd_net_builder.h"

namespace siphons {

namespace {

constexpr std::string_view kMarkingDependent = "<MD>";
/// Stands for a text that was reported, so that it does not count as missing.
constexpr const char* kFaultyText = "?";

}  // namespace

std::optional<std::string> PdNetBuilder::TakeText(PdScanner& words, std::string_view what) {
  const PdWord start = words.Peek();
  if (!Present(start, what)) return std::nullopt;
  PdScanner ahead = words;
  if (const std::optional<PdWord> misspelt = ahead.FindMisspeltKeyword(true)) {
    Error(start.where, std::string(what) + " has no ';' before line " + std::to_string(misspelt->where.line) +
                           ", which looks like a section; end the text with ';'");
    words = ahead;
    return std::nullopt;
  }
  std::optional<std::string> text = words.TextToSemicolon();
  if (!text) {
    words.TextToEnd();
    Error(words.Peek().where, "no ';' ends " + std::string(what) + "; add one");
  } else if (text->empty()) {
    Error(start.where, std::string(what) + " is empty; write it before the ';'");
    return std::nullopt;
  }
  return text;
}

std::optional<PdNetBuilder::Definition> PdNetBuilder::TakeDefinition(PdKeyword keyword, PdScanner& words) {
  Definition definition{words.Next(), {}};
  if (!Present(definition.name, "the name")) return std::nullopt;
  definition.text = TakeText(words, "the text of " + std::string(TextOf(keyword))).value_or(kFaultyText);
  return definition;
}

bool PdNetBuilder::TakeParameter(SourcePosition where, PdScanner& words) {
  const PdWord name = words.Next();
  Declare(parameters_, net_.parameters.size(), where, name);
  Parameter& parameter = net_.parameters.emplace_back();
  parameter.name = name.text;
  parameter.where = name.where;
  if (!Present(name, "the name of the parameter")) return false;
  const PdWord value = words.Next();
  if (value.text == kMarkingDependent) {
    parameter.text.emplace();
  } else if (const std::optional<double> number = Real(value, "value of the parameter")) {
    parameter.value = *number;
  } else {
    return false;
  }
  return Points(words, "coordinate of the parameter", parameter.position);
}

bool PdNetBuilder::TakeParameterText(PdScanner& words) {
  const std::optional<Definition> definition = TakeDefinition(PdKeyword::kDelayParDef, words);
  if (!definition) return false;
  const std::optional<int32_t> number = NumberOf(parameters_, definition->name);
  if (!number) return true;
  Parameter& parameter = net_.parameters[static_cast<size_t>(*number)];
  if (!parameter.text) {
    Error(definition->name.where,
          "the parameter " + Quoted(parameter.name) + " has a number; write <MD> there, or remove the text");
  } else if (!parameter.text->empty()) {
    Error(definition->name.where,
          "a second text for the parameter " + Quoted(parameter.name) + "; remove one");
  } else {
    parameter.text = definition->text;
  }
  return true;
}

bool PdNetBuilder::TakeDelayText(PdKeyword keyword, PdScanner& words) {
  const std::optional<Definition> definition = TakeDefinition(keyword, words);
  if (!definition) return false;
  const std::optional<int32_t> number = NumberOf(transitions_, definition->name);
  if (!number) return true;
  Transition& transition = net_.transitions[static_cast<size_t>(*number)];
  TransitionDelay& delay = transition.delay;
  const bool isText = delay.kind == TransitionDelay::Kind::kMarkingDependent ||
                      delay.kind == TransitionDelay::Kind::kDistribution;
  if (!isText) {
    Error(definition->name.where, "the transition " + Quoted(transition.name) +
                                      " has a delay in its head; write <MD> there, or remove the text");
  } else if (!delay.text.empty()) {
    Error(definition->name.where,
          "a second delay for the transition " + Quoted(transition.name) + "; remove one");
  } else {
    delay.text = definition->text;
  }
  return true;
}

bool PdNetBuilder::TakeFunction(PdScanner& words) {
  const std::optional<Definition> definition = TakeDefinition(PdKeyword::kFunction, words);
  if (!definition) return false;
  const std::optional<int32_t> number = NumberOf(transitions_, definition->name);
  if (!number) return true;
  Transition& transition = net_.transitions[static_cast<size_t>(*number)];
  if (transition.enablingFunction) {
    Error(definition->name.where,
          "a second enabling function for the transition " + Quoted(transition.name) + "; remove one");
  }
  transition.enablingFunction = definition->text;
  return true;
}

bool PdNetBuilder::TakeCardinality(PdScanner& words) {
  const PdWord group = words.Next(), transitionName = words.Next(), placeName = words.Next();
  if (!Present(placeName, "the group, the transition or the place of the arc")) return false;
  const std::optional<std::string> text = TakeText(words, "the multiplicity");
  const std::optional<size_t> kind = OneOf(group, "group of arcs", {"INPARC", "OUTPARC", "INHARC"});
  const std::optional<int32_t> transitionNumber = NumberOf(transitions_, transitionName);
  const std::optional<int32_t> place = NumberOf(places_, placeName);
  if (!transitionNumber) return text.has_value();
  Transition& transition = net_.transitions[static_cast<size_t>(*transitionNumber)];
  ArcFaults& faults = arcFaults_[static_cast<size_t>(*transitionNumber)];
  std::vector<Arc>* const groups[] = {&transition.inputs, &transition.outputs, &transition.inhibitors};
  Arc* arc = nullptr;
  if (kind && place) {
    std::vector<Arc>& arcs = *groups[*kind];
    const auto found =
        std::find_if(arcs.begin(), arcs.end(), [&](const Arc& a) { return a.place == *place; });
    if (found != arcs.end()) arc = &*found;
  }
  if (arc == nullptr || !arc->markingDependent) faults.inCardinalities = true;
  if (!kind || !place) return text.has_value();
  if (arc == nullptr && !faults.inArcs) {
    Error(group.where, "the transition " + Quoted(transitionName.text) + " has no such arc to " +
                           Quoted(placeName.text) + "; correct the group, the names or the arcs");
  } else if (arc != nullptr && !arc->markingDependent) {
    Error(group.where, "the arc has the multiplicity " + std::to_string(arc->weight) +
                           "; write <MD> there, or remove the text");
  } else if (arc != nullptr && !arc->weightText.empty()) {
    Error(group.where, "a second multiplicity for this arc; remove one");
  } else if (arc != nullptr) {
    arc->weightText = text.value_or(kFaultyText);
  }
  return text.has_value();
}

bool PdNetBuilder::TakeMeasure(SourcePosition where, PdScanner& words) {
  Declare(measures_, net_.measures.size(), where, words.Peek());
  Measure& measure = net_.measures.emplace_back();
  measure.where = words.Peek().where;
  const std::optional<Definition> definition = TakeDefinition(PdKeyword::kMeasure, words);
  if (!definition) return false;
  measure.name = definition->name.text;
  measure.text = definition->text;
  return true;
}

void PdNetBuilder::CheckTexts() {
  for (const Parameter& parameter : net_.parameters) {
    if (parameter.text && parameter.text->empty() && !UsedTooEarly(parameters_, parameter.name)) {
      Error(parameter.where, "no DELAYPAR_DEF gives the text of the parameter " + Quoted(parameter.name) +
                                 "; add one, or write a number in place of <MD>");
    }
  }
  for (size_t t = 0; t < net_.transitions.size(); ++t) {
    const Transition& transition = net_.transitions[t];
    const TransitionDelay::Kind kind = transition.delay.kind;
    const bool isText =
        kind == TransitionDelay::Kind::kMarkingDependent || kind == TransitionDelay::Kind::kDistribution;
    const bool explained = UsedTooEarly(transitions_, transition.name);
    if (isText && transition.delay.text.empty() && !explained) {
      Error(transition.where,
            "no WEIGHT, EXP_DELAY, DET_DELAY or GEN_DELAY gives the delay of the transition " +
                Quoted(transition.name) + "; add one");
    }
    for (const std::vector<Arc>* arcs : {&transition.inputs, &transition.outputs, &transition.inhibitors}) {
      for (const Arc& arc : *arcs) {
        if (explained || arcFaults_[t].inCardinalities || !arc.markingDependent || !arc.weightText.empty())
          continue;
        Error(arc.where,
              "no CARDINALITY gives the multiplicity of this arc; add one, or write a number in place "
              "of <MD>");
      }
    }
  }
}

}  // namespace siphons
