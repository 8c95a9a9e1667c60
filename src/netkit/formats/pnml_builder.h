// The elements of a PNML file made into a net: all nodes of all pages first, then the arcs between them,
// because an arc may stand before its ends and refer to them through reference nodes.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "netkit/formats/diagnostics.h"
#include "netkit/formats/xml_text.h"
#include "netkit/model/petri_net.h"

namespace siphons {

class PnmlBuilder {
 public:
  PnmlBuilder(const LineTable& lines, Diagnostics& diagnostics) : lines_(lines), diagnostics_(diagnostics) {}

  PetriNet Build(pugi::xml_node net);

 private:
  enum class NodeKind : uint8_t { kPlace, kTransition, kReference, kOther };
  struct Node {
    NodeKind kind = NodeKind::kOther;
    int32_t number = -1;         ///< of the place or transition
    std::string_view reference;  ///< the id that a reference node stands for
    SourcePosition where;
  };
  enum class ArcKind : uint8_t { kNormal, kInhibitor };

  // pnml_builder.cpp: nodes.
  void CheckType(pugi::xml_node net);
  void TakePage(pugi::xml_node page);
  void TakePlace(pugi::xml_node element);
  void TakeTransition(pugi::xml_node element);
  void TakeReference(pugi::xml_node element);
  Node* Declare(pugi::xml_node element, NodeKind kind);
  void CheckChildren(pugi::xml_node element);
  void WarnOfUnknown(pugi::xml_node element);
  void GiveNames();

  // pnml_arcs.cpp: arcs.
  void TakeArc(pugi::xml_node element);
  std::optional<ArcKind> KindOf(pugi::xml_node element);
  const Node* EndOf(pugi::xml_node element, const char* attribute);
  std::optional<int64_t> WeightOf(pugi::xml_node element);
  void Add(int32_t transition, uint64_t group, Arc arc);
  static std::vector<Point> PathOf(pugi::xml_node element);
  void TakeDelayed(pugi::xml_node element);

  // pnml_tool_data.cpp: what only this program writes and reads, so that no part of a net gets lost.
  void TakeToolData(pugi::xml_node element, Transition& transition);
  static void TakeToolData(pugi::xml_node element, Arc& arc);
  void TakeNetToolData(pugi::xml_node net);
  void TakePositions(pugi::xml_node net);
  void TakeMarkingParameters();

  // What all use, pnml_builder.cpp.
  SourcePosition Where(pugi::xml_node element) const { return lines_.Where(element.offset_debug()); }
  void Error(pugi::xml_node element, std::string message) {
    diagnostics_.Error(Where(element), std::move(message));
  }
  /// The number that a marking or inscription gives; reports and gives nothing when it is none.
  std::optional<int64_t> Count(pugi::xml_node element, std::string_view text, std::string_view what,
                               int64_t least);
  static std::optional<Point> PointOf(pugi::xml_node element, const char* x = "x", const char* y = "y");

  const LineTable& lines_;
  Diagnostics& diagnostics_;
  PetriNet net_;
  std::unordered_map<std::string_view, Node> nodes_;  ///< by id, in the document's own text
  std::vector<std::string> placeLabels_, transitionLabels_;
  std::vector<pugi::xml_node> arcs_;
  std::unordered_map<uint64_t, size_t> arcNumbers_;  ///< by place, transition and group: the arc in its group
  std::vector<std::pair<size_t, pugi::xml_node>> transitionElements_;
  std::map<std::string, bool> warned_;  ///< names of elements that were left out
};

/// The text of an element that holds its value as <text> or <value>, without blanks around it.
std::string ValueOf(pugi::xml_node element);

/// The block of an element that this program wrote, or none.
pugi::xml_node ToolDataOf(pugi::xml_node element);

/// The name by which files tell the blocks of this program.
inline constexpr const char* kToolName = "netkit";

/// The value of the attribute "positions" in the tool data of a net whose nodes, labels and delays are all
/// there and have no elements that say it.
inline constexpr std::string_view kAllAtOrigin = "origin";

}  // namespace siphons
