// From what a user calls a net to the net: finding the file, telling its format, reading it.
#pragma once

#include <optional>
#include <string>

#include "netkit/formats/diagnostics.h"
#include "netkit/model/petri_net.h"

namespace siphons {

/// What came of an attempt to read a net: the net, or errors.
struct NetReading {
  std::optional<PetriNet> net;
  Diagnostics diagnostics;
};

/// Where a net lies. A name without extension means NAME.PD in the directory that the environment variable
/// MODELDIR names, or in the current directory when that is not set, unless a file has just this name;
/// everything else is a path.
std::string FindNet(const std::string& net);

/// Reads the net that `net` stands for: the path of a .PD, .pnml or .pnml.gz file, a bare name (FindNet), or
/// "-" for standard input. A file with another extension, and standard input, are told apart by their first
/// character: '<' begins PNML.
NetReading ReadNet(const std::string& net);

}  // namespace siphons
