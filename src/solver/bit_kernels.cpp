#include "solver/bit_kernels.h"

#include <array>
#include <bit>

#if defined(__x86_64__) && defined(__GNUC__)
#define SIPHONS_X86_KERNELS 1
#include <immintrin.h>
#endif

namespace siphons {

namespace {

// Every kernel is a template by the number of words of a pattern: 1, 2, or 0 for any number. Most nets have
// no more than 128 constraints, and with the number known the mask stays in registers.

template <size_t kWords>
constexpr size_t WordCount(const PatternBlocks& patterns) {
  return kWords != 0 ? kWords : patterns.wordCount;
}

namespace portable {

/// Bits set in a word, with operations that every machine has for several words at once.
inline uint64_t PopCount(uint64_t v) {
  v -= v >> 1 & 0x5555555555555555U;
  v = (v & 0x3333333333333333U) + (v >> 2 & 0x3333333333333333U);
  v = (v + (v >> 4)) & 0x0f0f0f0f0f0f0f0fU;
  v += v >> 8;
  v += v >> 16;
  return (v + (v >> 32)) & 0xff;
}

/// Appends the patterns 8 * block + i with selected[i] not zero.
inline size_t Append(uint32_t block, const std::array<uint64_t, kBlockPatterns>& selected, uint32_t* out,
                     size_t found) {
  for (size_t i = 0; i < kBlockPatterns; ++i) {
    out[found] = static_cast<uint32_t>(block * kBlockPatterns + i);
    found += selected[i] != 0 ? 1U : 0U;
  }
  return found;
}

template <size_t kWords>
size_t SelectSharing(PatternBlocks patterns, std::span<const uint32_t> blocks, const uint64_t* mask,
                     uint32_t least, uint32_t* out) {
  const size_t words = WordCount<kWords>(patterns);
  size_t found = 0;
  for (const uint32_t block : blocks) {
    const uint64_t* const data = patterns.data + block * words * kBlockPatterns;
    std::array<uint64_t, kBlockPatterns> common{};
    for (size_t w = 0; w < words; ++w) {
      for (size_t i = 0; i < kBlockPatterns; ++i)
        common[i] += PopCount(mask[w] & data[w * kBlockPatterns + i]);
    }
    for (uint64_t& lane : common) lane = lane >= least ? 1 : 0;
    found = Append(block, common, out, found);
  }
  return found;
}

/// What the patterns of a block lack of `needed`.
template <size_t kWords>
inline std::array<uint64_t, kBlockPatterns> Missing(const uint64_t* data, size_t words,
                                                    const uint64_t* needed) {
  std::array<uint64_t, kBlockPatterns> missing{};
  for (size_t w = 0; w < words; ++w) {
    for (size_t i = 0; i < kBlockPatterns; ++i) missing[i] |= needed[w] & ~data[w * kBlockPatterns + i];
  }
  return missing;
}

template <size_t kWords>
size_t SelectHolding(PatternBlocks patterns, std::span<const uint32_t> blocks, const uint64_t* needed,
                     uint32_t* out) {
  const size_t words = WordCount<kWords>(patterns);
  size_t found = 0;
  for (const uint32_t block : blocks) {
    auto lanes = Missing<kWords>(patterns.data + block * words * kBlockPatterns, words, needed);
    for (uint64_t& lane : lanes) lane = lane == 0 ? 1 : 0;
    found = Append(block, lanes, out, found);
  }
  return found;
}

template <size_t kWords>
size_t FirstHolding(PatternBlocks patterns, size_t blockCount, const uint64_t* needed) {
  const size_t words = WordCount<kWords>(patterns);
  for (size_t block = 0; block < blockCount; ++block) {
    const auto missing = Missing<kWords>(patterns.data + block * words * kBlockPatterns, words, needed);
    for (size_t i = 0; i < kBlockPatterns; ++i) {
      if (missing[i] == 0) return block * kBlockPatterns + i;
    }
  }
  return blockCount * kBlockPatterns;
}

}  // namespace portable

#ifdef SIPHONS_X86_KERNELS

namespace avx2 {

#define SIPHONS_AVX2 __attribute__((target("avx2,bmi,popcnt")))

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

SIPHONS_AVX2 inline uint32_t LaneSigns(__m256i low, __m256i high) {
  const auto signs = [](__m256i v) SIPHONS_AVX2 {
    return static_cast<uint32_t>(_mm256_movemask_pd(_mm256_castsi256_pd(v)));
  };
  return signs(low) | signs(high) << 4;
}

/// For each set of lanes, as a mask of eight bits: its lanes in ascending order.
using LanesOfSets = std::array<std::array<uint8_t, kBlockPatterns>, 256>;
constexpr LanesOfSets ListLanes() {
  LanesOfSets lanes{};
  for (size_t set = 0; set < lanes.size(); ++set) {
    size_t count = 0;
    for (uint8_t lane = 0; lane < kBlockPatterns; ++lane) {
      if ((set >> lane & 1) != 0) lanes[set][count++] = lane;
    }
  }
  return lanes;
}
constexpr LanesOfSets kLanesOf = ListLanes();

/// Appends the patterns 8 * block + i of the bits i set in `selected`.
SIPHONS_AVX2 inline size_t Append(uint32_t block, uint32_t selected, uint32_t* out, size_t found) {
  const __m128i lanes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(kLanesOf[selected].data()));
  const __m256i first = _mm256_set1_epi32(static_cast<int32_t>(block * kBlockPatterns));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + found),
                      _mm256_add_epi32(first, _mm256_cvtepu8_epi32(lanes)));
  return found + static_cast<size_t>(std::popcount(selected));
}

