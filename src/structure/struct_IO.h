// Building the structural tables (struct_vars.h) from a net and from its definition info file.
#pragma once

#include <cstdint>
#include <istream>

#include "net/net.h"

namespace siphons {

/// Loads the net of `path` (without extension) into `model`. Ends the process as the net reader does, and
/// with status 1 after "ERROR: could not read %s properly\n" on standard output when there is no net.
void LoadModel(const char* path);

/// LoadModel, then builds the tables; with pmf_bit set it also writes the .pmf file.
void read_net(const char* path);

/// Builds all tables from the net, which must live on. Once per process; returns 0. A name of more than 29
/// characters ends the process; so does an arc to a place that is not in the table, with status 1 after
/// "Unknown place %s in arc definition\n" on standard output.
int32_t config_net(const Net& net);

/// Builds the arc row of transition t for one ArcKind; any other value of `which` does nothing. Returns 0.
int32_t config_arcs(const Net& net, int32_t t, int32_t which);

/// Writes "<path>.pmf": the definition of every general transition. Ends the process with status 1 after
/// "ERROR: unable to create file '%s'\n" on standard output when it cannot be written;
/// it is then left empty.
void generate_pmf(const char* path, const Net& net);

/// Reads the definition info file into md_arcs, the arc rows and the transitions. An arc record of unknown
/// kind or without an arc ends the process with status 1 and no message; numbers outside the net elsewhere
/// are left out, told once on standard error.
void read_info(std::istream& stream);

/// Reads one place set (label, count, place numbers) into a new table of no_places flags.
void deter_in(std::istream& stream, int32_t** set);

}  // namespace siphons
