#include "netkit/formats/net_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>
#include <vector>

#include "netkit/formats/near_names.h"
#include "netkit/formats/pd_reader.h"

namespace siphons {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPdExtension = ".PD";

/// The nets in the directory, by the names that FindNet takes.
std::vector<std::string> NetsIn(const fs::path& directory) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(directory, error), end; !error && entry != end; entry.increment(error)) {
    if (entry->path().extension() == kPdExtension) names.push_back(entry->path().stem());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string WhyMissing(const std::string& net, const std::string& path) {
  const std::vector<std::string> names =
      NetsIn(fs::path(path).parent_path().empty() ? fs::path(".") : fs::path(path).parent_path());
  const std::string stem = fs::path(path).stem();
  std::string why = "no such file" + DidYouMean(stem, {names.begin(), names.end()});
  if (path != net && std::getenv("MODELDIR") == nullptr) {
    why += "; name the file, or set MODELDIR to its directory";
  } else if (path != net) {
    why += "; NET is looked for in MODELDIR, a path needs its extension";
  }
  return why;
}

/// The whole file, or standard input for an empty path; errno is set when it cannot be read.
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
  constexpr size_t kBlock = size_t{1} << 16;
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

}  // namespace

std::string FindNet(const std::string& net) {
  if (net.ends_with(kPdExtension)) return net;
  const char* const modelDirectory = std::getenv("MODELDIR");
  const std::string name = net + std::string(kPdExtension);
  return modelDirectory == nullptr ? name : std::string(modelDirectory) + "/" + name;
}

NetReading ReadNet(const std::string& net) {
  const bool isStandardInput = net == "-";
  const std::string path = isStandardInput ? "" : FindNet(net);
  NetReading reading{std::nullopt, Diagnostics(isStandardInput ? "<standard input>" : path)};
  const std::optional<std::string> text = WholeFile(path);
  if (!text) {
    const int error = errno;
    reading.diagnostics.Error({}, error == ENOENT
                                      ? WhyMissing(net, path)
                                      : std::string("it cannot be read: ") + std::strerror(error));
    return reading;
  }
  reading.net = ReadPd(*text, isStandardInput ? "" : fs::path(path).stem().string(), reading.diagnostics);
  return reading;
}

}  // namespace siphons
