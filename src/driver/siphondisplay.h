// The `siphons` command: reads a net, computes its minimal siphons and writes the siphon report.
#pragma once

#include <cstdint>

namespace siphons {

/// Runs the command; argv[1] is the net, further arguments are ignored. Returns the exit status or ends the
/// process.
int32_t RunSiphons(int32_t argc, const char* const* argv);

}  // namespace siphons
