// The `siphons` command: reads a net, computes its minimal siphons and writes the siphon report.
#pragma once

#include <cstdint>

#include "matrix/matrix.h"

namespace siphons {

/// What a report says.
struct Report {
  double seconds;
  int32_t siphonCount;
  const Matrix* siphons;   ///< one row per siphon, one column per place
  const Matrix* markings;  ///< one row per siphon, one column
};

/// Writes the report, naming the places of the structural table. False when it cannot be opened or written
/// whole; then nothing is left in it. A conversion in a name that gives more than 4095 characters ends the
/// process before.
bool WriteReport(const char* path, const Report& report);

/// Runs the command; argv[1] is the net, further arguments are ignored. Returns the exit status or ends the
/// process.
int32_t RunSiphons(int32_t argc, const char* const* argv);

}  // namespace siphons