template <size_t kWords>
SIPHONS_AVX2 size_t SelectSharing(PatternBlocks patterns, std::span<const uint32_t> blocks,
                                  const uint64_t* mask, uint32_t least, uint32_t* out) {
  const size_t words = WordCount<kWords>(patterns);
  const __m256i below = _mm256_set1_epi64x(int64_t{least} - 1);
  size_t found = 0;
  for (const uint32_t block : blocks) {
    const uint64_t* const data = patterns.data + block * words * kBlockPatterns;
    __m256i low = _mm256_setzero_si256(), high = low;
    for (size_t w = 0; w < words; ++w) {
      const __m256i maskWord = _mm256_set1_epi64x(static_cast<int64_t>(mask[w]));
      const uint64_t* const lanes = data + w * kBlockPatterns;
      low = _mm256_add_epi64(low, PopCount(_mm256_and_si256(maskWord, Load(lanes))));
      high = _mm256_add_epi64(high, PopCount(_mm256_and_si256(maskWord, Load(lanes + 4))));
    }
    found =
        Append(block, LaneSigns(_mm256_cmpgt_epi64(low, below), _mm256_cmpgt_epi64(high, below)), out, found);
  }
  return found;
}

/// The patterns of a block that hold all of `needed`.
template <size_t kWords>
SIPHONS_AVX2 inline uint32_t Holding(const uint64_t* data, size_t words, const uint64_t* needed) {
  __m256i low = _mm256_setzero_si256(), high = low;
  for (size_t w = 0; w < words; ++w) {
    const __m256i neededWord = _mm256_set1_epi64x(static_cast<int64_t>(needed[w]));
    const uint64_t* const lanes = data + w * kBlockPatterns;
    low = _mm256_or_si256(low, _mm256_andnot_si256(Load(lanes), neededWord));
    high = _mm256_or_si256(high, _mm256_andnot_si256(Load(lanes + 4), neededWord));
  }
  const __m256i none = _mm256_setzero_si256();
  return LaneSigns(_mm256_cmpeq_epi64(low, none), _mm256_cmpeq_epi64(high, none));
}

template <size_t kWords>
SIPHONS_AVX2 size_t SelectHolding(PatternBlocks patterns, std::span<const uint32_t> blocks,
                                  const uint64_t* needed, uint32_t* out) {
  const size_t words = WordCount<kWords>(patterns);
  size_t found = 0;
  for (const uint32_t block : blocks) {
    found = Append(block, Holding<kWords>(patterns.data + block * words * kBlockPatterns, words, needed), out,
                   found);
  }
  return found;
}

template <size_t kWords>
SIPHONS_AVX2 size_t FirstHolding(PatternBlocks patterns, size_t blockCount, const uint64_t* needed) {
  const size_t words = WordCount<kWords>(patterns);
  for (size_t block = 0; block < blockCount; ++block) {
    const uint32_t holding = Holding<kWords>(patterns.data + block * words * kBlockPatterns, words, needed);
    if (holding != 0) return block * kBlockPatterns + static_cast<size_t>(std::countr_zero(holding));
  }
  return blockCount * kBlockPatterns;
}

}  // namespace avx2

namespace avx512 {

#define SIPHONS_AVX512 __attribute__((target("avx512f,avx512vl,avx512vpopcntdq,bmi,popcnt")))

/// Appends the patterns 8 * block + i of the bits i set in `selected`.
SIPHONS_AVX512 inline size_t Append(uint32_t block, __mmask8 selected, uint32_t* out, size_t found) {
  const __m256i lanes = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
  const __m256i numbers =
      _mm256_add_epi32(_mm256_set1_epi32(static_cast<int32_t>(block * kBlockPatterns)), lanes);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + found),
                      _mm256_maskz_compress_epi32(selected, numbers));
  return found + static_cast<size_t>(std::popcount(static_cast<uint32_t>(selected)));
}

