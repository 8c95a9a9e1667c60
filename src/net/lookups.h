// Records of a net by name: the first slot of the table that has exactly this name, of the slots that count.
#pragma once

#include "net/net.h"

namespace siphons {

// A name that is not there is reported as fatal; when the error function returns, so does the lookup, with
// null. Without a table (never announced) find_trans and find_delaypar return null and report nothing.

/// Behind its report it also writes "problem with place %s\n" to standard output, and where there is a table
/// it reports a second time.
NetPlace* find_place(const Net& net, const char* name);

NetTransition* find_trans(const Net& net, const char* name);
DelayPar* find_delaypar(const Net& net, const char* name);

}  // namespace siphons
