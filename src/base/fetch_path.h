// The place for a translation of paths. A leaf: any floor may use it, it uses nothing.
#pragma once

namespace siphons {

/// Receives the buffer of every path right before the path is opened and may rewrite it in place. The
/// identity.
void fetch_path(char* path);

}  // namespace siphons
