// The siphon report, the one file that a run of `siphons` writes.
#pragma once

#include <cstdint>

#include "matrix/matrix.h"

namespace siphons {

/// What a report says.
struct Report {
  double seconds;  ///< processor time of the computation
  int32_t siphonCount;
  const Matrix* siphons;   ///< one row per siphon, one column per place; may be null without siphons
  const Matrix* markings;  ///< one row per siphon, one column; likewise
};

/// Writes the report, naming the places of the structural table. False when it cannot be opened or written
/// whole; then nothing is left in it. A name that FormattedText cannot print ends the process before.
bool WriteReport(const char* path, const Report& report);

}  // namespace siphons
