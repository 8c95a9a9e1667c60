// Reading the definition info file into the structural tables.
#pragma once

#include <istream>

namespace siphons {

/// Reads the whole file into md_arcs, the arc rows and the transitions. An arc record of unknown kind, or one
/// without such an arc in the net, ends the process with status 1 and no message. A place or transition
/// number outside the net elsewhere is left out, with one warning for each of the two on standard error.
void read_info(std::istream& stream);

}  // namespace siphons
