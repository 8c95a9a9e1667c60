// Eliminating lines, and making new rays from filed pairs.
#pragma once

#include <cstdint>

#include "matrix/matrix.h"
#include "solver/lists.h"

namespace siphons {

/// Turns the first line with a nonzero status into the ray of row NbLines (decreased), its status made
/// positive where 32 bits allow, and makes the lines left saturate the evaluated constraint. Returns that
/// row, or -1 when the first row with a nonzero status is no line. Which constraint that is does not matter
/// here: the statuses say it all, and k is not used. A line whose combination cannot be represented keeps
/// what the combination left in it.
int32_t ConstrainL(uint32_t k);

/// Row dest of m = the combination of rows r1 and r2 that has status 0. Nonzero when it cannot be
/// represented.
int32_t SimpleCombine(uint32_t r1, uint32_t r2, uint32_t dest, Matrix* m);

/// The same for a violating ray r1 and a satisfying ray r2 of the current constraint, and the saturation row
/// of dest: all that either does not saturate, of the constraints before the current one.
int32_t Combine(uint32_t r1, uint32_t r2, uint32_t dest, Matrix* m);

enum NewRaysStatus : int32_t {
  kNewRaysMade = 0,
  kCombinationFailed = 1,  ///< not representable, or the pair names a ray that is gone
  kNoRoomForRay = 2,       ///< no room within NbMaxRays, or no memory
};

/// Appends one ray per pair of the list behind row NbRay, and files it in GenList under its positive parent's
/// row. Room for rays comes by the thousand, and NbMaxRays is compared only when the room is used up: up to
/// 999 rays more than it may be held. Where memory for room was refused once, it is refused for the rest of
/// the process, in later solves too.
int32_t ObtainNewRays(const LiList* list);

/// The same for the companion chain of one key, whose ray is in keyRow.
int32_t CombineNewRays(const LLElement* chain, uint32_t keyRow);

}  // namespace siphons
