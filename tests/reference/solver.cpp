// The double description iteration as it is defined: every pair counted and compared with every row, pair
// lists looked through from their beginning, rows sorted where they stand. Names are those of the solver.
//
// What the definition leaves open fails the solve here as in the program: a pair filed under a constraint
// that is done, and a pair that names a ray that is gone; both need a sum that wrapped.
#include <algorithm>
#include <bit>
#include <cstdio>
#include <deque>
#include <optional>
#include <utility>

#include "tests/reference/integers.h"

namespace reference {

namespace {

using Words = std::vector<uint32_t>;

constexpr int32_t kNoNumber = 0x7fffffff;
constexpr uint32_t kNoRow = 0xFFFFFFFF;

/// Companions under their keys, both in the order of their first coming.
using PairList = std::vector<std::pair<uint32_t, std::vector<uint32_t>>>;

void StorePair(PairList& list, uint32_t key, uint32_t companion) {
  auto found =
      std::find_if(list.begin(), list.end(), [key](const auto& entry) { return entry.first == key; });
  if (found == list.end()) found = list.insert(list.end(), {key, {}});
  found->second.push_back(companion);
}

uint32_t Bit(uint32_t constraint) {
  return 0x80000000U >> (constraint & 31);
}

class Solver {
 public:
  Solver(Rows constraints, uint32_t maxRays) : Constraints(std::move(constraints)), NbMaxRays(maxRays) {}

  Answer Run() {
    const bool done = Dual();
    result.failed = !done;
    if (!done) {
      result.output += "Error!an error occured\n";
      result.counters.onFacets = 0;
      return result;
    }
    // What is counted and what is taken agree as long as the homogenising coordinate is 0 or 1.
    const auto end = Ray.begin() + NbRay;
    const auto count =
        std::count_if(Ray.begin(), end, [this](const Row& ray) { return ray[Dimension] == 0; });
    for (auto ray = Ray.begin(); ray != end && std::ssize(result.rays) < count; ++ray) {
      if ((*ray)[Dimension] != 1) result.rays.emplace_back(ray->begin() + 1, ray->end() - 1);
    }
    return result;
  }

 private:
  Rows Constraints;
  uint32_t NbMaxRays;
  Answer result;

  uint32_t NbConstraints = 0, Dimension = 0, nc = 0, NbRay = 0, NbLines = 0;
  int32_t maxMinF = 0;
  Rows Ray, MinF;  // of MinF: the first violated constraint, and three columns of the sort
  std::vector<Words> Sat;
  std::vector<int32_t> IndexLR, IndexRL;  // row of a number, number of a row
  uint32_t NbIndexLR = 0;
  std::deque<uint32_t> FLR;
  std::vector<std::optional<PairList>> LiListArray;
  PairList GenList;
  Words Border, BitRow, BitRow2, BitRow3, AdjBitRow;
  uint32_t WCount = 0, BCount = 0, AdjWCount = 0, AdjBCount = 0, AdjBitmask = 0, TTEST = 0;

  bool SatBit(uint32_t row, uint32_t constraint) const {
    return (Sat[row][constraint >> 5] & Bit(constraint)) != 0;
  }

  // --- numbers of rays

  uint32_t StoreIndex(uint32_t row) {
    if (IndexRL[row] != kNoNumber) return static_cast<uint32_t>(IndexRL[row]);
    uint32_t n = NbIndexLR;
    if (FLR.empty()) {
      if (n >= IndexLR.size()) IndexLR.resize(IndexLR.size() + 1000);
      ++NbIndexLR;
    } else {
      n = FLR.front();
      FLR.pop_front();
    }
    IndexLR[n] = static_cast<int32_t>(row);
    IndexRL[row] = static_cast<int32_t>(n);
    return n;
  }

  void IndexExchange(uint32_t r1, uint32_t r2) {
    std::swap(IndexRL[r1], IndexRL[r2]);
    for (const uint32_t row : {r1, r2}) {
      if (IndexRL[row] != kNoNumber) IndexLR[static_cast<uint32_t>(IndexRL[row])] = static_cast<int32_t>(row);
    }
  }

  void RemoveIndices(uint32_t first, uint32_t end) {
    for (uint32_t row = end; row-- > first;) {
      if (IndexRL[row] == kNoNumber) continue;
      const uint32_t n = static_cast<uint32_t>(IndexRL[row]);
      if (n == NbIndexLR - 1) {
        NbIndexLR = n;
      } else {
        FLR.push_back(n);
      }
      IndexLR[n] = kNoNumber;
    }
  }

