// Files and folders by name: product paths and error numbers as in platform/Files.h. Results are 0
// or an error number unless said otherwise. No name here collides with a macro of Windows' headers.
#pragma once

#include <vector>

#include "util/Text.h"

namespace ostrel::platform {

int EraseFile(TextView path);
/// Fails with kFileExists when `to` exists.
int RenamePath(TextView from, TextView to);
/// Puts `from` in the place of `to`, which may exist; another program sees the old file or the new
/// one, never a part.
int RenameOver(TextView from, TextView to);
/// Replaces `to` when it exists.
int DuplicateFile(TextView from, TextView to);
/// To the recycle bin; where there is none, erased.
int RecyclePath(TextView path, bool confirm);

/// Creates an empty file with a new name that begins with `prefix` and returns its path, or an
/// empty text.
Text MakeTemporaryFile(TextView folder, TextView prefix);
/// $TEMP, else the system's folder for temporary files.
Text TemporaryFolder();
/// The 8.3 form of an existing folder; the folder itself where there is none.
Text ShortPath(TextView folder);
/// Folder of the running program, without a separator at its end.
const Text& ProgramFolder();

/// One folder; its parent must exist. An existing folder is kFileExists.
int MakeFolder(TextView path);
bool FolderExists(TextView path);
/// Names of the files (not folders) in the folder that match a pattern with "*" and "?", ignoring
/// case, in alphabetical order ignoring case. Empty when the folder cannot be read.
std::vector<Text> ListFiles(TextView folder, TextView pattern);

}  // namespace ostrel::platform
