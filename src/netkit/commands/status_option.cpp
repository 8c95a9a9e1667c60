#include "netkit/commands/status_option.h"

#include <utility>

namespace siphons {

void AddStatusOptions(const Command& command, StatusOptions& options) {
  command.AddFlag("--status", options.show,
                  "say of each: marked trap inside, never runs dry, may run dry, or empty from the start");
  command
      .AddFlag("--may-run-dry", options.mayRunDry,
               "only those that may run dry or are empty from the start: no proof keeps tokens in them")
      .Excludes({"--smallest"});
}

std::string StatusSuffix(const StatedSiphon& siphon) {
  return siphon.status ? std::string(" ") + TextOf(*siphon.status) : "";
}

StatusFilter::StatusFilter(const PetriNet& net, const StatusOptions& options) : options_(options) {
  if (options.show || options.mayRunDry) statuses_.emplace(net);
}

std::optional<StatedSiphon> StatusFilter::Wanted(PlaceList siphon, const std::function<bool()>& stop) {
  if (!statuses_) return StatedSiphon{std::move(siphon), {}};
  const SiphonStatus status = statuses_->Of(siphon, stop);
  const bool keepsTokens = status == SiphonStatus::kMarkedTrap || status == SiphonStatus::kNeverRunsDry;
  if (options_.mayRunDry && keepsTokens) return std::nullopt;
  return StatedSiphon{std::move(siphon), options_.show ? std::optional(status) : std::nullopt};
}

}  // namespace siphons
