// The order of the rays between constraints: groups of equal MinF, and within a group by saturation.
#pragma once

#include <cstdint>

namespace siphons {

/// Exchanges two rows in Ray, Sat and the index tables.
void ExchangeRays(uint32_t r1, uint32_t r2);

/// Orders rows first to end - 1 of Ray, Sat, MinF and the index tables by MinF, ties as QuickSort leaves
/// them.
void SortRaysMinF(uint32_t first, uint32_t end);

/// Orders rows first to end - 1, of one MinF, by the number of Sat bits set in words 0 to AdjWCount; MinF
/// stays.
void SortGroupBySaturation(uint32_t first, uint32_t end);

/// Writes the first row of each MinF group of the sorted rows from `first` on into Border.
void BuildBorder(uint32_t first);

/// First row of the next non-empty group behind MinF m, or -1.
int32_t GetBorder(int32_t m);

}  // namespace siphons
