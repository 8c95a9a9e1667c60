// Graphviz's "dot" places the nodes in layers so that most arcs point downwards and few cross (Gansner et al.
// 1993). Its cost grows fast with the net: a net of 500 nodes takes about a second, so the number of its
// improvement rounds is bounded for larger ones.
//
// The library gets the sizes of the nodes in inches and gives positions in points, y upwards. Names are not
// its business: every node leaves room for its own on top.
#include <cgraph.h>
#include <gvc.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string>

#include "netkit/formats/layout.h"

namespace siphons {

namespace {

constexpr double kPointsPerInch = 72;

struct ContextFree {
  void operator()(GVC_t* context) const { gvFreeContext(context); }
};
struct GraphClose {
  void operator()(Agraph_t* graph) const { agclose(graph); }
};

/// The library wants texts that it may change.
void Set(void* object, const char* name, const std::string& value) {
  std::string attribute = name, text = value, none;
  agsafeset(object, attribute.data(), text.data(), none.data());
}

std::string Inches(double pixels) {
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "%.4f", pixels / kPointsPerInch);
  return text.data();
}

class Layout {
 public:
  explicit Layout(const PetriNet& net) : net_(net), context_(gvContext()) {
    std::string name = "net";
    graph_.reset(agopen(name.data(), Agdirected, nullptr));
  }

  std::optional<Drawing> Run() {
    if (!context_ || !graph_) return std::nullopt;
    drawing_.arcs = ArcsOf(net_);
    AddNodes();
    AddEdges();
    std::string engine = "dot";
    agseterr(AGMAX);
    if (gvLayout(context_.get(), graph_.get(), engine.data()) != 0) return std::nullopt;
    Read();
    gvFreeLayout(context_.get(), graph_.get());
    Fit(net_, drawing_);
    return std::move(drawing_);
  }

 private:
  void AddNodes() {
    constexpr size_t kManyNodes = 400;
    constexpr double kRoomForName = 10;
    Set(graph_.get(), "nodesep", "0.45");
    Set(graph_.get(), "ranksep", "0.5");
    if (net_.places.size() + net_.transitions.size() > kManyNodes) {
      for (const char* const bound : {"nslimit", "nslimit1", "mclimit"}) Set(graph_.get(), bound, "0.5");
    }
    const auto add = [this](char letter, size_t number, double width, double height, const char* shape) {
      std::string name = letter + std::to_string(number);
      Agnode_t* const node = agnode(graph_.get(), name.data(), 1);
      Set(node, "shape", shape);
      Set(node, "label", "");
      Set(node, "fixedsize", "true");
      Set(node, "width", Inches(width));
      Set(node, "height", Inches(height));
      return node;
    };
    for (size_t p = 0; p < net_.places.size(); ++p) {
      places_.push_back(add('p', p, 2 * kPlaceRadius, 2 * kPlaceRadius, "circle"));
    }
    for (size_t t = 0; t < net_.transitions.size(); ++t) {
      const bool immediate = net_.transitions[t].kind == TransitionKind::kImmediate;
      const double thickness = immediate ? kBarThickness : kBoxThickness;
      transitions_.push_back(add('t', t, kBoxLength + kRoomForName, thickness, "box"));
    }
  }

  void AddEdges() {
    for (const DrawnArc& arc : drawing_.arcs) {
      Agnode_t* const place = places_[static_cast<size_t>(arc.place)];
      Agnode_t* const transition = transitions_[static_cast<size_t>(arc.transition)];
      const bool fromPlace = arc.kind != DrawnArcKind::kOutput;
      std::string key = arc.kind == DrawnArcKind::kInhibitor ? "inhibitor" : "arc";
      Agedge_t* const edge =
          agedge(graph_.get(), fromPlace ? place : transition, fromPlace ? transition : place, key.data(), 1);
      Set(edge, "dir", "none");  // the line then reaches the border of both nodes
      edges_.push_back(edge);
    }
  }

  void Read() {
    const auto node = [](Agnode_t* laidOut, double angle) {
      const pointf at = ND_coord(laidOut);
      DrawnNode drawn;
      drawn.centre = {at.x, -at.y};
      drawn.label = {at.x + kPlaceRadius + 4, -at.y - kPlaceRadius + 2};
      drawn.labelMiddle = false;
      drawn.angle = angle;
      return drawn;
    };
    for (Agnode_t* const place : places_) drawing_.places.push_back(node(place, 0));
    for (Agnode_t* const transition : transitions_) drawing_.transitions.push_back(node(transition, 0));
    for (size_t i = 0; i < edges_.size(); ++i) ReadLine(edges_[i], drawing_.arcs[i]);
  }

  void ReadLine(Agedge_t* edge, DrawnArc& arc) const {
    const splines* const lines = ED_spl(edge);
    if (lines == nullptr || lines->size == 0) {
      const bool fromPlace = arc.kind != DrawnArcKind::kOutput;
      const Point place = drawing_.places[static_cast<size_t>(arc.place)].centre;
      const Point transition = drawing_.transitions[static_cast<size_t>(arc.transition)].centre;
      arc.line = fromPlace ? std::vector<Point>{place, transition} : std::vector<Point>{transition, place};
    } else {
      const bezier& line = lines->list[0];
      for (size_t i = 0; i < static_cast<size_t>(line.size); ++i) {
        arc.line.push_back({line.list[i].x, -line.list[i].y});
      }
      arc.curved = true;
    }
    const Point middle = arc.line[arc.line.size() / 2];
    arc.label = {middle.x + 8, middle.y};
  }

  const PetriNet& net_;
  std::unique_ptr<GVC_t, ContextFree> context_;
  std::unique_ptr<Agraph_t, GraphClose> graph_;  // goes before the context
  std::vector<Agnode_t*> places_, transitions_;  // owned by the graph
  std::vector<Agedge_t*> edges_;                 // by arc; owned by the graph
  Drawing drawing_;
};

}  // namespace

bool CanLayOut() {
  return true;
}

std::optional<Drawing> LaidOut(const PetriNet& net) {
  return Layout(net).Run();
}

}  // namespace siphons
