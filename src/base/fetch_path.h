// Every path passes through fetch_path before its file is opened, so that a translation of paths, should one
// be wanted, has one place. There is none yet.
#pragma once

namespace siphons {

/// Receives the buffer that holds the path and may rewrite it in place. It leaves the path as it is.
void fetch_path(char* path);

}  // namespace siphons
