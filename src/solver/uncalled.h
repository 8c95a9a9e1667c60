// Operations that belong to the solver's modules and that no run of the program calls.
#pragma once

#include <cstdint>

#include "matrix/matrix.h"
#include "solver/lists.h"

namespace siphons {

// --- evaluation

/// First row from firstRay on that violates none of constraints firstConstraint to endConstraint - 1 and has
/// 1 as its last coordinate, or -1.
int32_t CheckForStartingVertex(uint32_t firstRay, int32_t firstConstraint, int32_t endConstraint);

/// New saturation matrix for the rows of `rays`, of all constraints, ((NbConstraints - 1) >> 5) + 1 words per
/// row. The caller owns it.
Matrix* BuildSat(const Matrix* rays);

// Count, for each constraint c, the rays that saturate it into row c, column 0, of `status` (NbConstraints
// rows).

/// Of the rows first to end - 1 of a saturation matrix.
void WriteStatus(const Matrix* sat, uint32_t first, uint32_t end, Matrix* status);
/// Of all lines and rays of the solve.
void WriteStatusConstraints(Matrix* status);
/// Of its rays only.
void WriteStatusConstraints2(Matrix* status);

// --- rays and their order

/// New zero matrix with n rows more than m and m's rows copied into it. The caller owns it.
Matrix* AddLines(const Matrix* m, uint32_t n);

/// Highest MinF that has a group in Border, or -1; n is not used.
int32_t GetUpperBound(int32_t n);

// --- pair lists

/// Allocates an element of one companion (0), links it behind *last when that is not null and makes it *last.
/// Returns 0, or 2 after "CreateLLElement: no more memory available!" on standard output.
int32_t CreateLLElement(LLElement** last);

/// Number of keys, and of companions of all keys together.
void ScanList(const LiList* list, uint32_t* nbKeys, uint32_t* nbValues);

/// Print a list (null is an empty one) or a chain on standard output.
void printLiList(const LiList* list);
void printLiListElement(const LLElement* element);

// --- integers

/// 1, 0 or -1: abs(a) is greater than, equal to or smaller than abs(b). That of -2147483648 is itself.
int32_t RSV(int32_t a, int32_t b);

/// a / b rounded down, b not 0. The sign of the quotient is that of the wrapped product, so a product that
/// leaves 32 bits can round the wrong way.
int32_t INT(int32_t a, int32_t b);

/// a / b rounded to the nearest integer, halves down, under the same rule.
int32_t NEAREST_INT(int32_t a, int32_t b);

}  // namespace siphons
