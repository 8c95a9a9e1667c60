// The instruction sets of this machine, for the tests of the pair search.
#pragma once

#include <vector>

#include "solver/adjacency_search.h"

namespace siphons {

inline std::vector<InstructionSet> SupportedSets() {
  std::vector<InstructionSet> sets = {InstructionSet::kPortable, InstructionSet::kAvx2,
                                      InstructionSet::kAvx512};
  std::erase_if(sets, [](InstructionSet set) { return !IsSupported(set); });
  return sets;
}

}  // namespace siphons
