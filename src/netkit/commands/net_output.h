// Nets as files that subcommands write: into .PD with the definition info beside it and, when names had to
// change, a table of them with the ending .names; or into PNML.
#pragma once

#include <string>

#include "netkit/commands/answers.h"
#include "netkit/model/petri_net.h"

namespace siphons {

/// Throws WrongUsage when the ending of the output, which the option gave, names no format, or when it is the
/// net that was read.
void CheckNetOutput(const std::string& input, const std::string& output,
                    const std::string& option = "--output");

/// What is said about a net that was written.
struct WrittenNet {
  std::string text;  ///< a line: the file, and what changed or is hidden in it
  Json json;         ///< "output", "format" and "names", those that changed
};

/// Writes the net to a file that CheckNetOutput took; throws Refusal when the format cannot hold it. Ends the
/// process as WriteAnswer does when a file cannot be written.
WrittenNet WriteNet(const PetriNet& net, const std::string& output);

}  // namespace siphons
