// The definition info of a net: records of the marking-dependent arcs, delays and enabling functions, with
// the places on which each depends.
#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "netkit/formats/pd_writer.h"

namespace siphons {

namespace {

/// The numbers of the places that a text names behind '#', each once, in the order of the text. A name is as
/// long as a place of that name exists.
class PlaceReferences {
 public:
  explicit PlaceReferences(const PetriNet& net) {
    for (size_t p = 0; p < net.places.size(); ++p) {
      numbers_.emplace(net.places[p].name, p);
      longest_ = std::max(longest_, net.places[p].name.size());
    }
  }

  /// " COUNT NUMBER ...\n", as it stands in a record.
  std::string In(std::string_view text) const {
    std::vector<size_t> found;
    for (size_t at = text.find('#'); at != std::string_view::npos; at = text.find('#', at + 1)) {
      const std::string_view rest = text.substr(at + 1, longest_);
      for (size_t length = rest.size(); length > 0; --length) {
        const auto place = numbers_.find(std::string(rest.substr(0, length)));
        if (place == numbers_.end()) continue;
        if (std::find(found.begin(), found.end(), place->second) == found.end())
          found.push_back(place->second);
        break;
      }
    }
    std::string list = " " + std::to_string(found.size());
    for (const size_t number : found) list += " " + std::to_string(number);
    return list + "\n";
  }

 private:
  std::unordered_map<std::string, size_t> numbers_;
  size_t longest_ = 0;
};

}  // namespace

std::string WriteDefinitionInfo(const PetriNet& net) {
  const PlaceReferences references(net);
  std::string arcRecords, delayRecords, functionRecords;
  int64_t arcCount = 0, delayCount = 0, functionCount = 0;
  for (size_t t = 0; t < net.transitions.size(); ++t) {
    const Transition& transition = net.transitions[t];
    const std::vector<Arc>* const groups[] = {&transition.inputs, &transition.outputs,
                                              &transition.inhibitors};
    for (size_t kind = 0; kind < std::size(groups); ++kind) {
      for (const Arc& arc : *groups[kind]) {
        if (!arc.markingDependent) continue;
        arcRecords += "MD_ARC " + std::to_string(++arcCount) + " " + std::to_string(kind) + " " +
                      std::to_string(t) + " " + std::to_string(arc.place) + " PLACES" +
                      references.In(arc.weightText);
      }
    }
    const auto record = [&](const char* label, int64_t& count, const std::string& text) {
      return std::string(label) + " " + std::to_string(++count) + " " + std::to_string(t) + " PLACES" +
             references.In(text);
    };
    if (transition.delay.kind == TransitionDelay::Kind::kMarkingDependent) {
      delayRecords += record("MD_DELAY", delayCount, transition.delay.text);
    }
    if (transition.enablingFunction) {
      functionRecords += record("MD_ENABLE", functionCount, *transition.enablingFunction);
    }
  }
  return "MD_ARCS: " + std::to_string(arcCount) + "\n" + arcRecords +
         "END_MD_ARCS\nMD_DELAYS: " + std::to_string(delayCount) + "\n" + delayRecords +
         "MD_ENABLING: " + std::to_string(functionCount) + "\n" + functionRecords;
}

}  // namespace siphons
