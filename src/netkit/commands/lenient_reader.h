// The one bridge from the report program's tables to the exact net: what its loader takes a file for.
#pragma once

#include <optional>
#include <string>

#include "netkit/formats/diagnostics.h"
#include "netkit/model/petri_net.h"

namespace siphons {

/// Reads the .PD file with the report program's loader, which takes damaged files for nets and ends the
/// process with a message where it does not. Arcs with multiplicity 0 are left out, several arcs of a group
/// to one place are one with their sum. Reports what the exact net cannot hold: negative numbers, names used
/// twice. An empty path means standard input.
std::optional<PetriNet> ReadLeniently(const std::string& path, Diagnostics& diagnostics);

/// An error function for the loader: reports as the report program does, but says nothing where a net is as
/// it should be. A net without parameters or measures need not announce them, and a listing is no warning.
int32_t ReportLoaderFault(const char* message, int32_t fatal);

}  // namespace siphons
