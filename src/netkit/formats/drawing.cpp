// Scaling: the nearest pair of nodes gives the scale. It is found by a sweep over the nodes sorted by x,
// which looks at the neighbours within the best distance so far only; n log n for pictures that people drew.
//
// Arcs end at the border of their nodes. Two arcs without path points between the same pair of nodes, such as
// those of a place that a transition only tests, would lie on top of each other; each is then bent to its own
// side by a path point next to the middle.
#include "netkit/formats/drawing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <numbers>
#include <utility>

namespace siphons {

namespace {

constexpr double kNearest = 64;      // pixels between neighbours
constexpr double kLargest = 20'000;  // pixels, width or height
constexpr double kMargin = 24;
constexpr Point kLabelOffset{0, -kPlaceRadius - 5};  // above the node
constexpr double kLetter = 6.6;                      // about the width of a letter of a name
constexpr double kLine = 12;                         // the height of a name

Point operator+(Point a, Point b) {
  return {a.x + b.x, a.y + b.y};
}
Point operator-(Point a, Point b) {
  return {a.x - b.x, a.y - b.y};
}
Point operator*(Point a, double factor) {
  return {a.x * factor, a.y * factor};
}
double Length(Point a) {
  return std::hypot(a.x, a.y);
}

std::vector<Point> NodePositions(const PetriNet& net) {
  std::vector<Point> positions;
  for (const Place& place : net.places) {
    if (place.position) positions.push_back(*place.position);
  }
  for (const Transition& transition : net.transitions) {
    if (transition.position) positions.push_back(*transition.position);
  }
  return positions;
}

struct Extent {
  double width;
  double height;
};

Extent ExtentOf(const std::vector<Point>& points) {
  const auto [left, right] =
      std::minmax_element(points.begin(), points.end(), [](Point a, Point b) { return a.x < b.x; });
  const auto [top, bottom] =
      std::minmax_element(points.begin(), points.end(), [](Point a, Point b) { return a.y < b.y; });
  return {right->x - left->x, bottom->y - top->y};
}

double NearestDistance(std::vector<Point> points) {
  const Extent extent = ExtentOf(points);
  if (extent.height > extent.width) {
    for (Point& point : points) std::swap(point.x, point.y);
  }
  std::sort(points.begin(), points.end(), [](Point a, Point b) { return a.x < b.x; });
  double nearest = std::numeric_limits<double>::infinity();
  for (size_t i = 0; i < points.size() && nearest > 0; ++i) {
    for (size_t j = i; j-- > 0 && points[i].x - points[j].x < nearest;) {
      nearest = std::min(nearest, Length(points[i] - points[j]));
    }
  }
  return nearest;
}

/// By what the file's positions are multiplied; 0 when they make no picture.
double ScaleOf(const PetriNet& net) {
  const std::vector<Point> positions = NodePositions(net);
  if (positions.empty() || positions.size() != net.places.size() + net.transitions.size()) return 0;
  const bool finite = std::all_of(positions.begin(), positions.end(),
                                  [](Point p) { return std::isfinite(p.x) && std::isfinite(p.y); });
  if (!finite) return 0;
  const double nearest = NearestDistance(positions);
  if (nearest == 0) return 0;
  const double scale = std::max(1.0, kNearest / nearest);  // one node alone: 1
  const Extent extent = ExtentOf(positions);
  return std::max(extent.width, extent.height) * scale <= kLargest ? scale : 0;
}

/// Clockwise, as the picture's y axis points downwards; the file's angles turn the other way.
double AngleOf(Orientation orientation) {
  switch (orientation) {
    case Orientation::k0:
      break;
    case Orientation::k45:
      return -45;
    case Orientation::k90:
      return -90;
    case Orientation::kMinus45:
      return 45;
  }
  return 0;
}

DrawnNode NodeOf(const std::optional<Point>& position, const std::optional<Point>& label, double scale,
                 double angle) {
  constexpr double kFarthest = 120;  // a label farther from its node belongs to it no more
  DrawnNode node;
  node.centre = position.value_or(Point{}) * scale;
  node.angle = angle;
  node.label = node.centre + kLabelOffset;
  if (label && position) {
    const Point offset = *label - *position;
    const double distance = Length(offset);
    // A label at its node's centre was never placed.
    if (distance > 0 && distance <= kFarthest && std::isfinite(distance)) {
      node.label = node.centre + offset * std::max(scale, (kPlaceRadius + 4) / distance);
      node.labelMiddle = false;
    }
  }
  return node;
}

/// The point at which the way from the node's centre towards `outside` leaves the node.
Point Border(const DrawnNode& node, Point outside, bool isPlace, bool isImmediate) {
  const Point way = outside - node.centre;
  const double length = Length(way);
  if (length == 0) return node.centre;
  if (isPlace) return node.centre + way * (kPlaceRadius / length);
  const double angle = node.angle * std::numbers::pi / 180;
  const double along = std::abs(way.x * std::cos(angle) + way.y * std::sin(angle));
  const double across = std::abs(way.y * std::cos(angle) - way.x * std::sin(angle));
  const double thickness = isImmediate ? kBarThickness : kBoxThickness;
  const double factor =
      std::min(along > 0 ? kBoxLength / 2 / along : 1, across > 0 ? thickness / 2 / across : 1);
  return node.centre + way * std::min(factor, 1.0);
}

/// The point halfway along the line, a little to its side.
Point LabelPoint(const std::vector<Point>& line) {
  constexpr double kAside = 9;
  double length = 0;
  for (size_t i = 1; i < line.size(); ++i) length += Length(line[i] - line[i - 1]);
  double left = length / 2;
  for (size_t i = 1; i < line.size(); ++i) {
    const Point way = line[i] - line[i - 1];
    const double part = Length(way);
    if (part > 0 && left <= part) {
      const Point aside = Point{-way.y, way.x} * (kAside / part);
      return line[i - 1] + way * (left / part) + aside;
    }
    left -= part;
  }
  return line.front();
}

class Router {
 public:
  Router(const PetriNet& net, const Drawing& drawing, double scale)
      : net_(net), drawing_(drawing), scale_(scale) {}

