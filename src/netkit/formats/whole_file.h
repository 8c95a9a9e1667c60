// Whole files in memory, also compressed ones.
#pragma once

#include <optional>
#include <string>

namespace siphons {

/// The whole file, or standard input for an empty path; nothing when it cannot be read, and errno tells why.
std::optional<std::string> WholeFile(const std::string& path);

/// Whether the text is compressed by gzip.
bool IsCompressed(const std::string& text);

/// The text that a gzip file holds; nothing when it is damaged, cut short, or longer than 256 MiB.
std::optional<std::string> Decompressed(const std::string& compressed);

/// The text as a gzip file.
std::string Compressed(const std::string& text);

}  // namespace siphons