  void ResizeIndexRL(uint32_t first, uint32_t end) {
    if (IndexRL.size() < end) IndexRL.resize(end);
    std::fill(IndexRL.begin() + first, IndexRL.begin() + std::max(first, end), kNoNumber);
  }

  bool FilePair(int32_t constraint, uint32_t violator, uint32_t satisfier) {
    std::optional<PairList>& list = LiListArray[static_cast<uint32_t>(constraint)];
    if (!list) return false;
    const uint32_t key = StoreIndex(violator), companion = StoreIndex(satisfier);
    result.pairs.push_back({constraint, key, companion});
    StorePair(*list, key, companion);
    return true;
  }

  // --- evaluation and lines

  void EvalConstraint(const Row& constraint) {
    for (uint32_t r = 0; r < NbRay; ++r) Ray[r][0] = Value(constraint, Ray[r]);
  }

  void EvalAllConstraints(uint32_t firstRay, uint32_t firstConstraint) {
    for (uint32_t r = firstRay; r < NbRay; ++r) {
      MinF[r][0] = maxMinF;
      for (uint32_t c = firstConstraint; c < NbConstraints; ++c) {
        const int32_t value = Value(Constraints[c], Ray[r]);
        if (value != 0) Sat[r][c >> 5] |= Bit(c);
        if (value < 0) {
          MinF[r][0] = static_cast<int32_t>(c);
          break;
        }
      }
    }
  }

  int32_t SimpleCombine(uint32_t r1, uint32_t r2, uint32_t dest) {
    const int32_t s1 = Ray[r1][0], s2 = Ray[r2][0], g = Gcd(Abs(s1), Abs(s2));
    const int32_t f1 = Div(s2, g), f2 = Mul(Div(s1, g), -1);
    return CombineRow(r1, r2, dest, f1, f2, Ray, result.output);
  }

  int32_t ConstrainL() {
    uint32_t found = 0;
    while (found < NbRay && Ray[found][0] == 0) ++found;
    if (NbLines == 0 || found >= NbLines) return -1;
    --NbLines;
    std::swap(Ray[found], Ray[NbLines]);
    for (uint32_t line = 0; line < NbLines; ++line) {
      if (Ray[line][0] != 0) SimpleCombine(line, NbLines, line);
    }
    if (Ray[NbLines][0] < 0) {
      for (int32_t& entry : Ray[NbLines]) entry = Mul(entry, -1);
    }
    return static_cast<int32_t>(NbLines);
  }

  // --- order

  void ExchangeRays(uint32_t r1, uint32_t r2) {
    std::swap(Ray[r1], Ray[r2]);
    std::swap(Sat[r1], Sat[r2]);
    IndexExchange(r1, r2);
  }

  /// Sorts the rays of rows first to end - 1 by column 0 of a table of four columns, row by row.
  void SortRays(Rows& table, uint32_t first, uint32_t end) {
    if (first >= end) return;
    for (uint32_t r = first; r < end; ++r) table[r][1] = static_cast<int32_t>(r);
    QuickSort(table, first, end - 1, 0, 1);
    for (uint32_t r = first; r < end; ++r) {
      table[r][2] = table[r][1];
      table[r][3] = static_cast<int32_t>(r);
    }
    QuickSort(table, first, end - 1, 2, 3);
    for (uint32_t r = first; r < end; ++r) {
      const uint32_t t = static_cast<uint32_t>(table[r][1]);
      if (t == r) continue;
      ExchangeRays(r, t);
      table[static_cast<uint32_t>(table[r][3])][1] = static_cast<int32_t>(t);
      table[t][3] = table[r][3];
    }
  }

  void BuildBorder(uint32_t first) {
    Border.assign(NbConstraints + 1, kNoRow);
    for (uint32_t r = first; r < NbRay; ++r) {
      if (r == first || MinF[r][0] != MinF[r - 1][0]) Border[static_cast<uint32_t>(MinF[r][0])] = r;
    }
  }

  uint32_t GetBorder(int32_t m) const {
    for (uint32_t i = static_cast<uint32_t>(m + 1); i <= NbConstraints; ++i) {
      if (Border[i] != kNoRow) return Border[i];
    }
    return kNoRow;
  }

  // --- tests of a pair

