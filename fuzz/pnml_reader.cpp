// Any bytes as a PNML file: what the reader accepts is a net whose parts fit together, and the same net again
// when it is written and read once more.
#include <set>

#include "fuzz/harness.h"
#include "netkit/formats/pd_writer.h"
#include "netkit/formats/pnml_reader.h"
#include "netkit/formats/pnml_writer.h"
#include "netkit/model/same_net.h"

namespace {

using namespace siphons;

void CheckParts(const PetriNet& net) {
  std::set<std::string> names;
  for (const Place& place : net.places) {
    Require(place.tokens >= 0, "a negative number of tokens");
    Require(!place.name.empty() && names.insert(place.name).second, "a place without a name of its own");
  }
  for (const Transition& transition : net.transitions) {
    Require(!transition.name.empty() && names.insert(transition.name).second,
            "a transition without a name of its own");
    for (const std::vector<Arc>* arcs : {&transition.inputs, &transition.outputs, &transition.inhibitors}) {
      std::set<int32_t> places;
      for (const Arc& arc : *arcs) {
        Require(arc.weight >= 1, "a weight below 1");
        Require(arc.place >= 0 && static_cast<size_t>(arc.place) < net.places.size(), "an arc to no place");
        Require(places.insert(arc.place).second, "two arcs of a group to one place");
      }
    }
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Diagnostics diagnostics("net.pnml");
  std::optional<PetriNet> net = ReadPnml(std::string(data, data + size), diagnostics);
  Require(net.has_value() == !diagnostics.HasErrors(), "refused without an error, or accepted with one");
  if (!net) return 0;
  CheckParts(*net);
  const std::optional<PetriNet> again = ReadPnml(WritePnml(*net), diagnostics);
  Require(again.has_value(), "what was written is refused");
  Require(DifferenceOf(*net, *again).empty(), "what was written is another net");
  MakeNamesLegal(*net);
  Require(WritePd(*net, diagnostics).has_value() == !diagnostics.HasErrors(),
          "neither written as .PD nor refused");
  return 0;
}
