// Any bytes as a .PD file: what the strict reader accepts, the report program's loader reads too, without a
// report, as the same net.
#include <iostream>
#include <sstream>

#include "fuzz/harness.h"
#include "net/load_net.h"
#include "netkit/formats/pd_reader.h"
#include "tests/same_net.h"

namespace {

using namespace siphons;

/// The counts of parameters and measures need no announcement, which the loader mentions.
int32_t OnlyMissingCounts(const char* message, int32_t fatal) {
  Require(fatal == 0 && message[0] == '-', message);
  return 0;
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(data, data + size);
  Diagnostics diagnostics("net.PD");
  const std::optional<PetriNet> net = ReadPd(text, "net", diagnostics);
  Require(net.has_value() == !diagnostics.HasErrors(), "refused without an error, or accepted with one");
  if (!net) return 0;
  std::stringbuf buffer(text);
  std::streambuf* const input = std::cin.rdbuf(&buffer);
  std::cin.clear();
  try {
    const OwnedNet loaded(load_net(nullptr, OnlyMissingCounts, false));
    Require(loaded != nullptr, "the loader has no net");
    Require(NetComparison(*net, *loaded).Difference().empty(), "the loader has another net");
  } catch (const ProcessEnd&) {
    Require(false, "the loader ends the process");
  }
  std::cin.rdbuf(input);
  ReleaseBlocks();
  return 0;
}
