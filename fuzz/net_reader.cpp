// Any bytes as a net description: the reader returns a net or tells a fault, and in either case every block
// of the net is released. Each input is read twice: with an error function that throws at a fatal report, and
// with one that returns, which the reader promises to survive.
#include <iostream>
#include <sstream>

#include "fuzz/harness.h"
#include "net/load_net.h"

namespace {

using namespace siphons;

int32_t Return(const char*, int32_t) {
  return 0;
}

void Read(const std::string& text, ErrorFunc errorFunc) {
  std::stringbuf buffer(text);
  std::streambuf* const input = std::cin.rdbuf(&buffer);
  std::cin.clear();
  try {
    const CapturedOutput listing;
    Net* const net = load_net(nullptr, errorFunc, true);
    if (net != nullptr) show_net(*net);
    free_net(net);
  } catch (const FatalReport&) {
  } catch (const ProcessEnd&) {
  }
  std::cin.rdbuf(input);
  Require(LiveBlocks() == 0, "blocks of the net are left");
  ReleaseBlocks();
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(data, data + size);
  Read(text, ThrowFatal);
  Read(text, Return);
  return 0;
}
