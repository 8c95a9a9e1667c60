// What stands in for graphviz_layout.cpp in a build without Graphviz.
#include "netkit/formats/layout.h"

namespace siphons {

bool CanLayOut() {
  return false;
}

std::optional<Drawing> LaidOut(const PetriNet& /*net*/) {
  return std::nullopt;
}

}  // namespace siphons
