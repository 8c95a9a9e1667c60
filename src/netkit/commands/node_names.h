// The number of a place or a transition that a person named on the command line.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "netkit/commands/question.h"
#include "netkit/formats/near_names.h"

namespace siphons {

/// Throws WrongUsage, with a guess at what was meant, when no node has the name; `kind` is what a node is
/// called then. Linear in the nodes.
template <typename Node>
int32_t NumberOfName(const char* kind, const std::vector<Node>& nodes, const std::string& name) {
  std::vector<std::string_view> names;
  for (const Node& node : nodes) names.push_back(node.name);
  const auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) {
    throw WrongUsage{std::string("Unknown ") + kind + " " + name + DidYouMean(name, names)};
  }
  return static_cast<int32_t>(found - names.begin());
}

}  // namespace siphons
