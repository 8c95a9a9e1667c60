#include "netkit/verdict/marking_store.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <utility>

namespace siphons {

namespace {

constexpr uint64_t kHashHalf = 0xffffffff00000000U;

uint8_t BitsFor(int64_t tokens) {
  uint8_t bits = 1;
  while (bits < 64 && (static_cast<uint64_t>(tokens) >> bits) != 0) bits = static_cast<uint8_t>(bits * 2);
  return bits;
}

}  // namespace

MarkingStore::MarkingStore(const Marking& first) : fields_(first.size()) {
  for (size_t p = 0; p < first.size(); ++p) fields_[p].bits = BitsFor(first[p]);
  LayOut();
  for (size_t p = 0; p < first.size(); ++p) Set(scratch_.data(), fields_[p], first[p]);
  Append(scratch_.data());
  constexpr size_t kFirstSlots = 1024;
  Rehash(kFirstSlots);
}

MarkingStore::Entry MarkingStore::Enter(int32_t number, std::span<const PlaceTokens> changes,
                                        const Marking& marking) {
  const auto fits = [&](const PlaceTokens& change) {
    const size_t p = static_cast<size_t>(change.place);
    return BitsFor(marking[p]) <= fields_[p].bits;
  };
  if (!std::all_of(changes.begin(), changes.end(), fits)) Widen(marking, changes);
  std::copy_n(Words(number), wordCount_, scratch_.data());
  for (const PlaceTokens& change : changes) {
    const size_t p = static_cast<size_t>(change.place);
    Set(scratch_.data(), fields_[p], marking[p]);
  }
  const uint64_t hash = Hash(scratch_.data());
  size_t slot = SlotOf(scratch_.data(), hash);
  if (table_[slot] != 0) return {static_cast<int32_t>(table_[slot] & ~kHashHalf) - 1, false};
  Append(scratch_.data());
  if (static_cast<size_t>(size_) * 2 > table_.size()) {
    Rehash(table_.size() * 2);
  } else {
    table_[slot] = (hash & kHashHalf) | static_cast<uint64_t>(size_);
  }
  return {size_ - 1, true};
}

void MarkingStore::Unpack(int32_t number, Marking& marking) const {
  const uint64_t* const words = Words(number);
  for (size_t p = 0; p < fields_.size(); ++p) marking[p] = Get(words, fields_[p]);
}

int64_t MarkingStore::BytesPerMarking() const {
  constexpr size_t kSlotsPerMarking = 4;  // at worst, after the table has grown
  return static_cast<int64_t>((wordCount_ + kSlotsPerMarking) * sizeof(uint64_t));
}

uint64_t* MarkingStore::Words(int32_t number) {
  return chunks_[static_cast<size_t>(number / kChunk)].get() +
         static_cast<size_t>(number % kChunk) * wordCount_;
}

const uint64_t* MarkingStore::Words(int32_t number) const {
  return chunks_[static_cast<size_t>(number / kChunk)].get() +
         static_cast<size_t>(number % kChunk) * wordCount_;
}

uint64_t MarkingStore::MaskOf(const Field& field) {
  return field.bits == 64 ? ~uint64_t{0} : (uint64_t{1} << field.bits) - 1;
}

void MarkingStore::Set(uint64_t* words, const Field& field, int64_t tokens) const {
  words[field.word] &= ~(MaskOf(field) << field.shift);
  words[field.word] |= static_cast<uint64_t>(tokens) << field.shift;
}

int64_t MarkingStore::Get(const uint64_t* words, const Field& field) const {
  return static_cast<int64_t>((words[field.word] >> field.shift) & MaskOf(field));
}

/// Gives every field its position: wide ones first, so that none crosses a word.
void MarkingStore::LayOut() {
  std::vector<size_t> order(fields_.size());
  std::iota(order.begin(), order.end(), size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [this](size_t a, size_t b) { return fields_[a].bits > fields_[b].bits; });
  size_t bit = 0;
  for (const size_t p : order) {
    fields_[p].word = static_cast<uint32_t>(bit / 64);
    fields_[p].shift = static_cast<uint8_t>(bit % 64);
    bit += fields_[p].bits;
  }
  wordCount_ = std::max<size_t>(1, (bit + 63) / 64);
  scratch_.assign(wordCount_, 0);
}

/// Widens the fields of the changed places to what the marking needs, and packs all markings anew.
void MarkingStore::Widen(const Marking& marking, std::span<const PlaceTokens> changes) {
  repacks_ = size_ >= 2 * sizeAtRepack_ ? 0 : repacks_ + 1;
  if (repacks_ == 0) sizeAtRepack_ = size_;
  const std::vector<Field> oldFields = fields_;
  for (const PlaceTokens& change : changes) {
    const size_t p = static_cast<size_t>(change.place);
    const uint8_t oldBits = oldFields[p].bits, bits = std::max(oldBits, BitsFor(marking[p]));
    fields_[p].bits = bits;
    if (bits == oldBits || repacks_ < kFewRepacks) continue;
    for (Field& field : fields_) {
      if (field.bits == oldBits) field.bits = bits;
    }
  }
  const size_t oldWordCount = wordCount_;
  const auto oldChunks = std::exchange(chunks_, {});
  const int32_t oldSize = std::exchange(size_, 0);
  LayOut();
  for (int32_t number = 0; number < oldSize; ++number) {
    const uint64_t* const old = oldChunks[static_cast<size_t>(number / kChunk)].get() +
                                static_cast<size_t>(number % kChunk) * oldWordCount;
    for (size_t p = 0; p < fields_.size(); ++p) Set(scratch_.data(), fields_[p], Get(old, oldFields[p]));
    Append(scratch_.data());
  }
  Rehash(table_.size());
}

void MarkingStore::Append(const uint64_t* words) {
  if (size_ % kChunk == 0) {
    chunks_.push_back(std::make_unique_for_overwrite<uint64_t[]>(static_cast<size_t>(kChunk) * wordCount_));
  }
  std::copy_n(words, wordCount_, Words(size_));
  ++size_;
}

uint64_t MarkingStore::Hash(const uint64_t* words) const {
  constexpr uint64_t kOdd = 0x9e3779b97f4a7c15U;
  constexpr int kHalf = 32;
  uint64_t hash = kOdd;
  for (size_t i = 0; i < wordCount_; ++i) {
    hash = (hash ^ words[i]) * kOdd;
    hash ^= hash >> kHalf;
  }
  hash *= 0xd6e8feb86659fd93U;
  return hash ^ (hash >> kHalf);
}

void MarkingStore::Rehash(size_t slots) {
  table_.assign(slots, 0);
  for (int32_t number = 0; number < size_; ++number) {
    const uint64_t hash = Hash(Words(number));
    size_t slot = hash & (slots - 1);
    while (table_[slot] != 0) slot = (slot + 1) & (slots - 1);
    table_[slot] = (hash & kHashHalf) | static_cast<uint64_t>(number + 1);
  }
}

/// Where the marking stands, or the free slot where it would.
size_t MarkingStore::SlotOf(const uint64_t* words, uint64_t hash) const {
  const size_t mask = table_.size() - 1;
  size_t slot = hash & mask;
  for (; table_[slot] != 0; slot = (slot + 1) & mask) {
    if ((table_[slot] & kHashHalf) != (hash & kHashHalf)) continue;
    const int32_t number = static_cast<int32_t>(table_[slot] & ~kHashHalf) - 1;
    if (std::memcmp(Words(number), words, wordCount_ * sizeof(uint64_t)) == 0) break;
  }
  return slot;
}

}  // namespace siphons
