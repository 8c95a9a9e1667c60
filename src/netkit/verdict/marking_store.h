// A set of markings, packed, each with a number in the order of entry.
//
// Every place has a field of 1, 2, 4, ... 64 bits, so that no field crosses a word. A field starts as narrow
// as the initial marking allows; when a number does not fit, the place's field widens and all markings are
// packed anew. While the set does not double, this happens a few times at most: then all fields of that width
// widen at once. Numbers are found through an open table of hash bits and indices, at most half full.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "netkit/verdict/firing_net.h"

namespace siphons {

class MarkingStore {
 public:
  /// Holds the first marking, as number 0.
  explicit MarkingStore(const Marking& first);

  struct Entry {
    int32_t number;
    bool isNew;
  };

  /// Finds or enters a marking that differs from marking `number` at most in the places of `changes`.
  Entry Enter(int32_t number, std::span<const PlaceTokens> changes, const Marking& marking);

  void Unpack(int32_t number, Marking& marking) const;

  int32_t Size() const { return size_; }
  /// Memory of one marking with its share of the table.
  int64_t BytesPerMarking() const;

 private:
  struct Field {
    uint32_t word = 0;
    uint8_t shift = 0;
    uint8_t bits = 1;
  };

  static constexpr int32_t kChunk = 4096;  ///< markings a chunk of memory holds
  static constexpr int32_t kFewRepacks = 2;

  uint64_t* Words(int32_t number);
  const uint64_t* Words(int32_t number) const;
  static uint64_t MaskOf(const Field& field);
  void Set(uint64_t* words, const Field& field, int64_t tokens) const;
  int64_t Get(const uint64_t* words, const Field& field) const;
  void LayOut();
  void Widen(const Marking& marking, std::span<const PlaceTokens> changes);
  void Append(const uint64_t* words);
  uint64_t Hash(const uint64_t* words) const;
  void Rehash(size_t slots);
  size_t SlotOf(const uint64_t* words, uint64_t hash) const;

  std::vector<Field> fields_;
  size_t wordCount_ = 0;
  std::vector<std::unique_ptr<uint64_t[]>> chunks_;
  int32_t size_ = 0;
  std::vector<uint64_t> table_;  ///< upper half: upper half of the hash; lower: number + 1; 0: free
  std::vector<uint64_t> scratch_;
  int32_t sizeAtRepack_ = 0;
  int32_t repacks_ = 0;  ///< since the set was half as large
};

}  // namespace siphons
