// The geometry of a net's picture: where every node, arc and label goes. The writers of pictures
// (svg_writer.h, dot_writer.h) turn it into a file and decide nothing about positions.
//
// A drawing takes the positions of the net's file where they are sensible: every node has one, no two nodes
// lie on top of each other, and the picture does not become larger than a person can use. They are then
// scaled so that neighbours keep a distance at which names can be read. Otherwise layout.h lays the net out
// in layers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "netkit/model/petri_net.h"

namespace siphons {

inline constexpr double kPlaceRadius = 14;
inline constexpr double kBoxLength = 30;  ///< of a timed transition, in pixels
inline constexpr double kBoxThickness = 14;
inline constexpr double kBarThickness = 5;  ///< of an immediate transition, which is as long as a box

enum class DrawnArcKind : uint8_t { kInput, kOutput, kInhibitor };

/// A place or a transition in the picture. Lengths are in pixels, y grows downwards.
struct DrawnNode {
  Point centre;
  Point label;              ///< where the name starts, or its middle
  bool labelMiddle = true;  ///< the name is centred at `label`
  double angle = 0;         ///< of a transition's long side against the horizontal, in degrees
};

struct DrawnArc {
  DrawnArcKind kind = DrawnArcKind::kInput;
  int32_t place = 0;
  int32_t transition = 0;
  int64_t weight = 1;
  std::string text;         ///< the weight as the picture shows it; empty: 1
  std::vector<Point> line;  ///< from the source's border to the target's
  bool curved = false;      ///< the line is a chain of cubic Bezier curves, 3 n + 1 points
  Point label;              ///< where the weight stands
};

struct Drawing {
  double width = 0;
  double height = 0;
  std::vector<DrawnNode> places;       ///< as in the net
  std::vector<DrawnNode> transitions;  ///< as in the net
  std::vector<DrawnArc> arcs;          ///< by transition; inputs, outputs, inhibitors
};

/// Whether the net's own positions make a picture.
bool HasSensiblePositions(const PetriNet& net);

/// The drawing by the net's own positions, which must be sensible.
Drawing DrawingByPositions(const PetriNet& net);

/// All arcs of the net, without lines.
std::vector<DrawnArc> ArcsOf(const PetriNet& net);

/// Sets width and height, and moves everything so that it begins at the margin.
void Fit(const PetriNet& net, Drawing& drawing);

}  // namespace siphons
