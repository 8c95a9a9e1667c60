#include "net/line_reader.h"

#include "net/memory.h"

namespace siphons {

namespace {

/// The buffer's first size, and by how much it grows. The block that grows is the youngest one, which the
/// allocator extends where it stands, so that small steps cost no copies.
constexpr uint32_t kStep = 256;

}  // namespace

LineReader::LineReader(std::istream& in)
    : in_(in), size_(kStep), buffer_(static_cast<char*>(nMalloc(kStep))) {}

LineReader::~LineReader() {
  Free(buffer_);
}

char* LineReader::Next() {
  uint32_t length = 0;
  while (true) {
    in_.getline(buffer_ + length, size_ - length);
    if (!in_.fail() && !in_.eof()) return buffer_;
    const auto read = static_cast<uint32_t>(in_.gcount());
    if (in_.eof() || in_.bad() || read == 0) return nullptr;
    in_.clear();  // the buffer was full before the line ended
    length += read;
    buffer_ = static_cast<char*>(nRealloc(buffer_, TableBytes(1, uint64_t{size_} + kStep)));
    size_ += kStep;
  }
}

}  // namespace siphons
