// The name that was probably meant by one that nobody knows.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace siphons {

/// How many single characters must be inserted, removed, replaced or exchanged with their neighbour to make
/// the one text of the other, up to `limit`; above it, limit + 1. Costs the product of the lengths at most.
size_t EditDistance(std::string_view a, std::string_view b, size_t limit);

/// The nearest of the names, the first of several; empty when none is near: one edit is allowed for every
/// three characters, two at most, and upper case may stand for lower case.
std::string_view NearestName(std::string_view name, const std::vector<std::string_view>& names);

/// "; did you mean 'NEAREST'?", or `otherwise` when no name is near.
std::string DidYouMean(std::string_view name, const std::vector<std::string_view>& names,
                       std::string_view otherwise = {});

}  // namespace siphons
