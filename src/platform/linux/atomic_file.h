#pragma once

#include <string>
#include <string_view>

namespace marzipel {

/// Replaces the file at `path` with `contents` so that a reader, or the file after a crash,
/// holds either the old or the new contents in full: a temporary file in the same folder is
/// written and flushed to disk, renamed over `path`, and the folder is flushed. Missing folders
/// are created. A symbolic link at `path` is kept and its target replaced. On failure returns a
/// description of what failed and leaves no temporary file; on success returns "".
std::string replaceFileAtomically(const std::string& path, std::string_view contents);

/// Moves the file at `path` to `destination` or, when that name is taken, to `destination`
/// followed by "-1", "-2", ... Returns the name it was moved to, or "" with `error` set.
std::string moveAsideWithoutReplacing(const std::string& path, const std::string& destination,
                                      std::string& error);

}  // namespace marzipel
