// The distance is that of Damerau 1964 in its restricted form: no place of the text is edited twice.
#include "netkit/formats/near_names.h"

#include <algorithm>
#include <cctype>

namespace siphons {

namespace {

std::string InUpperCase(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return upper;
}

}  // namespace

size_t EditDistance(std::string_view a, std::string_view b, size_t limit) {
  if (a.size() > b.size()) std::swap(a, b);
  if (b.size() - a.size() > limit) return limit + 1;
  // Row i holds the distances of the first i characters of a to every beginning of b.
  std::vector<size_t> beforeLast, last(b.size() + 1), row(b.size() + 1);
  for (size_t j = 0; j <= b.size(); ++j) last[j] = j;
  for (size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (size_t j = 1; j <= b.size(); ++j) {
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
      const bool exchanged = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (exchanged) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
    beforeLast = last;
    std::swap(last, row);
  }
  return std::min(last[b.size()], limit + 1);
}

std::string_view NearestName(std::string_view name, const std::vector<std::string_view>& names) {
  const std::string upper = InUpperCase(name);
  size_t limit = std::min<size_t>(2, std::max<size_t>(1, name.size() / 3));
  std::string_view nearest;
  for (const std::string_view candidate : names) {
    if (candidate.size() > name.size() + limit || name.size() > candidate.size() + limit) continue;
    const size_t distance =
        InUpperCase(candidate) == upper ? 0 : std::max<size_t>(1, EditDistance(name, candidate, limit));
    if (distance > limit || (name.size() < 2 && distance > 0)) continue;
    nearest = candidate;
    if (distance == 0) break;
    limit = distance - 1;
  }
  return nearest;
}

std::string DidYouMean(std::string_view name, const std::vector<std::string_view>& names,
                       std::string_view otherwise) {
  const std::string_view nearest = NearestName(name, names);
  if (nearest.empty()) return std::string(otherwise);
  return "; did you mean '" + std::string(nearest) + "'?";
}

}  // namespace siphons
