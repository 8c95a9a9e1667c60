// The strict .PD reader: what it accepts is the net that the report program's loader reads, for every kept
// net and for damaged copies of them; what it refuses, it refuses with the place and the remedy.
#include <gtest/gtest.h>

#include <iostream>
#include <memory>
#include <random>
#include <sstream>

#include "net/load_net.h"
#include "netkit/formats/near_names.h"
#include "netkit/formats/pd_reader.h"
#include "netkit/formats/plain_numbers.h"
#include "tests/files.h"
#include "tests/same_net.h"

namespace siphons {
namespace {

std::string reported;  ///< by the loader; missing counts of parameters and measures aside

int32_t Remember(const char* message, int32_t fatal) {
  if (fatal == 0 && message[0] == '-') return 0;
  reported = message;
  if (fatal != 0) throw std::runtime_error(message);
  return 0;
}

/// Why the loader does not read the text as the same net, or an empty text.
std::string LoaderDiffers(const PetriNet& net, const std::string& text) {
  std::stringbuf buffer(text);
  std::streambuf* const input = std::cin.rdbuf(&buffer);
  std::cin.clear();
  reported.clear();
  std::string difference;
  try {
    const std::unique_ptr<Net, void (*)(Net*)> loaded(load_net(nullptr, Remember, false), free_net);
    difference = NetComparison(net, *loaded).Difference();
  } catch (const std::runtime_error&) {
    // What was reported tells.
  }
  std::cin.rdbuf(input);
  return reported.empty() ? difference : "the loader reports: " + reported;
}

std::optional<PetriNet> Read(const std::string& text, std::string* told = nullptr) {
  Diagnostics diagnostics("net.PD");
  std::optional<PetriNet> net = ReadPd(text, "net", diagnostics);
  EXPECT_EQ(net.has_value(), !diagnostics.HasErrors());
  if (told != nullptr) *told = diagnostics.Text();
  return net;
}

std::vector<std::string> KeptNets() {
  std::vector<std::string> texts;
  for (const char* directory : {TESTS_DIRECTORY, EXAMPLES_DIRECTORY}) {
    for (const auto& entry : fs::recursive_directory_iterator(directory)) {
      if (entry.path().extension() == ".PD" && entry.file_size() < 100000)
        texts.push_back(*ReadFile(entry.path()));
    }
  }
  std::sort(texts.begin(), texts.end());
  return texts;
}

/// Damages a net: words are exchanged, doubled, removed or replaced, lines broken or joined, bytes changed.
std::string Damaged(std::string text, std::mt19937& random) {
  static const std::vector<std::string> kWords = {"010",        "0x10",
                                                  "-1",         "+3",
                                                  "1.5",        "0",
                                                  "2",          "<MD>",
                                                  "4294967297", ";",
                                                  "\n",         "\r\n",
                                                  "--",         "PLACE",
                                                  "PLACES:",    "TRANSITION",
                                                  "TRANSITON",  "INPARCS",
                                                  "OUTPARCS",   "INHARCS",
                                                  "EXP",        "IMM",
                                                  "GEN",        "SS",
                                                  "RE",         "FUNCTION",
                                                  "WEIGHT",     "CARDINALITY INPARC",
                                                  "INHARC",     "MEASURE",
                                                  "nan",        "1e400",
                                                  "0x1p3",      ".5",
                                                  "a",          "\t",
                                                  "\v",         "DEFINITION_PARAMETER",
                                                  "N 2 0 0\n",  "place"};
  for (uint32_t edits = 1 + random() % 2; edits > 0; --edits) {
    if (text.empty()) text = "\n";
    const size_t at = random() % text.size();
    const size_t word = std::min(text.find_first_of(" \n", at), text.size() - 1) + 1;
    const size_t length = std::min(text.find_first_of(" \n", word), text.size()) - word;
    switch (random() % 8) {
      case 0:
        text[at] = static_cast<char>(random());
        break;
      case 1:
        text.erase(word, length);
        break;
      case 2:
        text.insert(word, text.substr(word, length) + " ");
        break;
      case 3:
        text.replace(word, length, kWords[random() % kWords.size()]);
        break;
      case 4:
        text.insert(word, kWords[random() % kWords.size()] + " ");
        break;
      case 5:
        text.erase(at, random() % 60);
        break;
      default:  // often still a net, but another one
        text.replace(word, length, std::to_string(random() % 12));
    }
  }
  return text;
}

TEST(StrictReader, WhatItAcceptsTheLoaderReadsAsTheSameNet) {
  int kept = 0, damaged = 0, runs = 0;
  for (const std::string& text : KeptNets()) {
    if (const std::optional<PetriNet> net = Read(text)) {
      EXPECT_EQ(LoaderDiffers(*net, text), "") << text;
      ++kept;
    }
    for (uint32_t seed = 0; seed < 30; ++seed) {
      std::mt19937 random(seed);
      const std::string copy = Damaged(text, random);
      const std::optional<PetriNet> net = Read(copy);
      ++runs;
      if (!net) continue;
      EXPECT_EQ(LoaderDiffers(*net, copy), "") << "seed " << seed << ":\n" << copy;
      ++damaged;
    }
  }
  EXPECT_GT(kept, 50);
  EXPECT_GT(damaged, runs / 50) << "otherwise the damage is too great to show anything";
}

}  // namespace
}  // namespace siphons
