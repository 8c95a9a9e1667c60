// Runs a target without a fuzzer: on every file that is named or lies in a named directory, or with
// "--random COUNT SEED" on COUNT inputs of pseudo-random bytes. What runs is told first, so that the last
// line before a fault names the input.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "fuzz/harness.h"

namespace {

namespace fs = std::filesystem;

int32_t inputs = 0;

void Run(const std::string& name, const std::vector<uint8_t>& input) {
  std::fprintf(stderr, "input: %s\n", name.c_str());
  LLVMFuzzerTestOneInput(input.data(), input.size());
  ++inputs;
}

void RunFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  Run(path.string(), {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()});
}

void RunRandom(uint32_t count, uint32_t seed) {
  for (uint32_t i = 0; i < count; ++i) {
    std::mt19937 random(seed + i);
    std::vector<uint8_t> input(random() % 120);
    std::generate(input.begin(), input.end(), [&random] { return static_cast<uint8_t>(random()); });
    Run("seed " + std::to_string(seed + i), input);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() == 3 && arguments[0] == "--random") {
    RunRandom(static_cast<uint32_t>(std::stoul(arguments[1])),
              static_cast<uint32_t>(std::stoul(arguments[2])));
  } else {
    for (const std::string& argument : arguments) {
      if (!fs::is_directory(argument)) {
        RunFile(argument);
        continue;
      }
      for (const auto& entry : fs::directory_iterator(argument)) RunFile(entry.path());
    }
  }
  std::fprintf(stderr, "%d inputs, no fault\n", inputs);
  return inputs > 0 ? 0 : 1;
}
