#include "fuzz/harness.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unordered_map>
#include <vector>

#include "base/out_of_memory.h"
#include "base/process_end.h"
#include "net/memory.h"

namespace siphons {

namespace {

/// A greater block counts as memory that cannot be had: counts of a file may ask for gigabytes.
constexpr uint64_t kGreatestBlock = 1 << 24;

std::unordered_map<void*, size_t> live;  ///< with their sizes
std::unordered_map<void*, size_t> abandoned;
std::vector<void*> given_up;  ///< by Abandon, until LiveBlocks follows their pointers

void* Registered(void* block, size_t size) {
  live.emplace(block, size);
  return block;
}

/// Moves a live block, and the live blocks that it points to, to those given up.
void GiveUp(void* block) {
  const auto at = live.find(block);
  if (at == live.end()) return;
  const size_t size = at->second;
  abandoned.insert(live.extract(at));
  for (size_t offset = 0; offset + sizeof(void*) <= size; offset += alignof(void*)) {
    void* inner = nullptr;
    std::memcpy(&inner, static_cast<const char*>(block) + offset, sizeof inner);
    GiveUp(inner);
  }
}

}  // namespace

// --- base/process_end.h

void EndProcess(int32_t) {
  throw ProcessEnd();
}

void AbortProcess() {
  throw ProcessEnd();
}

void ArithmeticFault() {
  throw ProcessEnd();
}

// --- net/memory.h

void* nMalloc(uint32_t bytes) {
  if (bytes == 0) return nullptr;
  if (bytes > kGreatestBlock) OutOfMemory(bytes);
  return Registered(std::calloc(bytes, 1), bytes);
}

void* nRealloc(void* block, uint32_t bytes) {
  if (bytes > kGreatestBlock) OutOfMemory(bytes);
  live.erase(block);
  return Registered(std::realloc(block, bytes), bytes);
}

char* nStrdup(const char* text) {
  const size_t size = std::strlen(text) + 1;
  return static_cast<char*>(std::memcpy(nMalloc(static_cast<uint32_t>(size)), text, size));
}

void Free(void* block) {
  if (block == nullptr) return;
  Require(live.erase(block) == 1, "a block is released that is not live");
  std::free(block);
}

void Abandon(void* block) {
  given_up.push_back(block);
}

uint32_t TableBytes(uint32_t count, uint64_t recordBytes) {
  const uint64_t bytes = uint64_t{count} * recordBytes;
  if (bytes > kGreatestBlock) OutOfMemory(bytes);
  return static_cast<uint32_t>(bytes);
}

// --- the harness

int32_t ThrowFatal(const char*, int32_t fatal) {
  if (fatal != 0) throw FatalReport();
  return 0;
}

size_t LiveBlocks() {
  for (void* block : given_up) GiveUp(block);
  given_up.clear();
  return live.size();
}

void ReleaseBlocks() {
  for (auto* blocks : {&live, &abandoned}) {
    for (const auto& [block, size] : *blocks) std::free(block);
    blocks->clear();
  }
  given_up.clear();
}

void Require(bool condition, const char* fault) {
  if (condition) return;
  std::fprintf(stderr, "FOUND: %s\n", fault);
  std::abort();
}

CapturedOutput::CapturedOutput() : replaced_(stdout) {
  stdout = open_memstream(&text_, &length_);
}

CapturedOutput::~CapturedOutput() {
  std::fclose(stdout);
  stdout = replaced_;
  std::free(text_);
}

std::string CapturedOutput::Text() {
  std::fflush(stdout);
  return {text_, length_};
}

}  // namespace siphons
