// A verdict in words, as every subcommand that comes to one says it.
#pragma once

#include <cstdint>
#include <string>

#include "netkit/model/petri_net.h"
#include "netkit/verdict/verdict.h"

namespace siphons {

/// "deadlock-free", "deadlock" or "undecided".
const char* WordOf(Finding finding);

/// What the verdict rests on, without a line end.
std::string GroundOf(const PetriNet& net, const Verdict& verdict);

/// The exit status that stands for the finding.
int32_t StatusOf(Finding finding);

}  // namespace siphons
