// The strict .PD reader: what it accepts is the net that the report program's loader reads, for every kept
// net and for damaged copies of them; what it refuses, it refuses with the place and the remedy. The mistakes
// and what is told of them are kept in strict_reader/.
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
  static const std::vector<std::string> kWords = Split(
      "010|0x10|-1|+3|1.5|0|2|<MD>|4294967297|;|\n|\r\n|--|PLACE|PLACES:|TRANSITION|TRANSITON|INPARCS|nan|a|"
      "OUTPARCS|INHARCS|EXP|IMM|GEN|SS|RE|FUNCTION|WEIGHT|CARDINALITY "
      "INPARC|INHARC|MEASURE|1e400|0x1p3|.5|\t|"
      "\v|DEFINITION_PARAMETER|N 2 0 0\n|place",
      '|');
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

const fs::path kKept = fs::path(TESTS_DIRECTORY) / "strict_reader";

/// The text with \xHH replaced by the byte.
std::string Unescaped(std::string text) {
  for (size_t at; (at = text.find("\\x")) != std::string::npos;) {
    text.replace(at, 4, 1, static_cast<char>(std::stoi(text.substr(at + 2, 2), nullptr, 16)));
  }
  return text;
}

TEST(StrictReader, TellsEveryMistakeWithItsPlaceAndRemedy) {
  const std::string net = *ReadFile(kKept / "net.PD");
  std::string told, damaged = net, from, to, expected;
  ASSERT_TRUE(Read(net, &told)) << told;
  const auto replace = [&] {
    const size_t at = from.empty() ? 0 : damaged.find(from.substr(0, from.size() - 1));
    ASSERT_NE(at, std::string::npos) << from;
    if (!from.empty()) damaged.replace(at, from.size() - 1, Unescaped(to.substr(0, to.size() - 1)));
    from = to = "";
  };
  int mistakes = 0;
  const auto finish = [&] {
    if (!expected.empty()) {
      ++mistakes;
      EXPECT_FALSE(Read(damaged, &told));
      EXPECT_EQ(told, expected) << damaged;
    }
    damaged = net;
    expected = "";
  };
  const auto rest = [](const std::string& line) { return (line.size() > 1 ? line.substr(2) : "") + "\n"; };
  for (const std::string& line : Split(*ReadFile(kKept / "mistakes.txt"))) {
    if (line[0] == '-') {
      if (!expected.empty()) finish();
      if (!to.empty()) replace();
      from += rest(line);
    } else if (line[0] == '+') {
      to += rest(line);
    } else if (line[0] == '=') {
      replace();
      expected += "net.PD:" + rest(line);
    }
  }
  finish();
  EXPECT_GT(mistakes, 100);
}

TEST(StrictReader, ShowsTwentyOfManyFaults) {
  std::string text = "PLACES: 1\nTRANSITIONS: 1\n", told;
  for (int i = 0; i < 30; ++i) text += "FUNCTION nobody" + std::to_string(i) + " 1;\n";
  text += "DESCRIPTION: " + std::string(102400, 'x') + "\n";
  Read(text, &told);
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 21) << told;
  EXPECT_TRUE(told.ends_with("net.PD: 33 errors in all\n")) << told;
  Read(text.substr(text.find("DESC")), &told);
  EXPECT_NE(told.find("1:1: error: the section has 102413 characters, 102400 are the most"),
            std::string::npos);
}

TEST(StrictReader, RefusesTheseGoldenNets) {
  std::vector<fs::path> directories(fs::directory_iterator(fs::path(TESTS_DIRECTORY) / "golden"), {});
  std::sort(directories.begin(), directories.end());
  std::string refused, told;
  for (const fs::path& directory : directories) {
    const std::optional<std::string> text = ReadFile(directory / "net.PD");
    if (!text || Read(*text, &told)) continue;
    refused += directory.filename().string() + told.substr(6, told.find('\n') - 5);
  }
  EXPECT_EQ(refused, ReadFile(kKept / "refused_golden_nets.txt"));
}

TEST(StrictReader, NumbersAndNearNames) {
  for (const char* text : {"0", "7", "9223372036854775807"}) EXPECT_TRUE(PlainDecimal(text)) << text;
  for (const char* text : {"", "00", "+1", "-1", "1.", "0x1", "1e3", " 1", "9223372036854775808"}) {
    EXPECT_FALSE(PlainDecimal(text)) << text;
  }
  for (const char* text : {"1", "-.5", "+2.", "1e-3"}) EXPECT_TRUE(PlainReal(text)) << text;
  for (const char* text : {"", "+", "+-1", "nan", "inf", "0x1p3", "1e999", "1,5", "1e"}) {
    EXPECT_FALSE(PlainReal(text)) << text;
  }
  EXPECT_EQ(EditDistance("robot", "robto", 2), 1u);
  EXPECT_EQ(EditDistance("robot", "rob", 2), 2u);
  EXPECT_EQ(EditDistance("robot", "mill", 2), 3u);
  EXPECT_EQ(NearestName("ROBOT", {"mill", "robots", "robot"}), "robot");
  EXPECT_EQ(NearestName("x", {"y", "xy"}), "");
}

}  // namespace
}  // namespace siphons
