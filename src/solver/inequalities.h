// The inequality solver: the extreme rays of the cone { x : c x >= 0 for every constraint row c, x_D >= 0 }
// by the double description method. One solve at a time, in one thread, on the state of sharedVars.h.
#pragma once

#include <cstdint>

#include "matrix/matrix.h"

namespace siphons {

/// Solves the system of `constraints`: column 0 is not read, columns 1 to D (at least 1) are the
/// coefficients, the last that of the homogenising coordinate; the answer is the cone's only when that is 0
/// in every row. The rows of the system are put into another order, and the caller keeps it. maxRays bounds
/// the rays that are held; up to 999 more may be (new_rays.h). Resets all interval timers; timer 0 runs while
/// the solve does and goes on running when it fails.
///
/// Returns the number of rays and makes *out a new matrix of D - 1 rows with one ray per column, without the
/// homogenising coordinate; the caller owns it. Returns 0 after "Error!an error occured\n" on standard output
/// when the solve failed, *out untouched: a ray that cannot be represented, too many rays, no memory, a cone
/// that is empty before the last constraint, or a sum that wrapped and so let a pair be filed under a
/// finished constraint or name a ray that is gone.
uint32_t SolveInequationSystem(Matrix** out, Matrix* constraints, uint32_t maxRays);

/// The double description iteration over Constraints. Returns 0 and leaves Ray and Sat with NbRay rows, or 1
/// after printing "Error!".
int32_t Dual();

/// Makes Ray and Sat for the starting cone x_D >= 0: the unit vectors, all but the last of them lines.
/// Returns the number of lines.
uint32_t Init();

/// Number of rows whose last entry is 0.
uint32_t CountRays(const Matrix* rays);

/// New matrix of NbColumns - 2 rows and `count` columns: the rows of `rays` whose last entry is not 1,
/// without their first and last entries, as columns. The caller owns it. Rows beyond `count` are left out.
Matrix* ExtractRays(const Matrix* rays, uint32_t count);

}  // namespace siphons
