// What the fuzz targets share. A target is a function that takes any bytes and ends the process only when it
// has found a fault. So the ends of the process (base/process_end.h) are linked as exceptions here, and the
// memory of the net model (net/memory.h) as blocks that are counted and can be released all at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace siphons {

/// Thrown where the program would end.
struct ProcessEnd {};

/// An error function for the net reader: throws FatalReport at a fatal report.
struct FatalReport {};
int32_t ThrowFatal(const char* message, int32_t fatal);

/// Blocks of the net model that were neither released nor given up by Abandon, nor are owned by such a block.
size_t LiveBlocks();

/// Releases every block, those given up included.
void ReleaseBlocks();

/// Tells the fault on standard error and aborts, unless the condition holds.
void Require(bool condition, const char* fault);

/// What the calls of its lifetime write to standard output.
class CapturedOutput {
 public:
  CapturedOutput();
  ~CapturedOutput();
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;
  std::string Text();

 private:
  std::FILE* replaced_;
  char* text_ = nullptr;
  size_t length_ = 0;
};

/// Bytes one by one; zeros behind the end.
class Bytes {
 public:
  Bytes(const uint8_t* data, size_t size) : rest_(data, size) {}
  uint8_t Next() {
    if (rest_.empty()) return 0;
    const uint8_t byte = rest_.front();
    rest_ = rest_.subspan(1);
    return byte;
  }
  /// From `low` to `high`.
  int32_t Between(int32_t low, int32_t high) { return low + Next() % (high - low + 1); }
  /// A small number, mostly; each greater `magnitude`, from 0 to 3, reaches further, the last through 32
  /// bits.
  int32_t Entry(int32_t magnitude) {
    if (magnitude == 0) return Between(-2, 3);
    const int32_t entry = (Next() ^ 0x80) - 0x80;  // as two's complement
    return magnitude == 1 ? entry : magnitude == 2 ? entry * 999 : entry * (1 << 24);
  }

 private:
  std::span<const uint8_t> rest_;
};

}  // namespace siphons

/// The target: always returns 0.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
