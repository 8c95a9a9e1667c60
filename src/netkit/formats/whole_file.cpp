#include "netkit/formats/whole_file.h"

#include <zlib.h>

#include <array>
#include <cstdio>
#include <memory>

namespace siphons {

namespace {

constexpr size_t kBlock = size_t{1} << 16;
constexpr size_t kLongest = size_t{1} << 28;
constexpr int kGzip = 15 + 16;  // the largest window, and the header of gzip

/// Lets zlib see a text, which it does not change though its interface does not say so.
Bytef* BytesOf(const std::string& text) {
  return reinterpret_cast<Bytef*>(
      const_cast<char*>(text.data()));  // NOLINT(cppcoreguidelines-pro-type-const-cast)
}

}  // namespace

std::optional<std::string> WholeFile(const std::string& path) {
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Closer> opened;
  std::FILE* file = stdin;
  if (!path.empty()) {
    opened.reset(std::fopen(path.c_str(), "rb"));
    if (opened == nullptr) return std::nullopt;
    file = opened.get();
  }
  std::string text;
  size_t length = 0;
  do {
    text.resize(length + kBlock);
    length += std::fread(text.data() + length, 1, kBlock, file);
  } while (length == text.size());
  text.resize(length);
  if (std::ferror(file) != 0) return std::nullopt;
  return text;
}

bool IsCompressed(const std::string& text) {
  return text.starts_with("\x1f\x8b");
}

std::optional<std::string> Decompressed(const std::string& compressed) {
  z_stream stream{};
  if (inflateInit2(&stream, kGzip) != Z_OK) return std::nullopt;
  stream.next_in = BytesOf(compressed);
  stream.avail_in = static_cast<uInt>(compressed.size());
  std::string text;
  std::array<char, kBlock> block;
  int status = Z_OK;
  while (status == Z_OK && text.size() <= kLongest) {
    stream.next_out = reinterpret_cast<Bytef*>(block.data());
    stream.avail_out = static_cast<uInt>(block.size());
    status = inflate(&stream, Z_NO_FLUSH);
    text.append(block.data(), block.size() - stream.avail_out);
    // A file may consist of several compressed parts.
    if (status == Z_STREAM_END && stream.avail_in > 0) status = inflateReset(&stream);
  }
  inflateEnd(&stream);
  if (status != Z_STREAM_END) return std::nullopt;
  return text;
}

std::string Compressed(const std::string& text) {
  constexpr int kMemoryLevel = 8;
  z_stream stream{};
  std::string compressed;
  if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzip, kMemoryLevel, Z_DEFAULT_STRATEGY) !=
      Z_OK) {
    return compressed;
  }
  stream.next_in = BytesOf(text);
  stream.avail_in = static_cast<uInt>(text.size());
  std::array<char, kBlock> block;
  int status = Z_OK;
  while (status == Z_OK) {
    stream.next_out = reinterpret_cast<Bytef*>(block.data());
    stream.avail_out = static_cast<uInt>(block.size());
    status = deflate(&stream, Z_FINISH);
    compressed.append(block.data(), block.size() - stream.avail_out);
  }
  deflateEnd(&stream);
  return compressed;
}

}  // namespace siphons
