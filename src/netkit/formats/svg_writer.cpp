// Linear in the drawing. Arcs come first, so that nodes lie on top of them, and names last.
#include "netkit/formats/svg_writer.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "netkit/formats/markup_text.h"
#include "netkit/formats/page_resources.h"

namespace siphons {

namespace {

constexpr double kTokenRadius = 2.8;
constexpr double kInhibitorRadius = 3.5;

/// A length with one decimal at most.
std::string Number(double value) {
  const double rounded = std::round(value * 10) / 10;
  std::array<char, 32> text;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), rounded == 0 ? 0.0 : rounded).ptr;
  return {text.data(), end};
}

std::string Pair(Point point) {
  return Number(point.x) + " " + Number(point.y);
}

std::string At(const char* x, const char* y, Point point) {
  return std::string(x) + "=\"" + Number(point.x) + "\" " + y + "=\"" + Number(point.y) + "\"";
}

std::string TokensText(int64_t tokens) {
  return std::to_string(tokens) + (tokens == 1 ? " token" : " tokens");
}

class Writer {
 public:
  Writer(const PetriNet& net, const Drawing& drawing, const PictureOptions& options)
      : net_(net),
        drawing_(drawing),
        placeClasses_(net.places.size(), "place"),
        transitionClasses_(net.transitions.size(), "transition ") {
    for (size_t p = 0; p < net.places.size(); ++p) {
      if (net.places[p].tokens > 0) placeClasses_[p] += " marked";
      if (!options.monitors.empty() && options.monitors[p]) placeClasses_[p] += " monitor";
    }
    for (size_t t = 0; t < net.transitions.size(); ++t) {
      transitionClasses_[t] += WordOf(net.transitions[t].kind);
    }
    for (const Highlight& highlight : options.highlights) Show(highlight);
  }

  std::string Document(bool forPage) {
    const std::string width = Number(drawing_.width), height = Number(drawing_.height);
    svg_ = "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"net\" role=\"img\" viewBox=\"0 0 " + width +
           " " + height + "\" width=\"" + width + "\" height=\"" + height + "\">\n";
    if (!forPage) {
      svg_ += "<title>" + MarkupText(net_.name) + "</title>\n<style>" + std::string(kNetStyle.text) +
              "</style>\n";
    }
    svg_ +=
        "<defs><marker id=\"arrow\" class=\"head\" markerWidth=\"9\" markerHeight=\"8\" refX=\"8\" "
        "refY=\"4\" "
        "orient=\"auto\" markerUnits=\"userSpaceOnUse\"><path d=\"M0 0L9 4L0 8Z\"/></marker></defs>\n";
    svg_ += "<g class=\"arcs\">\n";
    for (const DrawnArc& arc : drawing_.arcs) WriteArc(arc);
    svg_ += "</g>\n<g class=\"nodes\">\n";
    for (size_t t = 0; t < net_.transitions.size(); ++t) WriteTransition(t);
    for (size_t p = 0; p < net_.places.size(); ++p) WritePlace(p);
    svg_ += "</g>\n</svg>\n";
    return std::move(svg_);
  }

 private:
  void Show(const Highlight& highlight) {
    for (const int32_t p : highlight.places) {
      std::string& classes = placeClasses_[static_cast<size_t>(p)];
      if (classes.find(" siphon") == std::string::npos) classes += " siphon";
      classes += " " + highlight.name;
    }
    for (const int32_t t : DrainingTransitions(net_, highlight.places)) {
      std::string& classes = transitionClasses_[static_cast<size_t>(t)];
      if (classes.find(" drains") == std::string::npos) classes += " drains";
    }
  }

