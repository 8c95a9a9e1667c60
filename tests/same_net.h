// Whether the strict reader of netkit and the report program's loader took one text for the same net.
#pragma once

#include <cstring>
#include <string>
#include <string_view>

#include "net/net.h"
#include "netkit/model/petri_net.h"

namespace siphons {

/// Compares what the two hold, and remembers the first difference.
class NetComparison {
 public:
  NetComparison(const PetriNet& net, const Net& loaded) {
    Same("type", static_cast<int64_t>(net.type), int64_t{loaded.nettype});
    Same("places", net.places.size(), static_cast<size_t>(loaded.nplaces));
    Same("transitions", net.transitions.size(), static_cast<size_t>(loaded.ntrans));
    Same("parameters", net.parameters.size(), static_cast<size_t>(loaded.ndelaypars));
    Same("measures", net.measures.size(), static_cast<size_t>(loaded.nrewards));
    if (!difference_.empty()) return;
    for (size_t i = 0; i < net.parameters.size(); ++i) ComparePar(net.parameters[i], loaded.delaypars[i]);
    for (size_t i = 0; i < net.places.size(); ++i) ComparePlace(net.places[i], loaded.places[i]);
    for (size_t i = 0; i < net.transitions.size(); ++i) {
      CompareTransition(net.transitions[i], loaded.transitions[i], loaded);
    }
    for (size_t i = 0; i < net.measures.size(); ++i) {
      SameText("measure", net.measures[i].name, loaded.rewards[i].name);
      SameText("measure's text", net.measures[i].text + ";", loaded.rewards[i].def);
    }
  }

  /// Empty when there is none.
  const std::string& Difference() const { return difference_; }

 private:
  template <typename A, typename B>
  void Same(const char* what, const A& strict, const B& loaded) {
    if (strict != loaded && difference_.empty()) difference_ = what;
  }
  void SameText(const char* what, const std::string& strict, const char* loaded) {
    Same(what, std::string_view(strict), std::string_view(loaded == nullptr ? "<null>" : loaded));
  }
  void Same(const char* what, const std::optional<Point>& strict, const Position& loaded) {
    Same(what, strict.value_or(Point{}).x, loaded.x);
    Same(what, strict.value_or(Point{}).y, loaded.y);
  }

  void ComparePar(const Parameter& parameter, const DelayPar& loaded) {
    SameText("parameter", parameter.name, loaded.name);
    Same("parameter's kind", parameter.text.has_value(), loaded.is_value == 0);
    if (parameter.text) {
      SameText("parameter's text", *parameter.text + ";", loaded.text);
    } else {
      Same("parameter's value", parameter.value, loaded.value);
    }
    Same("parameter's position", parameter.position, loaded.pos);
  }

  void ComparePlace(const Place& place, const NetPlace& loaded) {
    SameText("place", place.name, loaded.name);
    Same("marking's kind", place.markingParameter.empty(), loaded.is_value != 0);
    if (loaded.is_value != 0) {
      Same("marking", place.tokens, int64_t{loaded.marking});
    } else {
      SameText("marking's parameter", place.markingParameter, loaded.marking_par->name);
      Same("marking by a parameter", static_cast<double>(place.tokens), loaded.marking_par->value);
    }
    Same("place's position", place.position, loaded.pos);
    Same("place's label", place.labelPosition, loaded.name_pos);
  }

  void CompareTransition(const Transition& transition, const NetTransition& loaded, const Net& net) {
    SameText("transition", transition.name, loaded.name);
    Same("kind", static_cast<int64_t>(transition.kind), int64_t{loaded.type});
    Same("policy", static_cast<int64_t>(transition.policy), int64_t{loaded.f_policy});
    Same("server", transition.infiniteServer, loaded.inf_server != 0);
    Same("priority", transition.priority, loaded.priority);
    Same("orientation", static_cast<int64_t>(transition.orientation), int64_t{loaded.orient});
    const AuxiliaryValues auxiliary = transition.auxiliary.value_or(AuxiliaryValues{});
    Same("auxiliary count", auxiliary.count, loaded.aux_count);
    Same("auxiliary flag", auxiliary.flag, loaded.aux_flag);
    Same("auxiliary value", auxiliary.value, loaded.aux_value);
    Same("position", transition.position, loaded.pos);
    Same("label", transition.labelPosition, loaded.name_pos);
    Same("delay's position", transition.delayPosition, loaded.delay_pos);
    SameText("enabling function", transition.enablingFunction ? *transition.enablingFunction + ";" : "<null>",
             loaded.md_enable);
    CompareDelay(transition.delay, loaded);
    CompareArcs(transition.inputs, loaded.inarcs, loaded.ninarcs, net);
    CompareArcs(transition.outputs, loaded.outarcs, loaded.noutarcs, net);
    CompareArcs(transition.inhibitors, loaded.inharcs, loaded.ninharcs, net);
  }

  void CompareDelay(const TransitionDelay& delay, const NetTransition& loaded) {
    Same("delay's kind", static_cast<int64_t>(delay.kind), int64_t{loaded.delay_type});
    if (loaded.delay_type == kDelayNumber) {
      Same("delay", delay.value, loaded.delay.value);
    } else if (loaded.delay_type == kDelayParameter) {
      SameText("delay's parameter", delay.text, loaded.delay.parameter->name);
    } else {
      SameText("delay's text", delay.text + ";", loaded.delay.text);
    }
  }

  void CompareArcs(const std::vector<Arc>& arcs, const NetArc* loaded, int32_t count, const Net& net) {
    Same("arcs", arcs.size(), static_cast<size_t>(count));
    if (!difference_.empty()) return;
    for (size_t i = 0; i < arcs.size(); ++i) {
      Same("arc's place", int64_t{arcs[i].place}, int64_t{loaded[i].place - net.places});
      Same("weight's kind", arcs[i].markingDependent, loaded[i].is_value == 0);
      if (arcs[i].markingDependent) {
        SameText("weight's text", arcs[i].weightText + ";", loaded[i].md_mult);
      } else {
        Same("weight", arcs[i].weight, int64_t{loaded[i].multiplicity});
      }
      Same("path points", arcs[i].path.size(), static_cast<size_t>(loaded[i].npoints));
      for (size_t p = 0; p < arcs[i].path.size() && difference_.empty(); ++p) {
        Same("path point", std::optional(arcs[i].path[p]), loaded[i].point[p]);
      }
    }
  }

  std::string difference_;
};

}  // namespace siphons
