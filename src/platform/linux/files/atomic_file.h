#pragma once

#include <string>
#include <string_view>

#include "base/status.h"

namespace marzipel {

/// Replaces the file at `path` with `contents` so that a reader, or the file after a crash,
/// holds either the old or the new contents in full: a temporary file in the same folder is
/// written and flushed to disk, renamed over `path`, and the folder is flushed. Missing folders
/// are created. A symbolic link at `path` is kept and its target replaced. A failure says what
/// failed and leaves no temporary file. The temporary file stays locked until it has its final
/// name.
Status replaceFileAtomically(const std::string& path, std::string_view contents);

/// Removes the temporary files that writers of `path` left behind when they were killed while
/// replacing it, and returns how many. Files that a writer still holds locked are kept.
int removeLeftoverTemporaries(const std::string& path);

/// Moves the file at `path` to `destination` or, when that name is taken, to `destination`
/// followed by "-1", "-2", ... Returns the name it was moved to, or why it could not be moved.
Result<std::string> moveAsideWithoutReplacing(const std::string& path,
                                              const std::string& destination);

}  // namespace marzipel
