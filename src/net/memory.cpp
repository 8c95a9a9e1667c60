#include "net/memory.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <vector>

#include "base/exit_status.h"
#include "base/out_of_memory.h"
#include "base/process_end.h"

namespace siphons {

void* nMalloc(uint32_t bytes) {
  if (bytes == 0) return nullptr;
  void* const block = std::calloc(bytes, 1);
  if (block == nullptr) OutOfMemory(bytes);
  return block;
}

void* nRealloc(void* block, uint32_t bytes) {
  if (block == nullptr) return nMalloc(bytes);
  if (bytes == 0) {
    Free(block);
    return nullptr;
  }
  void* const resized = std::realloc(block, bytes);
  if (resized == nullptr) {
    std::fprintf(stderr, "Unable to realloc %u bytes\n", bytes);
    EndProcess(kOutOfMemory);
  }
  return resized;
}

char* nStrdup(const char* text) {
  const size_t size = std::strlen(text) + 1;
  char* const copy = static_cast<char*>(std::malloc(size));
  if (copy == nullptr) {
    std::fprintf(stderr, "Unable to duplicate string (%s)\n", text);
    EndProcess(kOutOfMemory);
  }
  std::memcpy(copy, text, size);
  return copy;
}

void Free(void* block) {
  std::free(block);
}

void Abandon(void* block) {
  static auto* const abandoned = new std::vector<void*>;
  if (block != nullptr) abandoned->push_back(block);
}

uint32_t TableBytes(uint32_t count, uint64_t recordBytes) {
  const uint64_t bytes = uint64_t{count} * recordBytes;
  if (bytes > std::numeric_limits<uint32_t>::max()) OutOfMemory(bytes);
  return static_cast<uint32_t>(bytes);
}

}  // namespace siphons
