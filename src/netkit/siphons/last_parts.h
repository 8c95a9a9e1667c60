// The parts of the component that was asked for last. Jobs of one component mostly follow each other, and
// parts cost as much as all its arcs to set up.
#pragma once

#include <memory>

#include "netkit/siphons/component.h"
#include "netkit/siphons/siphon_parts.h"

namespace siphons {

class LastParts {
 public:
  /// Good until the next call.
  SiphonParts& Of(const std::shared_ptr<const Component>& component) {
    if (component_ != component) {
      parts_ = std::make_unique<SiphonParts>(component->arcs);
      component_ = component;
    }
    return *parts_;
  }

 private:
  std::shared_ptr<const Component> component_;  // before the parts, which refer to its arcs
  std::unique_ptr<SiphonParts> parts_;
};

}  // namespace siphons
