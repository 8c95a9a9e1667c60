// Stable numbers of rays. A pair list names a ray for many constraints, and meanwhile the ray moves from row
// to row. So a ray that enters a pair list gets a number that stays: IndexLR holds the row of a number,
// IndexRL the number of a row, and both are kept up to date at every move. Invariant: the two tables are
// inverse to each other, on the rows that have a number and on the numbers in use. About one ray in two ever
// gets one. Memory that a table cannot get for its growth ends the process (base/out_of_memory.h).
#pragma once

#include <cstdint>

namespace siphons {

/// The number of the ray in `row`; hands one out, released numbers first, when it has none.
uint32_t StoreIndex(uint32_t row);

/// Exchanges the numbers of two rows; to be called when their rays change places.
void IndexExchange(uint32_t r1, uint32_t r2);

/// Releases the numbers of rows first to end - 1. IndexRL then covers `first` rows. When first = end nothing
/// happens.
void RemoveIndices(uint32_t first, uint32_t end);

/// Makes IndexRL cover `end` rows; rows first to end - 1 have no number.
void ResizeIndexRL(uint32_t first, uint32_t end);

/// Hands out a number for a row and enters it in IndexLR only; StoreIndex enters it in IndexRL, too.
uint32_t IndexAppend(uint32_t row);

}  // namespace siphons
