// The state of one solve, shared by the solver's modules.
//
// How large it gets, on three nets of 16 to 26 places and 19 to 24 transitions (bench/nets: conserving_16,
// s3pr_3_4, s4pr_5_6): 39 to 46 constraints, so a saturation row has two words; rays of 17 to 27 coordinates,
// 65,000 to 226,000 of them at the end; 135,000 to 271,000 pairs filed, under 18 to 20 of the constraints.
// The pair list of such a constraint has some hundred keys as a rule and up to 28,000; a key has two to four
// companions as a rule, 99 of 100 keys have at most 13, and the longest chain has 31,000.
//
// Rays are rows of Ray: entry 0 is the status, the value of the constraint being processed; entries 1 to
// Dimension are the coordinates, divided by their greatest common divisor, the last of them the homogenising
// one. The first NbLines rows are lines (two-sided), the rows up to NbRay - 1 are rays, the rest is spare.
// Sat and MinF are row-parallel: their row r describes the ray in row r and moves with it.
//
// A saturation row says for constraint c, at word c >> 5 under the mask 0x80000000 >> (c & 31), that the ray
// does not saturate it (bit set). A clear bit means saturated, or not evaluated: evaluation stops at the
// first constraint that the ray violates.
//
// Dual makes and releases the tables, unless another owner is named.
#pragma once

#include <cstdint>
#include <vector>

#include "matrix/matrix.h"
#include "solver/lists.h"

namespace siphons {

/// The system, owned by the caller of the solver; its rows are reordered in place. Null between solves.
extern Matrix* Constraints;
extern uint32_t NbConstraints;
extern uint32_t Dimension;  ///< coordinates of a ray
extern int32_t maxMinF;     ///< NbConstraints: the MinF of a ray that violates no remaining constraint
extern uint32_t nc;         ///< words of a saturation row

extern Matrix* Ray;  ///< released by SolveInequationSystem
extern Matrix* Sat;  ///< released by SolveInequationSystem
/// Column 0: the first constraint from the current one on that the ray violates; 1: scratch of the sort. The
/// sort keeps the inverse of its permutation in a vector and not in further columns.
extern Matrix* MinF;
extern uint32_t NbRay;
extern uint32_t NbLines;
extern uint32_t OldRays;    ///< progress mark: NbRay when it last was more than 1000 away
extern uint32_t NbMaxRays;  ///< bound of NbRay, kept between solves

// The index tables have one column.
extern Matrix* IndexLR;     ///< row of the ray with this number, or kNoNumber
extern uint32_t NbIndexLR;  ///< numbers handed out from the end
extern Matrix* IndexRL;     ///< number of the ray in this row, or kNoNumber
extern uint32_t NbIndexRL;  ///< rows that IndexRL covers
extern FreeListBlock* FLR;  ///< released ray numbers
extern uint32_t blockflag;  ///< 1 when FLR is empty

/// Per constraint: the adjacent pairs that combine at it; null once it is done.
extern std::vector<LiList*> LiListArray;
/// New rays of the current constraint by the row of their positive parent.
extern LiList* GenList;

extern std::vector<uint32_t> LookUpMat;  ///< number of zero bits of each of the 65,536 16-bit values
extern std::vector<uint32_t> Border;     ///< first row of the sorted region with this MinF, or kNoRow
extern std::vector<uint32_t> BitRow;     ///< work row of the first adjacency sweep
extern std::vector<uint32_t> BitRow2;    ///< mask of the constraints between two others
extern std::vector<uint32_t> BitRow3;    ///< the constraints from the second of the two on, to make the mask
extern std::vector<uint32_t> AdjBitRow;  ///< what either row of a tested pair does not saturate

extern uint32_t WCount, BCount;        ///< word and mask of the current constraint k
extern uint32_t AdjWCount, AdjBCount;  ///< word and mask of constraint k + 1
extern uint32_t AdjBitmask;            ///< the bits of the constraints above k in word AdjWCount
extern uint32_t TTEST;  ///< first row with which a pair is compared: 0, or where the rays of a facet begin

extern std::vector<int32_t> raytemprow, sattemprow, minftemprow;  ///< scratch for exchanging rows

// Counters, kept between solves.
extern int32_t adjcounter;    ///< pairs of a new ray and its positive parent that were tested
extern int32_t redcounter;    ///< of these, pairs found not adjacent
extern int32_t quickcounter;  ///< of these, pairs rejected by the quick test
extern int32_t checkedlater;  ///< pairs deferred by CheckedLater

/// What the last solve did, for benchmarks.
struct SolveCounts {
  uint64_t rays;   ///< at the end
  uint64_t pairs;  ///< filed
  uint64_t tests;  ///< full adjacency tests on facets
};
extern SolveCounts solveCounts;

/// Whether any sum of the solve left 32 bits, or any row had to be combined in extended precision. What rests
/// on exact arithmetic then need not hold, for example that the saturation bits agree with the coordinates.
extern bool ArithmeticWrapped;

/// Whether no constraint of the solve has a constant term. With one, the ray of the starting cone leaves the
/// solve although pairs were filed with it. These are combined all the same (pair_test.cpp), and what comes
/// out are rays that the iteration gives, not those of the cone.
extern bool Homogeneous;

/// Whether the rays are surely the extreme rays of the cone so far.
inline bool RaysAreCertain() {
  return !ArithmeticWrapped && Homogeneous && NbLines == 0;
}

inline constexpr int32_t kNoNumber = 0x7fffffff;  ///< no ray number, in IndexRL; no row, in IndexLR
inline constexpr uint32_t kNoRow = 0xFFFFFFFF;

inline constexpr uint32_t WordOf(uint32_t constraint) {
  return constraint >> 5;
}
inline constexpr uint32_t BitOf(uint32_t constraint) {
  return 0x80000000U >> (constraint & 31);
}

/// The bits of `constraint` and of all constraints behind it in the same word.
inline constexpr uint32_t BitsFrom(uint32_t constraint) {
  return 2 * BitOf(constraint) - 1;
}

/// The saturation row as unsigned words.
inline uint32_t* SatWords(uint32_t row) {
  return reinterpret_cast<uint32_t*>(Sat->p[row]);
}

/// Whether the Sat bit is set: the ray of the row was evaluated at the constraint and does not saturate it.
inline bool IsUnsaturated(uint32_t row, uint32_t constraint) {
  return (SatWords(row)[WordOf(constraint)] & BitOf(constraint)) != 0;
}

}  // namespace siphons
