#include "solver/bit_kernels.h"

#include <bit>

#if defined(__x86_64__) && defined(__GNUC__)
#define SIPHONS_X86_KERNELS 1
#include <immintrin.h>
#endif

namespace siphons {

namespace {

/// The rows of word w of a bitmap that are below `rows` and not `except`.
inline uint64_t Others(size_t w, size_t rows, size_t except) {
  uint64_t others = rows - 64 * w >= 64 ? ~uint64_t{0} : (uint64_t{1} << (rows - 64 * w)) - 1;
  if (except / 64 == w) others &= ~(uint64_t{1} << (except % 64));
  return others;
}

namespace portable {

size_t SelectRows(const BitColumns& bits, const uint64_t* mask, uint32_t least, SelectedRow* out) {
  size_t found = 0;
  for (size_t t = 0; t < bits.rows; ++t) {
    uint32_t common = 0;
    for (size_t w = 0; w < bits.words; ++w) {
      common += static_cast<uint32_t>(std::popcount(mask[w] & bits.columns[w * bits.stride + t]));
    }
    out[found] = {static_cast<uint32_t>(t), common};
    found += common >= least ? 1 : 0;
  }
  return found;
}

bool AnyRowHolds(const BitColumns& bits, const uint64_t* needed, size_t except) {
  for (size_t t = 0; t < bits.rows; ++t) {
    uint64_t missing = 0;
    for (size_t w = 0; w < bits.words; ++w) missing |= needed[w] & ~bits.columns[w * bits.stride + t];
    if (missing == 0 && t != except) return true;
  }
  return false;
}

bool AnyRowInAll(std::span<const uint64_t* const> bitmaps, size_t rows, size_t except) {
  for (size_t w = 0; 64 * w < rows; ++w) {
    uint64_t common = Others(w, rows, except);
    for (size_t i = 0; i < bitmaps.size() && common != 0; ++i) common &= bitmaps[i][w];
    if (common != 0) return true;
  }
  return false;
}

}  // namespace portable

#ifdef SIPHONS_X86_KERNELS

/// Appends the rows t + i of the bits i set in `selected`, those below `rows`; common[i] is what they share.
inline size_t AppendRows(uint32_t selected, const uint64_t* common, size_t t, size_t rows, SelectedRow* out,
                         size_t found) {
  for (; selected != 0; selected &= selected - 1) {
    const size_t i = static_cast<size_t>(std::countr_zero(selected));
    if (t + i >= rows) break;
    out[found++] = {static_cast<uint32_t>(t + i), static_cast<uint32_t>(common[i])};
  }
  return found;
}

/// Whether the words from w on, `count` of them, hold a row below `rows` other than `except`.
inline bool AnyOtherInWords(const uint64_t* words, size_t count, size_t w, size_t rows, size_t except) {
  for (size_t i = 0; i < count && 64 * (w + i) < rows; ++i) {
    if ((words[i] & Others(w + i, rows, except)) != 0) return true;
  }
  return false;
}

/// Whether a bit i is set in `holding` for which t + i is a row other than `except`.
inline bool AnyOther(uint32_t holding, size_t t, size_t rows, size_t except) {
  for (; holding != 0; holding &= holding - 1) {
    const size_t row = t + static_cast<size_t>(std::countr_zero(holding));
    if (row < rows && row != except) return true;
  }
  return false;
}

namespace avx2 {

#define SIPHONS_AVX2 __attribute__((target("avx2,bmi,popcnt")))

constexpr size_t kLanes = 4;

/// The number of bits in each 64-bit lane: nibbles are looked up, bytes summed (Muła, Kurz and Lemire 2018).
SIPHONS_AVX2 inline __m256i PopCount(__m256i v) {
  const __m256i table = _mm256_setr_epi8(0, 1, 1, 2, 1, 2, 2, 3, 1, 2, 2, 3, 2, 3, 3, 4,  //
                                         0, 1, 1, 2, 1, 2, 2, 3, 1, 2, 2, 3, 2, 3, 3, 4);
  const __m256i nibble = _mm256_set1_epi8(0x0f);
  const __m256i low = _mm256_shuffle_epi8(table, _mm256_and_si256(v, nibble));
  const __m256i high = _mm256_shuffle_epi8(table, _mm256_and_si256(_mm256_srli_epi16(v, 4), nibble));
  return _mm256_sad_epu8(_mm256_add_epi8(low, high), _mm256_setzero_si256());
}

SIPHONS_AVX2 inline __m256i Load(const uint64_t* words) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(words));
}

SIPHONS_AVX2 inline uint32_t LaneSigns(__m256i v) {
  return static_cast<uint32_t>(_mm256_movemask_pd(_mm256_castsi256_pd(v)));
}

SIPHONS_AVX2 size_t SelectRows(const BitColumns& bits, const uint64_t* mask, uint32_t least,
                               SelectedRow* out) {
  const __m256i below = _mm256_set1_epi64x(static_cast<int64_t>(least) - 1);
  size_t found = 0;
  for (size_t t = 0; t < bits.rows; t += kLanes) {
    __m256i common = _mm256_setzero_si256();
    for (size_t w = 0; w < bits.words; ++w) {
      const __m256i maskWord = _mm256_set1_epi64x(static_cast<int64_t>(mask[w]));
      const __m256i shared = _mm256_and_si256(maskWord, Load(bits.columns + w * bits.stride + t));
      common = _mm256_add_epi64(common, PopCount(shared));
    }
    const uint32_t selected = LaneSigns(_mm256_cmpgt_epi64(common, below));
    if (selected == 0) continue;
    alignas(32) uint64_t counts[kLanes];
    _mm256_store_si256(reinterpret_cast<__m256i*>(counts), common);
    found = AppendRows(selected, counts, t, bits.rows, out, found);
  }
  return found;
}

SIPHONS_AVX2 bool AnyRowHolds(const BitColumns& bits, const uint64_t* needed, size_t except) {
  for (size_t t = 0; t < bits.rows; t += kLanes) {
    __m256i missing = _mm256_setzero_si256();
    for (size_t w = 0; w < bits.words; ++w) {
      const __m256i neededWord = _mm256_set1_epi64x(static_cast<int64_t>(needed[w]));
      missing =
          _mm256_or_si256(missing, _mm256_andnot_si256(Load(bits.columns + w * bits.stride + t), neededWord));
    }
    const uint32_t holding = LaneSigns(_mm256_cmpeq_epi64(missing, _mm256_setzero_si256()));
    if (holding != 0 && AnyOther(holding, t, bits.rows, except)) return true;
  }
  return false;
}

SIPHONS_AVX2 bool AnyRowInAll(std::span<const uint64_t* const> bitmaps, size_t rows, size_t except) {
  for (size_t w = 0; 64 * w < rows; w += kLanes) {
    __m256i common = _mm256_set1_epi64x(-1);
    for (size_t i = 0; i < bitmaps.size() && _mm256_testz_si256(common, common) == 0; ++i) {
      common = _mm256_and_si256(common, Load(bitmaps[i] + w));
    }
    if (_mm256_testz_si256(common, common) != 0) continue;
    alignas(32) uint64_t words[kLanes];
    _mm256_store_si256(reinterpret_cast<__m256i*>(words), common);
    if (AnyOtherInWords(words, kLanes, w, rows, except)) return true;
  }
  return false;
}

}  // namespace avx2

