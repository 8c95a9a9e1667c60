// Building the structural tables (struct_vars.h) from a net.
#pragma once

#include <cstdint>

#include "net/net.h"

namespace siphons {

/// Loads the net of `path` (without extension) into `model`. Ends the process as the error function does,
/// null meaning DefaultError. When that returns and there is no net, ends it with status 1 after "ERROR:
/// could not read %s properly\n" on standard output.
void LoadModel(const char* path, ErrorFunc errorFunc = nullptr);

/// LoadModel, then builds the tables; with pmf_bit set it also writes the .pmf file.
void read_net(const char* path);

/// Builds all tables from the net, which must live on. Once per process; returns 0. A name of more than 29
/// characters ends the process; so does an arc to a place that is not in the table, with status 1 after
/// "Unknown place %s in arc definition\n" on standard output.
int32_t config_net(const Net& net);

/// Builds the arc row of transition t for one ArcKind; any other value of `which` does nothing. Returns 0.
int32_t config_arcs(const Net& net, int32_t t, int32_t which);

}  // namespace siphons
