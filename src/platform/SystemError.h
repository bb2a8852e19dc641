// Error numbers of files, folders and profiles: Windows' numbering on every system.
#pragma once

#include "util/Text.h"

namespace ostrel::platform {

inline constexpr int kFileNotFound = 2;
inline constexpr int kPathNotFound = 3;
inline constexpr int kTooManyOpenFiles = 4;
inline constexpr int kAccessDenied = 5;
inline constexpr int kInvalidHandle = 6;  // a file that is not open
inline constexpr int kOutOfMemory = 8;
inline constexpr int kInvalidData = 13;
inline constexpr int kNotSameDevice = 17;
inline constexpr int kWriteProtected = 19;
inline constexpr int kSharingViolation = 32;
inline constexpr int kFileExists = 80;
inline constexpr int kDiskFull = 112;
inline constexpr int kInvalidName = 123;
inline constexpr int kFolderNotEmpty = 145;
inline constexpr int kFileTooLarge = 223;
inline constexpr int kMoreData = 234;       // what was read is longer than asked for, and cut
inline constexpr int kStoppedOnLink = 681;  // a link stands where none is followed
/// Any failure of the system that has no number above.
inline constexpr int kGeneralFailure = 31;

/// The system's own sentence for the number, without a line break at its end; Windows' English
/// sentences on POSIX. Never empty.
Text SystemErrorText(int number);

}  // namespace ostrel::platform
