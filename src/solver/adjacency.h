// Which rays are adjacent, and filing the adjacent pairs under the constraint at which they will combine.
//
// Two extreme rays are adjacent when no third ray saturates every constraint that both saturate (the
// combinatorial test of Fukuda and Prodon 1996). A pair is filed under the first constraint that one of the
// two violates, provided that the other satisfies it strictly; the violating ray is the key, the other its
// companion. After constraint k only two kinds of pairs are tested: a new ray with its positive parent, and
// two rays that both saturate k.
#pragma once

#include <cstdint>

#include "solver/bit_kernels.h"
#include "solver/sharedVars.h"

namespace siphons {

/// The instruction set of the pair search: the best that the machine has, unless a test chooses another.
extern InstructionSet pairSearchInstructions;

/// The first constraint from the current one on that the ray of a row violates.
inline int32_t FirstViolated(uint32_t row) {
  return MinF->p[row][0];
}

/// Called with every pair as it is filed, unless null: the constraint at which it combines and the numbers of
/// its rays. Tests compare the order of pairs through it; the program leaves it null.
extern void (*pairObserver)(int32_t constraint, uint32_t violator, uint32_t satisfier);

// All return 0, or 1 when a pair could not be filed: because there is no memory, or because a sum wrapped and
// the constraint that the pair belongs to has been processed.

/// Files a pair under a constraint.
int32_t FilePair(int32_t constraint, uint32_t violator, uint32_t satisfier);

/// Files every adjacent pair of the rays that the basis leaves. All constraints are evaluated; lastBasis is
/// the index of the last basis constraint.
int32_t FileFirstPairs(int32_t lastBasis);

/// Files the pairs of each new ray of constraint k with its positive parent, from GenList. GenList names a
/// new ray by the row in which it was made; it now stands `moved` rows before that.
int32_t FilePairsWithParents(uint32_t k, uint32_t moved);

/// Files the pairs among the rays from row `first` on, which all saturate constraint k and are ordered by
/// MinF.
int32_t FilePairsOnFacet(uint32_t k, uint32_t first);

}  // namespace siphons
