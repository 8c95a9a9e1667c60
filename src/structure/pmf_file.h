// The .pmf file: the distributions of a net's general transitions, for an analysis that reads no more than
// that.
#pragma once

#include "net/net.h"

namespace siphons {

/// Writes "<path>.pmf": the name and the definition of every general transition. Ends the process with status
/// 1 after "ERROR: unable to create file '%s'\n" on standard output when it cannot be written whole; it is
/// then left empty. A file name of more than 255 characters ends the process by abort.
void generate_pmf(const char* path, const Net& net);

}  // namespace siphons
