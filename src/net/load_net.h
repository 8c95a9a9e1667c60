// The net reader: opens a net description file, cuts it into keyword sections and hands each to its handler
// (load_funcs.h). Faults of the file are reported through the net's error function.
#pragma once

#include <cstdint>

#include "net/net.h"

namespace siphons {

/// Reads a net. `name` is a path with or without ".PD", also looked for below MODELDIR; null reads standard
/// input. A null error function means DefaultError. With `warnSingleServer` the transitions that a
/// marking-dependent delay makes single servers are named in one warning. Returns null when the file cannot
/// be opened or no places or transitions were announced, which takes an error function that returns from
/// fatal reports; one may also throw, and nothing of the net is left then. The caller owns the net.
Net* load_net(const char* name, ErrorFunc errorFunc, bool warnSingleServer);

/// Lists the net field by field on standard output, and calls its error function once with a warning that it
/// is there. A text that the net does not have is listed as "(null)". Returns the value of the last write.
int32_t show_net(const Net& net);

/// Writes "Fatal: %s\n" to standard error and ends the process with status `fatal`, or "Warning: %s\n" and
/// returns 0.
int32_t DefaultError(const char* message, int32_t fatal);

// Lookups by exact name over the named slots, in table order. They report a name that is not there as fatal
// and return null; without a table (never announced) find_trans and find_delaypar return null silently.
NetPlace* find_place(const Net& net, const char* name);
NetTransition* find_trans(const Net& net, const char* name);
DelayPar* find_delaypar(const Net& net, const char* name);

/// The text after its leading blanks and tabs.
const char* skip_white(const char* text);

}  // namespace siphons