  void WriteArc(const DrawnArc& arc) {
    constexpr std::array<const char*, 3> kWords = {"input", "output", "inhibitor"};
    svg_ += std::string("<g class=\"arc ") + kWords[static_cast<size_t>(arc.kind)] + "\" data-place=\"" +
            std::to_string(arc.place) + "\" data-transition=\"" + std::to_string(arc.transition) +
            "\"><path d=\"M" + Pair(arc.line.front());
    for (size_t i = 1; i < arc.line.size(); ++i) {
      svg_ += (arc.curved ? (i % 3 == 1 ? "C" : " ") : "L") + Pair(arc.line[i]);
    }
    svg_ += arc.kind == DrawnArcKind::kInhibitor ? "\"/>" : "\" marker-end=\"url(#arrow)\"/>";
    if (arc.kind == DrawnArcKind::kInhibitor) {
      svg_ += "<circle " + At("cx", "cy", arc.line.back()) + " r=\"" + Number(kInhibitorRadius) + "\"/>";
    }
    if (!arc.text.empty()) {
      svg_ +=
          "<text " + At("x", "y", {arc.label.x, arc.label.y + 3}) + ">" + MarkupText(arc.text) + "</text>";
    }
    svg_ += "</g>\n";
  }

  void WriteName(const DrawnNode& node, const std::string& name) {
    svg_ += std::string("<text class=\"name") + (node.labelMiddle ? " middle" : "") + "\" " +
            At("x", "y", node.label) + ">" + MarkupText(name) + "</text>";
  }

  void WritePlace(size_t p) {
    const DrawnNode& node = drawing_.places[p];
    const Place& place = net_.places[p];
    svg_ += "<g class=\"" + placeClasses_[p] + "\" id=\"p" + std::to_string(p) + "\"><title>" +
            MarkupText(place.name) + ": " + TokensText(place.tokens) + "</title><circle class=\"shape\" " +
            At("cx", "cy", node.centre) + " r=\"" + Number(kPlaceRadius) + "\"/>";
    WriteTokens(node.centre, place.tokens);
    WriteName(node, place.name);
    svg_ += "</g>\n";
  }

  /// Dots, as the dice have them, up to five; beyond that a number.
  void WriteTokens(Point centre, int64_t tokens) {
    constexpr double kOff = 6;
    constexpr std::array<Point, 5> kSpots = {Point{0, 0}, Point{-kOff, -kOff}, Point{kOff, kOff},
                                             Point{kOff, -kOff}, Point{-kOff, kOff}};
    constexpr int64_t kMostDots = 5;
    svg_ += "<g class=\"tokens\">";
    if (tokens > kMostDots) {
      svg_ += "<text " + At("x", "y", {centre.x, centre.y + 4}) + ">" + std::to_string(tokens) + "</text>";
    } else {
      const auto first = static_cast<size_t>(tokens % 2 == 0 ? 1 : 0);  // an odd number has one in the middle
      for (size_t i = first; i < first + static_cast<size_t>(tokens); ++i) {
        svg_ += "<circle " + At("cx", "cy", {centre.x + kSpots[i].x, centre.y + kSpots[i].y}) + " r=\"" +
                Number(kTokenRadius) + "\"/>";
      }
    }
    svg_ += "</g>";
  }

  void WriteTransition(size_t t) {
    const DrawnNode& node = drawing_.transitions[t];
    const Transition& transition = net_.transitions[t];
    const bool immediate = transition.kind == TransitionKind::kImmediate;
    const double thickness = immediate ? kBarThickness : kBoxThickness;
    svg_ += "<g class=\"" + transitionClasses_[t] + "\" id=\"t" + std::to_string(t) + "\"><title>" +
            MarkupText(transition.name) + ": " + WordOf(transition.kind) + "</title><rect class=\"shape\" " +
            At("x", "y", {node.centre.x - kBoxLength / 2, node.centre.y - thickness / 2}) + " width=\"" +
            Number(kBoxLength) + "\" height=\"" + Number(thickness) + "\"";
    if (node.angle != 0)
      svg_ += " transform=\"rotate(" + Number(node.angle) + " " + Pair(node.centre) + ")\"";
    svg_ += "/>";
    WriteName(node, transition.name);
    svg_ += "</g>\n";
  }

  const PetriNet& net_;
  const Drawing& drawing_;
  std::vector<std::string> placeClasses_, transitionClasses_;
  std::string svg_;
};

}  // namespace

std::string SvgOf(const PetriNet& net, const Drawing& drawing, const PictureOptions& options, bool forPage) {
  return Writer(net, drawing, options).Document(forPage);
}

}  // namespace siphons
