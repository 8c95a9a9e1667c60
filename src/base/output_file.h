// Writing the files of a net. A file is written whole or left empty; a part of one could be taken for the
// whole.
#pragma once

#include <cstdio>
#include <functional>

namespace siphons {

/// Writes the file by calling `write`, which must not throw, on it once. False when it cannot be opened, or
/// not be written whole and is therefore left empty. An interrupt waits until the file is closed.
bool WriteWholeFile(const char* path, const std::function<void(std::FILE*)>& write);

/// Makes a write beyond the limit on the size of files fail, which would otherwise end the process.
void IgnoreFileSizeSignal();

/// Whether all that was written to the stream so far is in its file.
bool Written(std::FILE* stream);

}  // namespace siphons