namespace avx512 {

#define SIPHONS_AVX512 __attribute__((target("avx512f,avx512vpopcntdq,bmi,popcnt")))

constexpr size_t kLanes = 8;

/// The bits that 8 rows have in common with the mask; kWords is the number of words, or 0 for any number.
template <size_t kWords>
SIPHONS_AVX512 inline __m512i Common(const BitColumns& bits, const uint64_t* mask, size_t t) {
  const size_t words = kWords != 0 ? kWords : bits.words;
  __m512i common = _mm512_setzero_si512();
  for (size_t w = 0; w < words; ++w) {
    const __m512i maskWord = _mm512_set1_epi64(static_cast<int64_t>(mask[w]));
    const __m512i shared = _mm512_and_si512(maskWord, _mm512_loadu_si512(bits.columns + w * bits.stride + t));
    common = _mm512_add_epi64(common, _mm512_popcnt_epi64(shared));
  }
  return common;
}

template <size_t kWords>
SIPHONS_AVX512 inline size_t Select(const BitColumns& bits, const uint64_t* mask, uint32_t least,
                                    SelectedRow* out) {
  const __m512i leastLanes = _mm512_set1_epi64(static_cast<int64_t>(least));
  size_t found = 0;
  const auto append = [&](uint32_t selected, __m512i common, size_t t) SIPHONS_AVX512 {
    alignas(64) uint64_t counts[kLanes];
    _mm512_store_si512(counts, common);
    found = AppendRows(selected, counts, t, bits.rows, out, found);
  };
  size_t t = 0;
  // Few rows are selected, so one branch serves four times eight rows.
  for (; t + 4 * kLanes <= bits.rows; t += 4 * kLanes) {
    __m512i common[4];
    uint32_t selected[4];
    for (size_t i = 0; i < 4; ++i) {
      common[i] = Common<kWords>(bits, mask, t + i * kLanes);
      selected[i] = _mm512_cmpge_epu64_mask(common[i], leastLanes);
    }
    if ((selected[0] | selected[1] | selected[2] | selected[3]) == 0) continue;
    for (size_t i = 0; i < 4; ++i) append(selected[i], common[i], t + i * kLanes);
  }
  for (; t < bits.rows; t += kLanes) {
    const __m512i common = Common<kWords>(bits, mask, t);
    append(_mm512_cmpge_epu64_mask(common, leastLanes), common, t);
  }
  return found;
}

SIPHONS_AVX512 size_t SelectRows(const BitColumns& bits, const uint64_t* mask, uint32_t least,
                                 SelectedRow* out) {
  switch (bits.words) {
    case 1:
      return Select<1>(bits, mask, least, out);
    case 2:
      return Select<2>(bits, mask, least, out);
    default:
      return Select<0>(bits, mask, least, out);
  }
}

SIPHONS_AVX512 bool AnyRowHolds(const BitColumns& bits, const uint64_t* needed, size_t except) {
  constexpr int kOrNeededNotInRow = 0xF2;  // missing | (~row & needed), as a truth table
  for (size_t t = 0; t < bits.rows; t += kLanes) {
    __m512i missing = _mm512_setzero_si512();
    for (size_t w = 0; w < bits.words; ++w) {
      const __m512i neededWord = _mm512_set1_epi64(static_cast<int64_t>(needed[w]));
      const __m512i row = _mm512_loadu_si512(bits.columns + w * bits.stride + t);
      missing = _mm512_ternarylogic_epi64(missing, row, neededWord, kOrNeededNotInRow);
    }
    const uint32_t holding = _mm512_testn_epi64_mask(missing, missing);
    if (holding != 0 && AnyOther(holding, t, bits.rows, except)) return true;
  }
  return false;
}

SIPHONS_AVX512 bool AnyRowInAll(std::span<const uint64_t* const> bitmaps, size_t rows, size_t except) {
  for (size_t w = 0; 64 * w < rows; w += kLanes) {
    __m512i common = _mm512_set1_epi64(-1);
    for (size_t i = 0; i < bitmaps.size() && _mm512_test_epi64_mask(common, common) != 0; ++i) {
      common = _mm512_and_si512(common, _mm512_loadu_si512(bitmaps[i] + w));
    }
    if (_mm512_test_epi64_mask(common, common) == 0) continue;
    alignas(64) uint64_t words[kLanes];
    _mm512_store_si512(words, common);
    if (AnyOtherInWords(words, kLanes, w, rows, except)) return true;
  }
  return false;
}

}  // namespace avx512