  void MaskBetween(uint32_t k, uint32_t m) {
    const uint32_t first = k >> 5, last = (m - 1) >> 5;
    for (uint32_t w = first; w <= last; ++w) {
      BitRow2[w] = w == first ? Bit(k) - 1 : 0xFFFFFFFF;
      BitRow3[w] = w == last ? Bit(m - 1) - 1 : 0;
      BitRow2[w] ^= BitRow3[w];
    }
  }

  bool CommonBetween(uint32_t k, uint32_t m, uint32_t x, uint32_t y) {
    for (uint32_t w = k >> 5; w <= (m - 1) >> 5; ++w) {
      BitRow[w] = ~(Sat[x][w] | Sat[y][w]);
      if ((BitRow[w] & BitRow2[w]) != 0) return true;
    }
    return false;
  }

  bool CheckedLater(int32_t k, int32_t m, uint32_t x, uint32_t y) {
    if (m - 1 <= k) return false;
    MaskBetween(static_cast<uint32_t>(k), static_cast<uint32_t>(m));
    if (!CommonBetween(static_cast<uint32_t>(k), static_cast<uint32_t>(m), x, y)) return false;
    ++result.counters.deferred;
    return true;
  }

  bool QuickTest(uint32_t x, uint32_t y) {
    uint32_t count = 1;
    for (uint32_t w = 0; w <= AdjWCount; ++w) {
      AdjBitRow[w] = Sat[x][w] | Sat[y][w];
      if (w == AdjWCount) AdjBitRow[w] |= AdjBitmask;
      count += 32 - static_cast<uint32_t>(std::popcount(AdjBitRow[w]));
    }
    return count >= Dimension - 2;
  }

  /// Moves the pair to the front of the rows that are scanned, and back. A row that is none of the NbRay rows
  /// thereby takes another out of the scan.
  bool FullTest(uint32_t violator, uint32_t satisfier) {
    const bool stays = violator == TTEST;
    std::swap(Sat[satisfier], Sat[stays ? TTEST + 1 : TTEST]);
    if (!stays) std::swap(Sat[violator], Sat[TTEST + 1]);
    bool adjacent = true;
    for (uint32_t t = TTEST + 2; t < NbRay && adjacent; ++t) {
      bool holds = true;
      for (uint32_t w = 0; w <= AdjWCount && holds; ++w) holds = (Sat[t][w] & ~AdjBitRow[w]) == 0;
      adjacent = !holds;
    }
    if (!stays) std::swap(Sat[violator], Sat[TTEST + 1]);
    std::swap(Sat[satisfier], Sat[stays ? TTEST + 1 : TTEST]);
    return adjacent;
  }

  bool ParentTest(uint32_t violator, uint32_t satisfier) {
    Counters& counters = result.counters;
    if (++counters.tests % 500000 == 0) {
      char line[120];
      std::snprintf(line, sizeof line,
                    "Adjacency test called %i times, nb of adj pairs %i, no. quick tests: %i\n",
                    counters.tests, counters.tests - counters.notAdjacent, counters.quick);
      result.output += line;
    }
    const bool quick = QuickTest(violator, satisfier);
    if (!quick) ++counters.quick;
    const bool adjacent = quick && FullTest(violator, satisfier);
    if (!adjacent) ++counters.notAdjacent;
    return adjacent;
  }

  // --- the first sweep

  bool AdjacentAtStart(uint32_t i, uint32_t j) {
    const uint32_t last = NbConstraints >> 5;  // may lie behind the words of a row
    uint32_t common = 0;
    for (uint32_t w = 0; w < nc; ++w) {
      BitRow[w] = Sat[i][w] | Sat[j][w];
      if (w == last) BitRow[w] |= 2 * Bit(NbConstraints) - 1;
      common += 32 - static_cast<uint32_t>(std::popcount(BitRow[w]));
    }
    const bool bothAtInfinity = Ray[i][Dimension] == 0 && Ray[j][Dimension] == 0;
    if (common + (bothAtInfinity ? 1 : 0) < Dimension - 2) return false;
    for (uint32_t t = 0; t < NbRay; ++t) {
      if (t == i || t == j || (bothAtInfinity && Ray[t][Dimension] != 0)) continue;
      bool holds = true;
      for (uint32_t w = 0; w < nc; ++w) holds = holds && (Sat[t][w] & ~BitRow[w]) == 0;
      if (holds) return false;
    }
    return true;
  }

