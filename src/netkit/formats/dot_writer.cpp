// Linear in the net. Labels are quoted strings in which a backslash would start an escape of the layout
// program, so both are escaped.
#include "netkit/formats/dot_writer.h"

#include <algorithm>
#include <string_view>

#include "netkit/formats/drawing.h"

namespace siphons {

namespace {

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + "\"";
}

const char* LooksOf(TransitionKind kind) {
  switch (kind) {
    case TransitionKind::kImmediate:
      return "height=0.07, style=filled, fillcolor=black";
    case TransitionKind::kExponential:
      break;
    case TransitionKind::kDeterministic:
      return "height=0.2, style=filled, fillcolor=gray60";
    case TransitionKind::kGeneral:
      return "height=0.2, style=\"filled,dashed\", fillcolor=gray85";
  }
  return "height=0.2";
}

}  // namespace

std::string DotOf(const PetriNet& net, const PictureOptions& options) {
  std::vector<bool> chosen(net.places.size()), draining(net.transitions.size());
  for (const Highlight& highlight : options.highlights) {
    for (const int32_t p : highlight.places) chosen[static_cast<size_t>(p)] = true;
    for (const int32_t t : DrainingTransitions(net, highlight.places))
      draining[static_cast<size_t>(t)] = true;
  }
  std::string dot = "digraph " + Quoted(net.name) + " {\n  node [fontname=\"sans-serif\", fontsize=10];\n";
  for (size_t p = 0; p < net.places.size(); ++p) {
    const Place& place = net.places[p];
    dot += "  p" + std::to_string(p) + " [shape=circle, fixedsize=true, width=0.4, label=" +
           Quoted(place.tokens == 0 ? "" : std::to_string(place.tokens)) + ", xlabel=" + Quoted(place.name);
    if (chosen[p]) {
      dot += ", style=filled, fillcolor=\"#f0b43c\", color=\"#8a5a00\", penwidth=2";
    } else if (!options.monitors.empty() && options.monitors[p]) {
      dot += ", style=\"filled,dashed\", fillcolor=\"#cfe8f7\", color=\"#0072b2\", penwidth=2";
    }
    dot += "];\n";
  }
  for (size_t t = 0; t < net.transitions.size(); ++t) {
    const Transition& transition = net.transitions[t];
    dot += "  t" + std::to_string(t) +
           " [shape=box, width=0.42, label=\"\", xlabel=" + Quoted(transition.name) + ", " +
           LooksOf(transition.kind) + (draining[t] ? ", color=\"#d55e00\", penwidth=3" : "") + "];\n";
  }
  for (const DrawnArc& arc : ArcsOf(net)) {
    const std::string place = "p" + std::to_string(arc.place),
                      transition = "t" + std::to_string(arc.transition);
    dot += "  " +
           (arc.kind == DrawnArcKind::kOutput ? transition + " -> " + place : place + " -> " + transition);
    std::string looks = arc.kind == DrawnArcKind::kInhibitor ? "arrowhead=odot" : "";
    if (!arc.text.empty()) looks += (looks.empty() ? "label=" : ", label=") + Quoted(arc.text);
    dot += (looks.empty() ? "" : " [" + looks + "]") + ";\n";
  }
  return dot + "}\n";
}

}  // namespace siphons
