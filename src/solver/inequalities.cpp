// Entry of the solver: the starting cone, the call of the iteration, and the extraction of the rays.
#include "solver/inequalities.h"

#include <algorithm>
#include <cstdio>

#include "base/timer.h"
#include "solver/sharedVars.h"

namespace siphons {

namespace {

/// Releases the rays and lets go of the caller's system.
void EndSolve() {
  FreeMat(Ray);
  FreeMat(Sat);
  Ray = nullptr;
  Sat = nullptr;
  Constraints = nullptr;
}

}  // namespace

uint32_t SolveInequationSystem(Matrix** out, Matrix* constraints, uint32_t maxRays) {
  NbMaxRays = maxRays;
  Constraints = constraints;
  reset_all_timer();
  start_timer(kSolveTimer);
  if (Dual() != 0) {
    std::puts("an error occured");
    EndSolve();
    return 0;
  }
  const uint32_t count = CountRays(Ray);
  *out = ExtractRays(Ray, count);
  EndSolve();
  stop_timer(kSolveTimer);
  return count;
}

uint32_t Init() {
  Ray = ZeroMatrix(Dimension, Dimension + 1);
  for (uint32_t r = 0; r < Dimension; ++r) Ray->p[r][r + 1] = 1;
  Ray->p[Dimension - 1][0] = 1;
  Sat = ZeroMatrix(Dimension, nc);
  return Dimension - 1;
}

uint32_t CountRays(const Matrix* rays) {
  return static_cast<uint32_t>(std::count_if(
      rays->p, rays->p + rays->NbRows, [rays](const int32_t* ray) { return ray[rays->NbColumns - 1] == 0; }));
}

Matrix* ExtractRays(const Matrix* rays, uint32_t count) {
  // Counting asks for 0, extracting for anything but 1: the two agree on homogenising coordinates of 0 and 1.
  const uint32_t coordinates = rays->NbColumns - 2;
  Matrix* const result = ZeroMatrix(coordinates, count);
  uint32_t column = 0;
  for (uint32_t r = 0; r < rays->NbRows && column < count; ++r) {
    const int32_t* const ray = rays->p[r];
    if (ray[rays->NbColumns - 1] == 1) continue;
    for (uint32_t k = 0; k < coordinates; ++k) result->p[k][column] = ray[k + 1];
    ++column;
  }
  return result;
}

}  // namespace siphons
