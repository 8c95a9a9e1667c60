// The siphons of a net, stated as a cone of linear inequalities and read off its extreme rays.
#pragma once

#include <cstdint>

#include "matrix/matrix.h"

namespace siphons {

/// The minimal siphons: one row per siphon, one column per place, 1 where the place belongs to it.
extern Matrix* Siphon;

/// One row per siphon, one column: the tokens that the initial marking puts into it (32 bits, wrapping).
extern Matrix* SiphonMarking;

/// Number of siphons of the last computation, as its caller stores it.
extern int32_t numsiphons;

/// Computes Siphon and SiphonMarking and returns the number of siphons. M0 has one row per place and one
/// column; C, O and I have one row per transition and one column per place: the incidence O - I, the output
/// and the input arc multiplicities. All four are only read; of C the numbers of rows and columns count, its
/// entries do not. Without places it returns 0, without transitions 1, and leaves both results as they were.
/// A solve that fails, which the solver reports on standard output, gives no siphons.
uint32_t Siphons(const Matrix* M0, const Matrix* C, const Matrix* O, const Matrix* I);

}  // namespace siphons
