// Stable ray numbers. Rays move between rows all the time, but a pair list must name a ray for many
// constraints; so a ray that enters a pair list gets a number, and IndexLR (number to row) and IndexRL (row
// to number) follow it. Invariant: the two tables are inverse to each other on numbered rows and numbers in
// use. A table that cannot grow ends the process (base/out_of_memory.h).
#pragma once

#include <cstdint>

namespace siphons {

/// The number of the ray in `row`; hands one out, released numbers first, when it has none.
uint32_t StoreIndex(uint32_t row);

/// Follows an exchange of the rays in two rows.
void IndexExchange(uint32_t r1, uint32_t r2);

/// Releases the numbers of rows first to end - 1. IndexRL then covers `first` rows; nothing when first = end.
void RemoveIndices(uint32_t first, uint32_t end);

/// Makes IndexRL cover `end` rows; rows first to end - 1 have no number.
void ResizeIndexRL(uint32_t first, uint32_t end);

/// Hands out a number for a row without a look at, or a trace in, IndexRL.
uint32_t IndexAppend(uint32_t row);

}  // namespace siphons
