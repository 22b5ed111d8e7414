// Saving a file so that it is never lost half-written.
#pragma once

#include <string>
#include <string_view>

namespace plotmeter {

// True when the folder part of `path` exists (the current folder for a bare name).
bool FolderExists(const std::string& path);

// Replaces the file at `path` with `text`. The text goes to a temporary file in the same
// folder, is flushed to the disk, and only then renamed over the target, so that a failure
// at any moment leaves the previous file whole and no temporary file behind. A new file
// gets the usual permissions; a replaced one keeps its own. False on any failure.
bool ReplaceFileSafely(const std::string& path, std::string_view text);

}  // namespace plotmeter
