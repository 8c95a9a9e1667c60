// Opening the files of a net, so that a failure while one is read is told apart from its end.
#pragma once

#include <fstream>

namespace siphons {

/// Opens the file. Reading from it then throws std::ios_base::failure when the system cannot read on, and
/// std::bad_alloc when memory is short. Leaves the stream closed when there is no such file; ends the process
/// when memory is too short to open it.
void OpenInput(std::ifstream& file, const char* path);

}  // namespace siphons
