// A sign of life of long solves: one line on standard error, "constraint 31 of 49, 120000 rays, 7 s",
// rewritten in place and gone at the end. Only where standard error is a terminal, so that nothing that a
// program reads ever changes.
#pragma once

#include <cstdint>

namespace siphons {

/// Seconds until a solve shows its first line. Tests choose another delay.
extern double progressDelay;

/// A solve begins; no line is shown.
void StartProgress();

/// Shows that constraint k is being processed, when a new line is due. Made to be called often.
void ShowProgress(uint32_t k);

/// Takes the line away, before a message or at the end of the solve.
void ClearProgress();

}  // namespace siphons
