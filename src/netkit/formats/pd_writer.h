// Nets as .PD files, with the definition info that `siphons` needs beside them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "netkit/formats/diagnostics.h"
#include "netkit/model/petri_net.h"

namespace siphons {

/// A name that a .PD file cannot hold, and the one that stands for it.
struct NameChange {
  const char* kind;  ///< "place" or "transition"
  std::string from;
  std::string to;
};

/// Makes the names of places and transitions what the report program reads and prints as they are: 1 to 29
/// characters, without blanks, control characters, '%' and ';', all different.
std::vector<NameChange> MakeNamesLegal(PetriNet& net);

/// The text of a .PD file; the names must be legal. Nothing after a report of what such a file cannot hold:
/// numbers beyond 32 bits, texts with ';'. What is written has been read again and found to be the same net.
std::optional<std::string> WritePd(const PetriNet& net, Diagnostics& diagnostics);

/// The text of the .DEFINFO file: which places the marking-dependent definitions name, written #PLACE in
/// their texts.
std::string WriteDefinitionInfo(const PetriNet& net);

}  // namespace siphons