  bool FirstSweep(int32_t lastBasis) {
    EvalAllConstraints(0, 0);
    for (uint32_t i = 0; i < NbRay; ++i) {
      for (uint32_t j = i + 1; j < NbRay; ++j) {
        if (!AdjacentAtStart(i, j) || MinF[i][0] == MinF[j][0]) continue;
        const bool first = MinF[i][0] < MinF[j][0];
        const uint32_t violator = first ? i : j, satisfier = first ? j : i;
        const int32_t due = MinF[violator][0];
        if (!SatBit(satisfier, static_cast<uint32_t>(due))) continue;
        if (CheckedLater(lastBasis, due, violator, satisfier)) continue;
        if (!FilePair(due, violator, satisfier)) return false;
      }
    }
    return true;
  }

  // --- the iteration

  void Start() {
    NbConstraints = static_cast<uint32_t>(Constraints.size());
    maxMinF = static_cast<int32_t>(NbConstraints);
    nc = ((NbConstraints == 0 ? 0 : NbConstraints - 1) >> 5) + 1;
    NbRay = Dimension;
    NbLines = Dimension - 1;
    for (uint32_t r = 0; r < Dimension; ++r) {
      Ray.emplace_back(Dimension + 1);
      Ray[r][r + 1] = 1;
    }
    Ray[NbLines][0] = 1;
    Sat.assign(NbRay, Words(nc));
    MinF.assign(NbRay, Row(4));
    IndexLR.assign(NbRay, 0);
    IndexRL.assign(NbRay, kNoNumber);
    LiListArray.assign(NbConstraints, PairList());
    for (Words* row : {&BitRow, &BitRow2, &BitRow3, &AdjBitRow}) row->assign(nc, 0);
  }

  /// Returns the index of the last basis constraint, or nothing when lines remain.
  std::optional<int32_t> EliminateLines() {
    std::vector<bool> flags(NbConstraints, true);
    int32_t count = 0;
    for (uint32_t k = 0; NbLines > 0 && k < NbConstraints; ++k) {
      EvalConstraint(Constraints[k]);
      const int32_t pivot = ConstrainL();
      flags[k] = pivot >= 0;
      if (pivot < 0) continue;
      ++count;
      for (uint32_t j = NbLines + 1; j < NbRay; ++j) {
        if (Ray[j][0] != 0) SimpleCombine(j, static_cast<uint32_t>(pivot), j);
      }
    }
    if (NbLines > 0) return std::nullopt;
    for (uint32_t i = 0; i < NbConstraints; ++i) {
      if (flags[i]) continue;
      uint32_t j = i + 1;
      while (j < NbConstraints && !flags[j]) ++j;
      if (j >= NbConstraints) break;
      for (uint32_t at = j; at > i; --at) std::swap(Constraints[at], Constraints[at - 1]);
      flags[i] = true;
      flags[j] = false;
    }
    return count - 1;
  }

  void Exchange(uint32_t r1, uint32_t r2) {
    if (r1 == r2) return;
    ExchangeRays(r1, r2);
    std::swap(MinF[r1], MinF[r2]);
  }

  bool CombineNewRays(uint32_t keyRow, const std::vector<uint32_t>& chain) {
    for (const uint32_t number : chain) {
      if (Ray.size() <= NbRay) {
        if (NbRay >= NbMaxRays) return false;
        Ray.resize(Ray.size() + 1000, Row(Dimension + 1));
        Sat.resize(Ray.size(), Words(nc));
        MinF.resize(Ray.size(), Row(4));
      }
      if (IndexLR[number] == kNoNumber) return false;
      const uint32_t companionRow = static_cast<uint32_t>(IndexLR[number]);
      if (SimpleCombine(keyRow, companionRow, NbRay) != 0) return false;
      Words& sat = Sat[NbRay];
      std::fill(sat.begin(), sat.end(), 0U);
      for (uint32_t w = 0; w < nc; ++w) sat[w] = Sat[keyRow][w] | Sat[companionRow][w];
      sat[WCount] &= ~(BCount | (BCount - 1));
      std::fill(sat.begin() + WCount + 1, sat.end(), 0U);
      StorePair(GenList, companionRow, NbRay);
      ++NbRay;
    }
    return true;
  }

  /// Pairs of the new rays of constraint k with their positive parents; the new rays have come up by `moved`.
  bool PairsWithParents(int32_t k, uint32_t moved) {
    TTEST = 0;
    for (const auto& [r, stored] : GenList) {
      for (const uint32_t storedRow : stored) {
        const uint32_t n = storedRow - moved;
        const int32_t a = MinF[r][0], b = MinF[n][0];
        if (a == b) continue;
        const uint32_t v = a < b ? r : n, s = a < b ? n : r;
        const int32_t due = std::min(a, b);
        if (!SatBit(s, static_cast<uint32_t>(due)) || CheckedLater(k, due, v, s)) continue;
        if (ParentTest(v, s) && !FilePair(due, v, s)) return false;
      }
    }
    return true;
  }

