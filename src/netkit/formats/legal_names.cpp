// Names as the report program takes them. It reads up to 29 characters, and prints a name as format text, so
// that a '%' in it is taken for a conversion.
#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "netkit/formats/pd_writer.h"

namespace siphons {

namespace {

constexpr size_t kLongest = 29;

bool IsIllegal(char character) {
  const auto c = static_cast<unsigned char>(character);
  return c <= ' ' || c == 0x7F || c == '%' || c == ';';
}

/// The first `length` bytes, or fewer, so that no character of several bytes is cut.
std::string Shortened(const std::string& name, size_t length) {
  if (name.size() <= length) return name;
  while (length > 0 && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80) --length;
  return name.substr(0, length);
}

/// `numbers` holds the number to try next by the name without one: many long names begin alike.
std::string LegalName(const std::string& name, const std::unordered_set<std::string>& taken,
                      std::unordered_map<std::string, int64_t>& numbers) {
  std::string legal = name;
  std::replace_if(legal.begin(), legal.end(), IsIllegal, '_');
  legal = Shortened(legal, kLongest);
  if (legal.empty()) legal = "_";
  if (!taken.contains(legal)) return legal;
  for (int64_t& number = numbers.try_emplace(legal, 2).first->second; taken.contains(legal); ++number) {
    const std::string suffix = "_" + std::to_string(number);
    legal = Shortened(legal.substr(0, legal.rfind('_')), kLongest - suffix.size());
    legal += suffix;
  }
  return legal;
}

}  // namespace

std::vector<NameChange> MakeNamesLegal(PetriNet& net) {
  // Names that are legal stay; only then the others are found new ones.
  const auto isLegal = [](const std::string& name) {
    return !name.empty() && name.size() <= kLongest && std::none_of(name.begin(), name.end(), IsIllegal);
  };
  std::unordered_set<std::string> taken;
  for (const Place& place : net.places) {
    if (isLegal(place.name)) taken.insert(place.name);
  }
  for (const Transition& transition : net.transitions) {
    if (isLegal(transition.name)) taken.insert(transition.name);
  }
  std::unordered_map<std::string, int64_t> numbers;
  std::vector<NameChange> changes;
  const auto change = [&](const char* kind, std::string& name) {
    if (isLegal(name)) return;
    std::string legal = LegalName(name, taken, numbers);
    taken.insert(legal);
    changes.push_back({kind, name, legal});
    name = std::move(legal);
  };
  for (Place& place : net.places) change("place", place.name);
  for (Transition& transition : net.transitions) change("transition", transition.name);
  return changes;
}

}  // namespace siphons