#endif

}  // namespace

bool IsSupported(InstructionSet set) {
#ifdef SIPHONS_X86_KERNELS
  switch (set) {
    case InstructionSet::kAvx512:
      return __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512vpopcntdq") != 0;
    case InstructionSet::kAvx2:
      return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("bmi") != 0;
    case InstructionSet::kPortable:
      break;
  }
#endif
  return set == InstructionSet::kPortable;
}

const BitKernels& KernelsFor(InstructionSet set) {
  static constexpr BitKernels kPortable{portable::SelectRows, portable::AnyRowHolds, portable::AnyRowInAll};
#ifdef SIPHONS_X86_KERNELS
  static constexpr BitKernels kAvx2{avx2::SelectRows, avx2::AnyRowHolds, avx2::AnyRowInAll};
  static constexpr BitKernels kAvx512{avx512::SelectRows, avx512::AnyRowHolds, avx512::AnyRowInAll};
  if (set == InstructionSet::kAvx2) return kAvx2;
  if (set == InstructionSet::kAvx512) return kAvx512;
#endif
  return kPortable;
}

const BitKernels& BestKernels() {
  for (const InstructionSet set : {InstructionSet::kAvx512, InstructionSet::kAvx2}) {
    if (IsSupported(set)) return KernelsFor(set);
  }
  return KernelsFor(InstructionSet::kPortable);
}

}  // namespace siphons
