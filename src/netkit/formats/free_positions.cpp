// A place goes to the middle of its transitions, or to the first free point on growing rings round it. The
// distance to be kept is the smallest one that the drawing has already: quadratic in the nodes.
#include "netkit/formats/free_positions.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

namespace siphons {

namespace {

constexpr size_t kMostNodes = 3000;

double Distance(Point a, Point b) {
  return std::hypot(a.x - b.x, a.y - b.y);
}

/// Infinite where there are no points.
double DistanceTo(const std::vector<Point>& points, Point point) {
  double least = std::numeric_limits<double>::infinity();
  for (const Point& other : points) least = std::min(least, Distance(other, point));
  return least;
}

/// The smallest distance between two points.
double Spacing(const std::vector<Point>& points) {
  double least = std::numeric_limits<double>::infinity();
  for (size_t i = 1; i < points.size(); ++i) {
    least = std::min(
        least, DistanceTo({points.begin(), points.begin() + static_cast<std::ptrdiff_t>(i)}, points[i]));
  }
  return least;
}

/// The middle of the transitions that the place is joined to; they have positions.
Point Middle(const PetriNet& net, int32_t place) {
  Point sum;
  double count = 0;
  for (const Transition& transition : net.transitions) {
    for (const std::vector<Arc>* arcs : {&transition.inputs, &transition.outputs, &transition.inhibitors}) {
      if (std::none_of(arcs->begin(), arcs->end(), [place](const Arc& arc) { return arc.place == place; }))
        continue;
      sum = {sum.x + transition.position->x, sum.y + transition.position->y};
      ++count;
    }
  }
  return count == 0 ? *net.transitions[0].position : Point{sum.x / count, sum.y / count};
}

Point FreePoint(const std::vector<Point>& taken, Point middle, double spacing) {
  constexpr int kDirections = 16;
  if (DistanceTo(taken, middle) >= spacing) return middle;
  for (double radius = spacing;; radius += spacing / 2) {
    for (int i = 0; i < kDirections; ++i) {
      const double angle = 2 * std::numbers::pi * i / kDirections;
      const Point point{std::round(middle.x + radius * std::cos(angle)),
                        std::round(middle.y + radius * std::sin(angle))};
      if (DistanceTo(taken, point) >= spacing) return point;
    }
  }
}

}  // namespace

void GivePositions(PetriNet& net) {
  std::vector<Point> taken;
  for (const Place& place : net.places) {
    if (place.position) taken.push_back(*place.position);
  }
  for (const Transition& transition : net.transitions) {
    if (!transition.position) return;
    taken.push_back(*transition.position);
  }
  if (net.transitions.empty() || taken.size() == net.transitions.size() || taken.size() > kMostNodes) return;
  const double spacing = Spacing(taken);
  if (spacing == 0) return;
  for (size_t p = 0; p < net.places.size(); ++p) {
    if (net.places[p].position) continue;
    net.places[p].position = FreePoint(taken, Middle(net, static_cast<int32_t>(p)), spacing);
    taken.push_back(*net.places[p].position);
  }
}

}  // namespace siphons
