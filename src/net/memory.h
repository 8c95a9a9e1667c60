// Memory of the net model and the structural tables: zero-filled blocks that end the process when they cannot
// be had, with a line on standard error and status 255.
#pragma once

#include <cstdint>
#include <type_traits>

namespace siphons {

/// Zero-filled block; null for 0 bytes. "Unable to malloc %u bytes\n".
void* nMalloc(uint32_t bytes);

/// The block resized; a null block as nMalloc. "Unable to realloc %u bytes\n".
void* nRealloc(void* block, uint32_t bytes);

/// A new copy of the text. "Unable to duplicate string (%s)\n".
char* nStrdup(const char* text);

/// Releases the block; null is ignored.
void Free(void* block);

/// Keeps a block that its owner gives up, because others may still refer into it: it remains reachable until
/// the process ends, so that no leak checker takes it for lost.
void Abandon(void* block);

/// The size of `count` records; ends the process as nMalloc does when it does not fit 32 bits.
uint32_t TableBytes(uint32_t count, uint64_t recordBytes);

/// Zero-filled table; null for no records, and a negative count means none.
template <typename Record>
Record* NewTable(int32_t count) {
  static_assert(std::is_trivially_copyable_v<Record>);
  if (count <= 0) return nullptr;
  // NOLINTNEXTLINE(bugprone-sizeof-expression): there are tables of pointers, too
  return static_cast<Record*>(nMalloc(TableBytes(static_cast<uint32_t>(count), sizeof(Record))));
}

}  // namespace siphons
