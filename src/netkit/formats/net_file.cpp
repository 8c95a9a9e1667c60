#include "netkit/formats/net_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "netkit/formats/near_names.h"
#include "netkit/formats/pd_reader.h"
#include "netkit/formats/pnml_reader.h"
#include "netkit/formats/whole_file.h"

namespace siphons {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPdExtension = ".PD";

bool HasExtension(std::string_view path) {
  return path.ends_with(kPdExtension) || path.ends_with(".pnml") || path.ends_with(".pnml.gz");
}

/// The nets in the directory, by the names that FindNet takes.
std::vector<std::string> NetsIn(const fs::path& directory) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(directory, error), end; !error && entry != end; entry.increment(error)) {
    if (HasExtension(entry->path().native())) {
      names.push_back(entry->path().extension() == kPdExtension ? entry->path().stem()
                                                                : entry->path().filename());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string WhyMissing(const std::string& net, const std::string& path) {
  const std::vector<std::string> names =
      NetsIn(fs::path(path).parent_path().empty() ? fs::path(".") : fs::path(path).parent_path());
  const std::string stem = fs::path(path).stem();
  const std::string why = "no such file", near = DidYouMean(stem, {names.begin(), names.end()});
  if (!near.empty()) return why + near;
  if (path != net && std::getenv("MODELDIR") == nullptr) {
    return why + "; name the file, or set MODELDIR to its directory";
  }
  return why + (path == net ? "" : "; NET is looked for in MODELDIR, a path needs its extension");
}

bool LooksLikeXml(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  const size_t first = text.find_first_not_of(" \t\r\n");
  return first != std::string_view::npos && text[first] == '<';
}

}  // namespace

std::string FindNet(const std::string& net) {
  if (HasExtension(net)) return net;
  const char* const modelDirectory = std::getenv("MODELDIR");
  const std::string name = net + std::string(kPdExtension);
  const std::string path = modelDirectory == nullptr ? name : std::string(modelDirectory) + "/" + name;
  std::error_code error;
  const bool isFile = !fs::exists(path, error) && fs::is_regular_file(net, error);
  return isFile ? net : path;
}

NetReading ReadNet(const std::string& net) {
  const bool isStandardInput = net == "-";
  const std::string path = isStandardInput ? "" : FindNet(net);
  NetReading reading{std::nullopt, Diagnostics(isStandardInput ? "<standard input>" : path)};
  Diagnostics& diagnostics = reading.diagnostics;
  const bool isPd = path.ends_with(kPdExtension);
  std::optional<std::string> text = WholeFile(path);
  if (!text) {
    const int error = errno;
    diagnostics.Error({}, error == ENOENT ? WhyMissing(net, path)
                                          : std::string("it cannot be read: ") + std::strerror(error));
    return reading;
  }
  if (!isPd && IsCompressed(*text)) {
    text = Decompressed(*text);
    if (!text) {
      diagnostics.Error(
          {}, "the compressed file is damaged, cut short, or longer than 256 MiB; compress it again");
      return reading;
    }
  }
  if (path.ends_with(".pnml") || path.ends_with(".gz") || (!isPd && LooksLikeXml(*text))) {
    reading.net = ReadPnml(std::move(*text), diagnostics);
  } else {
    reading.net = ReadPd(*text, fs::path(path).stem(), diagnostics);
  }
  return reading;
}

}  // namespace siphons