  bool PairsOnFacet(uint32_t k, uint32_t P) {
    TTEST = P;
    for (uint32_t group = P; MinF[group][0] != maxMinF;) {
      const uint32_t m = static_cast<uint32_t>(MinF[group][0]), end = GetBorder(MinF[group][0]);
      if (end == kNoRow) break;
      const bool between = int64_t{k} < int64_t{m} - 1;
      if (between) MaskBetween(k, m);
      for (uint32_t a = group; a < end; ++a) {
        for (uint32_t b = end; b < NbRay; ++b) {
          if (!SatBit(b, m) || !QuickTest(a, b) || (between && CommonBetween(k, m, a, b))) continue;
          ++result.counters.onFacets;
          if (FullTest(a, b) && !FilePair(static_cast<int32_t>(m), a, b)) return false;
        }
      }
      group = end;
    }
    return true;
  }

  void SortGroups(uint32_t P) {
    if (P >= MinF.size()) return;
    Rows scratch;
    for (uint32_t group = P;;) {
      const uint32_t end = GetBorder(MinF[group][0]);
      if (end == kNoRow) return;
      scratch.resize(NbRay, Row(4));
      for (uint32_t r = group; r < end; ++r) {
        scratch[r][0] = 0;
        for (uint32_t w = 0; w <= AdjWCount; ++w) scratch[r][0] += std::popcount(Sat[r][w]);
      }
      SortRays(scratch, group, end);
      group = end;
    }
  }

  bool Iterate(uint32_t firstConstraint) {
    for (uint32_t k = firstConstraint; k < NbConstraints; ++k) {
      EvalConstraint(Constraints[k]);
      WCount = k >> 5;
      BCount = Bit(k);
      AdjWCount = (k + 1) >> 5;
      AdjBCount = Bit(k + 1);
      AdjBitmask = 2 * AdjBCount - 1;
      uint32_t eq = 0, sup = 0, inf = NbRay;
      while (sup < inf) {
        if (Ray[sup][0] > 0) {
          Exchange(eq++, sup++);
        } else if (Ray[sup][0] == 0) {
          ++sup;
        } else {
          Exchange(--inf, sup);
        }
      }
      const uint32_t P = eq, Z = inf;
      const bool last = k + 1 == NbConstraints;
      if (!LiListArray[k]->empty()) {
        GenList.clear();
        const uint32_t oldNbRay = NbRay;
        for (const auto& [key, chain] : *LiListArray[k]) {
          if (IndexLR[key] == kNoNumber) return false;
          if (!CombineNewRays(static_cast<uint32_t>(IndexLR[key]), chain)) return false;
        }
        const uint32_t moved = oldNbRay - Z;
        for (uint32_t row = oldNbRay; row < NbRay; ++row) {
          Ray[row - moved] = Ray[row];
          Sat[row - moved] = Sat[row];
        }
        NbRay -= moved;
        if (last) break;
        RemoveIndices(Z, oldNbRay);
        ResizeIndexRL(Z, NbRay);
        EvalAllConstraints(Z, k);
        if (!PairsWithParents(static_cast<int32_t>(k), moved)) return false;
      } else {
        RemoveIndices(Z, NbRay);
        NbRay = Z;
        if (last) break;
      }
      LiListArray[k] = std::nullopt;
      if (NbRay == 0) return false;
      if (NbRay != P) {
        SortRays(MinF, P, NbRay);
      } else if (P < MinF.size()) {
        MinF[P][0] = maxMinF;
      }
      BuildBorder(P);
      SortGroups(P);
      if (NbRay != P && !PairsOnFacet(k, P)) return false;
    }
    return true;
  }

  bool Dual() {
    Dimension = static_cast<uint32_t>(Constraints[0].size() - 1);
    Start();
    const std::optional<int32_t> lastBasis = EliminateLines();
    if (!lastBasis) result.output += "DUAL(): no basis found!\n";
    if (!FirstSweep(lastBasis.value_or(0))) return false;
    --NbRay;
    return Iterate(lastBasis ? static_cast<uint32_t>(*lastBasis + 1) : 1);
  }
};

}  // namespace

Answer Solve(const Rows& constraints, uint32_t maxRays) {
  return Solver(constraints, maxRays).Run();
}

}  // namespace reference
