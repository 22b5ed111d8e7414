// Saving a file so that it is never lost half-written, and never left half-made.
#pragma once

#include <string>
#include <string_view>

namespace plotmeter {

// True when the folder part of `path` exists (the current folder for a bare name).
bool FolderExists(const std::string& path);

// How a save ended: saved, or why not, in the system's words ("No space left on device").
struct SaveResult {
  bool saved = false;
  std::string reason;
};

// Where the new text waits until it is complete. On Linux an unnamed file (O_TMPFILE), so
// that a save killed while writing leaves nothing behind; elsewhere, or where the file
// system refuses one, a hidden file of a short name of its own (".plotmeter-" and six
// letters) beside the target.
enum class TemporaryFile { kUnnamedWherePossible, kNamed };

// Replaces the file that `path` names with `text`, or creates it.
//
// The text goes to a temporary file in the target's folder, is flushed to the disk, and
// only then takes the target's place in one step, so that a failure or a kill at any
// moment leaves the previous file whole. An unnamed file is given its temporary name just
// before the rename, with the signals that stop a program held; only SIGKILL in that
// instant (or any kill of a save through a named file) leaves the temporary file, which
// stays locked while its save lives, and the next save in the folder removes it. A symbolic link is
// followed to the file it names, which is the one updated. A replaced file keeps its owner, group
// and mode where the system allows; a file with several names (hard links) is written in place so
// that every name sees the new text, after a complete copy has been made beside it. A new file gets
// the permissions the user's umask allows.
//
// Refused: anything but a regular file or a new name (a folder, a device, a FIFO), and a
// file the user may not write (also one that no one may write, such as mode 0444).
SaveResult ReplaceFileSafely(const std::string& path, std::string_view text,
                             TemporaryFile temporary = TemporaryFile::kUnnamedWherePossible);

}  // namespace plotmeter
