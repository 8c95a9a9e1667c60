// What stands here is part of the modules evaluation, new_rays, ray_order, lists and intOps, complete and
// tested, but no run needs it. It is written for brevity and no faster than that.
#include "solver/uncalled.h"

#include <algorithm>
#include <cstdio>
#include <new>

#include "base/arithmetic.h"
#include "solver/key_index.h"
#include "solver/sharedVars.h"

namespace siphons {

namespace {

int32_t ValueOf(const int32_t* constraint, const int32_t* ray) {
  int32_t sum = 0;
  for (uint32_t j = 1; j <= Dimension; ++j) sum = WrapAdd(sum, WrapMul(constraint[j], ray[j]));
  return sum;
}

/// a / b truncated, less 1 where the wrapped product says that the quotient is negative and not a whole
/// number.
int32_t RoundedDown(int32_t a, int32_t b) {
  const int32_t q = TruncDiv(a, b);
  const bool down = WrapMul(a, b) < 0 && (TruncRem(WrapAbs(a), WrapAbs(b)) != 0 || q == 0);
  return down ? WrapSub(q, 1) : q;
}

}  // namespace

int32_t CheckForStartingVertex(uint32_t firstRay, int32_t firstConstraint, int32_t endConstraint) {
  for (uint32_t r = firstRay; r < NbRay; ++r) {
    const int32_t* const ray = Ray->p[r];
    const bool inside = std::all_of(Constraints->p + firstConstraint, Constraints->p + endConstraint,
                                    [ray](const int32_t* row) { return ValueOf(row, ray) >= 0; });
    if (inside && ray[Dimension] == 1) return static_cast<int32_t>(r);
  }
  return -1;
}

Matrix* BuildSat(const Matrix* rays) {
  Matrix* const sat = ZeroMatrix(rays->NbRows, WordOf(NbConstraints - 1) + 1);
  for (uint32_t r = 0; r < rays->NbRows; ++r) {
    for (uint32_t c = 0; c < NbConstraints; ++c) {
      if (ValueOf(Constraints->p[c], rays->p[r]) != 0) sat->p[r][WordOf(c)] |= static_cast<int32_t>(BitOf(c));
    }
  }
  return sat;
}

void WriteStatus(const Matrix* sat, uint32_t first, uint32_t end, Matrix* status) {
  for (uint32_t c = 0; c < NbConstraints; ++c) {
    status->p[c][0] = 0;
    for (uint32_t r = first; r < end; ++r) {
      if ((static_cast<uint32_t>(sat->p[r][WordOf(c)]) & BitOf(c)) == 0) ++status->p[c][0];
    }
  }
}

void WriteStatusConstraints(Matrix* status) {
  WriteStatus(Sat, 0, NbRay, status);
}

void WriteStatusConstraints2(Matrix* status) {
  WriteStatus(Sat, NbLines, NbRay, status);
}

Matrix* AddLines(const Matrix* m, uint32_t n) {
  Matrix* const longer = ZeroMatrix(m->NbRows + n, m->NbColumns);
  for (uint32_t r = 0; r < m->NbRows; ++r) std::copy_n(m->p[r], m->NbColumns, longer->p[r]);
  return longer;
}

int32_t GetUpperBound(int32_t) {
  int32_t m = maxMinF;
  while (m >= 0 && Border[static_cast<uint32_t>(m)] == kNoRow) --m;
  return m;
}

int32_t CreateLLElement(LLElement** last) {
  try {
    LLElement* const element = NewElement(0);
    if (*last != nullptr) (*last)->next = element;
    *last = element;
    return 0;
  } catch (const std::bad_alloc&) {
    std::puts(kNoMemory);
    return 2;
  }
}

void ScanList(const LiList* list, uint32_t* nbKeys, uint32_t* nbValues) {
  *nbKeys = 0;
  *nbValues = 0;
  for (const LiList* block = list; block != nullptr; block = block->next) *nbKeys += block->nbKeys;
  ForEachPair(list, [&](uint32_t, uint32_t) {
    ++*nbValues;
    return 0;
  });
}

void printLiList(const LiList* list) {
  std::puts("************DISPLAYLIST***********");
  uint32_t keys = 0;
  for (const LiList* block = list; block != nullptr; block = block->next) {
    for (uint32_t i = 0; i < block->nbKeys; ++i) {
      std::printf("Row number %i ", static_cast<int32_t>(block->keys[i]));
      std::puts("is adjacent to rows");
      printLiListElement(block->chains[i]);
    }
    keys += block->nbKeys;
  }
  std::printf("*********%i ELEMENTS***********\n", static_cast<int32_t>(keys));
}

void printLiListElement(const LLElement* element) {
  for (; element != nullptr; element = element->next) {
    for (const uint32_t companion : element->values) std::printf(" %i ", static_cast<int32_t>(companion));
  }
  std::puts("");
}

int32_t RSV(int32_t a, int32_t b) {
  const int32_t x = WrapAbs(a);
  const int32_t y = WrapAbs(b);
  return x > y ? 1 : x == y ? 0 : -1;
}

int32_t INT(int32_t a, int32_t b) {
  return RoundedDown(a, b);
}

int32_t NEAREST_INT(int32_t a, int32_t b) {
  const int32_t q = RoundedDown(a, b);
  const int32_t remainder = WrapSub(a, WrapMul(b, q));
  return WrapAbs(WrapMul(2, remainder)) > WrapAbs(b) ? WrapAdd(q, 1) : q;
}

}  // namespace siphons
