#include "platform/SystemError.h"

#include <cerrno>

#include "platform/posix/ErrorNumbers.h"

namespace ostrel::platform {
namespace {

struct Mapping {
  int errnoValue;
  int number;
};

constexpr Mapping kMappings[] = {
    {0, 0},
    {ENOENT, kFileNotFound},
    {ENOTDIR, kPathNotFound},
    {EMFILE, kTooManyOpenFiles},
    {ENFILE, kTooManyOpenFiles},
    {EACCES, kAccessDenied},
    {EPERM, kAccessDenied},
    {EISDIR, kAccessDenied},
    {ENXIO, kAccessDenied},
    {EBADF, kInvalidHandle},
    {ENOMEM, kOutOfMemory},
    {EXDEV, kNotSameDevice},
    {EROFS, kWriteProtected},
    {EWOULDBLOCK, kSharingViolation},
    {ETXTBSY, kSharingViolation},
    {EEXIST, kFileExists},
    {ENOSPC, kDiskFull},
    {EDQUOT, kDiskFull},
    {EFBIG, kDiskFull},  // the user's limit for files
    {ENAMETOOLONG, kInvalidName},
    {EILSEQ, kInvalidName},
    {ELOOP, kInvalidName},
    {ENOTEMPTY, kFolderNotEmpty},
};

struct Sentence {
  int number;
  TextView text;
};

constexpr Sentence kSentences[] = {
    {0, u"The operation completed successfully."},
    {kFileNotFound, u"The system cannot find the file specified."},
    {kPathNotFound, u"The system cannot find the path specified."},
    {kTooManyOpenFiles, u"The system cannot open the file."},
    {kAccessDenied, u"Access is denied."},
    {kInvalidHandle, u"The handle is invalid."},
    {kOutOfMemory, u"Not enough memory resources are available to process this command."},
    {kInvalidData, u"The data is invalid."},
    {kNotSameDevice, u"The system cannot move the file to a different disk drive."},
    {kWriteProtected, u"The media is write protected."},
    {kGeneralFailure, u"A device attached to the system is not functioning."},
    {kSharingViolation,
     u"The process cannot access the file because it is being used by another process."},
    {kFileExists, u"The file exists."},
    {kDiskFull, u"There is not enough space on the disk."},
    {kInvalidName, u"The filename, directory name, or volume label syntax is incorrect."},
    {kFolderNotEmpty, u"The directory is not empty."},
    {kFileTooLarge, u"The file size exceeds the limit allowed and cannot be saved."},
    {kMoreData, u"More data is available."},
    {kStoppedOnLink, u"The create operation stopped after reaching a symbolic link."},
};

}  // namespace

int ErrorNumberOf(int errnoValue) {
  for (const Mapping& mapping : kMappings) {
    if (mapping.errnoValue == errnoValue) return mapping.number;
  }
  return kGeneralFailure;
}

int LastErrorNumber() { return ErrorNumberOf(errno); }

Text SystemErrorText(int number) {
  for (const Sentence& sentence : kSentences) {
    if (sentence.number == number) return Text(sentence.text);
  }
  return u"Error " + ToText(std::int64_t{number}) + u".";
}

}  // namespace ostrel::platform
