#include "solver/index.h"

#include <utility>

#include "base/out_of_memory.h"
#include "solver/sharedVars.h"

namespace siphons {

namespace {

void Grow(Matrix** table, uint32_t rows) {
  if (ResizeRows(table, static_cast<int32_t>(rows)) == 0) return;
  OutOfMemory((uint64_t{(*table)->NbRows} + rows) * sizeof(int32_t*));
}

void PointBack(uint32_t row) {
  const int32_t number = IndexRL->p[row][0];
  if (number != kNoNumber) IndexLR->p[number][0] = static_cast<int32_t>(row);
}

}  // namespace

uint32_t IndexAppend(uint32_t row) {
  constexpr uint32_t kGrowth = 1000;
  uint32_t number = NbIndexLR;
  if (blockflag == 0) {
    number = GetFreeRow(&FLR, &blockflag);
  } else {
    if (NbIndexLR >= IndexLR->NbRows) Grow(&IndexLR, kGrowth);
    ++NbIndexLR;
  }
  IndexLR->p[number][0] = static_cast<int32_t>(row);
  return number;
}

uint32_t StoreIndex(uint32_t row) {
  int32_t& number = IndexRL->p[row][0];
  if (number == kNoNumber) number = static_cast<int32_t>(IndexAppend(row));
  return static_cast<uint32_t>(number);
}

void IndexExchange(uint32_t r1, uint32_t r2) {
  std::swap(IndexRL->p[r1][0], IndexRL->p[r2][0]);
  PointBack(r1);
  PointBack(r2);
}

void RemoveIndices(uint32_t first, uint32_t end) {
  if (first == end) return;
  for (uint32_t row = end; row-- > first;) {
    const int32_t entry = IndexRL->p[row][0];
    if (entry == kNoNumber) continue;
    const uint32_t number = static_cast<uint32_t>(entry);
    if (number == NbIndexLR - 1) {
      NbIndexLR = number;
    } else {
      DelSingleRow(&FLR, &blockflag, number);
    }
    IndexLR->p[number][0] = kNoNumber;
  }
  NbIndexRL = first;
}

void ResizeIndexRL(uint32_t first, uint32_t end) {
  if (IndexRL->NbRows < end) Grow(&IndexRL, end - IndexRL->NbRows);
  NbIndexRL = end;
  for (uint32_t row = first; row < end; ++row) IndexRL->p[row][0] = kNoNumber;
}

}  // namespace siphons
