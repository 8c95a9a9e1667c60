// Files and directories of a test.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace siphons {

namespace fs = std::filesystem;

/// A directory that lives as long as the object.
class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::string name = (fs::temp_directory_path() / "siphons-test-XXXXXX").string();
    path_ = mkdtemp(name.data());
  }
  ~TemporaryDirectory() { fs::remove_all(path_); }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

inline std::optional<std::string> ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) return std::nullopt;
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

inline void WriteFile(const fs::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

/// The lines of a text, or what stands between other separators.
inline std::vector<std::string> Split(const std::string& text, char separator = '\n') {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

/// A definition info file that says nothing.
inline const std::string kNoInfo = "MD_ARCS: 0\nEND_MD_ARCS\nMD_DELAYS: 0\nMD_ENABLING: 0\n";

}  // namespace siphons
