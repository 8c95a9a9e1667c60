// Opening the files of a net in such a way that a failure of the system while a file is read cannot be taken
// for the end of the file.
#pragma once

#include <fstream>

namespace siphons {

/// Opens the file. Reading from it then throws std::ios_base::failure when the system cannot read on, and
/// std::bad_alloc when memory is short. Leaves the stream closed when there is no such file; ends the process
/// when memory is too short to open it.
void OpenInput(std::ifstream& file, const char* path);

}  // namespace siphons
