// The options of netkit siphons about what may become of a siphon's tokens: --status and --may-run-dry.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "netkit/commands/command_line.h"
#include "netkit/verdict/siphon_status.h"

namespace siphons {

struct StatusOptions {
  bool show = false;       ///< say the status of each
  bool mayRunDry = false;  ///< leave out those that always keep enough tokens
};

void AddStatusOptions(const Command& command, StatusOptions& options);

/// A siphon that is wanted, with its status where that was asked for.
struct StatedSiphon {
  PlaceList places;
  std::optional<SiphonStatus> status;
};

/// " <status>", to stand behind a siphon, or nothing.
std::string StatusSuffix(const StatedSiphon& siphon);

class StatusFilter {
 public:
  /// The net and the options must outlive the object. Without one of the options nothing is decided.
  StatusFilter(const PetriNet& net, const StatusOptions& options);

  /// Whether an option was given.
  bool Decides() const { return statuses_.has_value(); }

  /// The siphon with its status, or none where it is not wanted. When `stop` asks for an end meanwhile, the
  /// status means nothing.
  std::optional<StatedSiphon> Wanted(PlaceList siphon, const std::function<bool()>& stop);

 private:
  const StatusOptions& options_;
  std::optional<SiphonStatuses> statuses_;
};

}  // namespace siphons