template <size_t kWords>
SIPHONS_AVX512 size_t SelectSharing(PatternBlocks patterns, std::span<const uint32_t> blocks,
                                    const uint64_t* mask, uint32_t least, uint32_t* out) {
  const size_t words = WordCount<kWords>(patterns);
  const __m512i leastLanes = _mm512_set1_epi64(int64_t{least});
  size_t found = 0;
  for (const uint32_t block : blocks) {
    const uint64_t* const data = patterns.data + block * words * kBlockPatterns;
    __m512i common = _mm512_setzero_si512();
    for (size_t w = 0; w < words; ++w) {
      const __m512i maskWord = _mm512_set1_epi64(static_cast<int64_t>(mask[w]));
      const __m512i shared = _mm512_and_si512(maskWord, _mm512_loadu_si512(data + w * kBlockPatterns));
      common = _mm512_add_epi64(common, _mm512_popcnt_epi64(shared));
    }
    found = Append(block, _mm512_cmpge_epu64_mask(common, leastLanes), out, found);
  }
  return found;
}

/// The patterns of a block that hold all of `needed`.
template <size_t kWords>
SIPHONS_AVX512 inline __mmask8 Holding(const uint64_t* data, size_t words, const uint64_t* needed) {
  constexpr int kOrNeededNotInPattern = 0xF2;  // missing | (~pattern & needed), as a truth table
  __m512i missing = _mm512_setzero_si512();
  for (size_t w = 0; w < words; ++w) {
    const __m512i neededWord = _mm512_set1_epi64(static_cast<int64_t>(needed[w]));
    const __m512i pattern = _mm512_loadu_si512(data + w * kBlockPatterns);
    missing = _mm512_ternarylogic_epi64(missing, pattern, neededWord, kOrNeededNotInPattern);
  }
  return _mm512_testn_epi64_mask(missing, missing);
}

template <size_t kWords>
SIPHONS_AVX512 size_t SelectHolding(PatternBlocks patterns, std::span<const uint32_t> blocks,
                                    const uint64_t* needed, uint32_t* out) {
  const size_t words = WordCount<kWords>(patterns);
  size_t found = 0;
  for (const uint32_t block : blocks) {
    found = Append(block, Holding<kWords>(patterns.data + block * words * kBlockPatterns, words, needed), out,
                   found);
  }
  return found;
}

template <size_t kWords>
SIPHONS_AVX512 size_t FirstHolding(PatternBlocks patterns, size_t blockCount, const uint64_t* needed) {
  const size_t words = WordCount<kWords>(patterns);
  for (size_t block = 0; block < blockCount; ++block) {
    const uint32_t holding = Holding<kWords>(patterns.data + block * words * kBlockPatterns, words, needed);
    if (holding != 0) return block * kBlockPatterns + static_cast<size_t>(std::countr_zero(holding));
  }
  return blockCount * kBlockPatterns;
}

}  // namespace avx512

#endif

template <size_t kWords>
const BitKernels& Kernels(InstructionSet set) {
  static constexpr std::array<BitKernels, 3> versions{{
      {portable::SelectSharing<kWords>, portable::SelectHolding<kWords>, portable::FirstHolding<kWords>},
#ifdef SIPHONS_X86_KERNELS
      {avx2::SelectSharing<kWords>, avx2::SelectHolding<kWords>, avx2::FirstHolding<kWords>},
      {avx512::SelectSharing<kWords>, avx512::SelectHolding<kWords>, avx512::FirstHolding<kWords>},
#endif
  }};
  return versions[static_cast<size_t>(set)];
}

}  // namespace

bool IsSupported(InstructionSet set) {
#ifdef SIPHONS_X86_KERNELS
  switch (set) {
    case InstructionSet::kAvx512:
      return __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512vl") != 0 &&
             __builtin_cpu_supports("avx512vpopcntdq") != 0;
    case InstructionSet::kAvx2:
      return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("bmi") != 0 &&
             __builtin_cpu_supports("popcnt") != 0;
    case InstructionSet::kPortable:
      break;
  }
#endif
  return set == InstructionSet::kPortable;
}

InstructionSet BestInstructionSet() {
  for (const InstructionSet set : {InstructionSet::kAvx512, InstructionSet::kAvx2}) {
    if (IsSupported(set)) return set;
  }
  return InstructionSet::kPortable;
}

const BitKernels& KernelsFor(InstructionSet set, size_t wordCount) {
  if (wordCount == 1) return Kernels<1>(set);
  if (wordCount == 2) return Kernels<2>(set);
  return Kernels<0>(set);
}

}  // namespace siphons