  void CountArcs(const std::vector<DrawnArc>& arcs) {
    for (const DrawnArc& arc : arcs) ++arcsBetween_[{arc.place, arc.transition}];
  }

  void Route(DrawnArc& arc, const std::vector<Point>& path) {
    const DrawnNode& place = drawing_.places[static_cast<size_t>(arc.place)];
    const DrawnNode& transition = drawing_.transitions[static_cast<size_t>(arc.transition)];
    const bool immediate =
        net_.transitions[static_cast<size_t>(arc.transition)].kind == TransitionKind::kImmediate;
    const bool fromPlace = arc.kind != DrawnArcKind::kOutput;
    arc.line.assign(1, fromPlace ? place.centre : transition.centre);
    for (const Point& point : path) {
      if (std::isfinite(point.x) && std::isfinite(point.y)) arc.line.push_back(point * scale_);
    }
    arc.line.push_back(fromPlace ? transition.centre : place.centre);
    if (arc.line.size() == 2 && arcsBetween_[{arc.place, arc.transition}] > 1) Bend(arc.line);
    Point& source = arc.line.front();
    Point& target = arc.line.back();
    source = Border(fromPlace ? place : transition, arc.line[1], fromPlace, immediate);
    target = Border(fromPlace ? transition : place, arc.line[arc.line.size() - 2], !fromPlace, immediate);
    arc.label = LabelPoint(arc.line);
  }

 private:
  /// Puts a point beside the middle, on the left of the way.
  static void Bend(std::vector<Point>& line) {
    constexpr double kBow = 0.18;
    const Point way = line[1] - line[0];
    line.insert(line.begin() + 1, line[0] + way * 0.5 + Point{way.y, -way.x} * kBow);
  }

