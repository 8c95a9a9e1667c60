// The net reader: opens a net description file, cuts it into keyword sections and hands each to its handler
// (keywords.h). Faults of the file are reported through the net's error function. This header also gathers
// what else can be done with a net.
#pragma once

#include <cstdint>

#include "net/default_error.h"
#include "net/free_net.h"
#include "net/lookups.h"
#include "net/net.h"
#include "net/show_net.h"

namespace siphons {

/// Reads a net. `name` is a path with or without ".PD", also looked for below MODELDIR; null reads standard
/// input. A null error function means DefaultError. With `warnSingleServer` the transitions that a
/// marking-dependent delay makes single servers are named in one warning. Returns null when the file cannot
/// be opened or no places or transitions were announced, which takes an error function that returns from
/// fatal reports; one may also throw, and the net is then released. The caller owns the net.
Net* load_net(const char* name, ErrorFunc errorFunc, bool warnSingleServer);

}  // namespace siphons
