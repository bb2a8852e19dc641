// Files and folders by name: product paths and error numbers as in platform/Files.h. Results are 0
// or an error number unless said otherwise. Close a file before it is moved or erased: Windows
// refuses while it is open, POSIX does not. No name here collides with a macro of Windows' headers.
#pragma once

#include <optional>
#include <vector>

#include "platform/Clock.h"
#include "util/Text.h"

namespace ostrel::platform {

int EraseFile(TextView path);
/// Fails with kFileExists when `to` exists, with kNotSameDevice when it is on another disk. A name
/// that changes in nothing but its case is taken.
int RenamePath(TextView from, TextView to);
/// Puts `from` in the place of `to`, which may exist; another program sees the old file or the new
/// one, never a part.
int RenameOver(TextView from, TextView to);
/// Replaces `to` when it exists.
int DuplicateFile(TextView from, TextView to);
/// Moves the entry to the recycle bin; erases it where there is none.
int RecyclePath(TextView path, bool confirm);
/// The kind of entry at a path. A link is an entry itself, whatever it names (platform/Files.h says
/// which entries are links).
enum class EntryKind { kNone, kFile, kFolder, kLink, kOther };
EntryKind KindOf(TextView path);
/// The time at which the file was last written; nothing when it is missing. The file is not opened,
/// so anybody may be using it.
std::optional<TimePoint> ModifiedTime(TextView path);

/// Creates an empty file with a new name that begins with the first three characters of `prefix`
/// and returns its path, or an empty text.
Text MakeTemporaryFile(TextView folder, TextView prefix);
/// The environment's TEMP, else the system's folder for temporary files.
Text TemporaryFolder();
/// The 8.3 form of an existing folder; the folder itself where there is none.
Text ShortPath(TextView folder);
/// Folder of the running program, without a separator at its end.
const Text& ProgramFolder();

/// One folder; its parent must exist. An existing folder is kFileExists.
int MakeFolder(TextView path);
bool FolderExists(TextView path);
/// Whether two paths, however they are written, lead to one folder that exists.
bool IsSameFolder(TextView one, TextView other);
/// Whether two names in one folder are the same file: ignoring case on Windows, exactly on POSIX.
bool IsSameName(TextView one, TextView other);
/// Whether a file's name has more than the 255 units that the system takes: bytes of UTF-8 on
/// POSIX, characters on Windows.
bool IsNameTooLong(TextView name);
/// Names of the files (not folders) in the folder that match a pattern with "*" (any run) and "?"
/// (one character), ignoring case, in alphabetical order ignoring case. Short (8.3) names do not
/// count. Links that do not lead to a folder are listed too. Empty when the folder cannot be read.
/// `unreachable` is given the names that match but cannot stand in a product path, as readable as
/// they can be made: on POSIX those that are no text or hold a "\".
std::vector<Text> ListFiles(TextView folder, TextView pattern,
                            std::vector<Text>* unreachable = nullptr);

}  // namespace ostrel::platform