  const PetriNet& net_;
  const Drawing& drawing_;
  double scale_;
  std::map<std::pair<int32_t, int32_t>, int32_t> arcsBetween_;
};

/// The rectangle that everything fits into.
struct Frame {
  Point least{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
  Point greatest{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};

  void Hold(Point point) {
    least = {std::min(least.x, point.x), std::min(least.y, point.y)};
    greatest = {std::max(greatest.x, point.x), std::max(greatest.y, point.y)};
  }
  void Hold(const DrawnNode& node, const std::string& name) {
    Hold(node.centre + Point{-kBoxLength / 2, -kBoxLength / 2});
    Hold(node.centre + Point{kBoxLength / 2, kBoxLength / 2});
    const double width = kLetter * static_cast<double>(name.size());
    const double left = node.labelMiddle ? -width / 2 : 0;
    Hold(node.label + Point{left, -kLine});
    Hold(node.label + Point{left + width, kLine / 2});
  }
};

void Move(Drawing& drawing, Point by) {
  for (std::vector<DrawnNode>* const nodes : {&drawing.places, &drawing.transitions}) {
    for (DrawnNode& node : *nodes) {
      node.centre = node.centre + by;
      node.label = node.label + by;
    }
  }
  for (DrawnArc& arc : drawing.arcs) {
    for (Point& point : arc.line) point = point + by;
    arc.label = arc.label + by;
  }
}

}  // namespace

bool HasSensiblePositions(const PetriNet& net) {
  return ScaleOf(net) > 0;
}

std::vector<DrawnArc> ArcsOf(const PetriNet& net) {
  std::vector<DrawnArc> drawn;
  for (size_t t = 0; t < net.transitions.size(); ++t) {
    const auto add = [&drawn, t](const std::vector<Arc>& arcs, DrawnArcKind kind) {
      for (const Arc& arc : arcs) {
        DrawnArc& entry = drawn.emplace_back();
        entry.kind = kind;
        entry.place = arc.place;
        entry.transition = static_cast<int32_t>(t);
        entry.weight = arc.weight;
        if (arc.markingDependent) {
          entry.text = arc.weightText.empty() ? "<MD>" : arc.weightText;
        } else if (arc.weight != 1) {
          entry.text = std::to_string(arc.weight);
        }
      }
    };
    add(net.transitions[t].inputs, DrawnArcKind::kInput);
    add(net.transitions[t].outputs, DrawnArcKind::kOutput);
    add(net.transitions[t].inhibitors, DrawnArcKind::kInhibitor);
  }
  return drawn;
}

void Fit(const PetriNet& net, Drawing& drawing) {
  Frame frame;
  if (drawing.places.empty() && drawing.transitions.empty()) frame.Hold(Point{0, 0});
  for (size_t p = 0; p < drawing.places.size(); ++p) frame.Hold(drawing.places[p], net.places[p].name);
  for (size_t t = 0; t < drawing.transitions.size(); ++t) {
    frame.Hold(drawing.transitions[t], net.transitions[t].name);
  }
  for (const DrawnArc& arc : drawing.arcs) {
    for (const Point& point : arc.line) frame.Hold(point);
  }
  Move(drawing, Point{kMargin, kMargin} - frame.least);
  drawing.width = frame.greatest.x - frame.least.x + 2 * kMargin;
  drawing.height = frame.greatest.y - frame.least.y + 2 * kMargin;
}

Drawing DrawingByPositions(const PetriNet& net) {
  const double scale = ScaleOf(net);
  Drawing drawing;
  for (const Place& place : net.places) {
    drawing.places.push_back(NodeOf(place.position, place.labelPosition, scale, 0));
  }
  for (const Transition& transition : net.transitions) {
    drawing.transitions.push_back(
        NodeOf(transition.position, transition.labelPosition, scale, AngleOf(transition.orientation)));
  }
  drawing.arcs = ArcsOf(net);
  Router router(net, drawing, scale);
  router.CountArcs(drawing.arcs);
  auto next = drawing.arcs.begin();
  for (const Transition& transition : net.transitions) {
    for (const std::vector<Arc>* const arcs :
         {&transition.inputs, &transition.outputs, &transition.inhibitors}) {
      for (const Arc& arc : *arcs) router.Route(*next++, arc.path);
    }
  }
  Fit(net, drawing);
  return drawing;
}

}  // namespace siphons
