#include "transports/ResponseFile.h"

#include <utility>

#include "platform/FileSystem.h"
#include "platform/SystemError.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

constexpr std::size_t kReserved = 4096;  // bytes, one for each character
constexpr std::size_t kLongestCutMessage = kReserved - 64;

TextView FolderOf(TextView path) { return path.substr(0, path.find_last_of(u"\\/")); }

bool IsMissing(int error) {
  return error == platform::kFileNotFound || error == platform::kPathNotFound;
}

}  // namespace

bool WriteErrorFile(WholeFile& file, float errorNumber, TextView message) {
  Text content(kErrorFilePrefix);
  content.append(ToText(errorNumber)).append(kCrLf).append(message).append(kCrLf);
  return file.Write(std::move(content));
}

ResponseFile::ResponseFile(Paths paths)
    : oPaths(std::move(paths)), oFile(oPaths.sPlace, oPaths.sReserved) {}

ResponseFile::~ResponseFile() {
  if (!bOwed) return;
  try {
    if (PutInPlace() != 0) oFile.Keep();
  } catch (...) {
    oFile.Keep();  // no memory: what has been written is better than nothing
  }
}

int ResponseFile::Reserve() {
  const auto kind = platform::KindOf(oPaths.sPlace);
  if (kind == platform::EntryKind::kFolder) return platform::kFileExists;
  if (kind == platform::EntryKind::kLink) return platform::kStoppedOnLink;
  return Open() && oFile.Reserve(kReserved) ? 0 : oFile.Error();
}

void ResponseFile::Adopt(TextView path) {
  oFile.Adopt(path);
  bComplete = bOwed = true;
  bAside = path == oPaths.sFinished;
}

bool ResponseFile::Open() {
  bAside = false;
  if (oFile.Open()) return true;
  return IsMissing(oFile.Error()) && cFileIO().ValidateDirectory(FolderOf(oPaths.sPlace)) == 0 &&
         oFile.Open();
}

void ResponseFile::WriteResponse(TextView response, const ResponseWriter& write) {
  bComplete = Open() && write(response, oFile) && oFile.Close();
  if (bComplete) return;
  const int error = oFile.Error() != 0 ? oFile.Error() : platform::kOutOfMemory;
  WriteError(ErrorNumber::kResponseNotWritten,
             u"The request was carried out, but its response could not be written: " +
                 platform::SystemErrorText(error));
}

void ResponseFile::WriteError(float errorNumber, TextView message) {
  bComplete = TryWriteError(errorNumber, message) ||
              TryWriteError(errorNumber, message.substr(0, kLongestCutMessage));
}

bool ResponseFile::TryWriteError(float errorNumber, TextView message) {
  return Open() && WriteErrorFile(oFile, errorNumber, message) && oFile.Close();
}

int ResponseFile::PutInPlace() {
  // The folder may have gone, with all that was written: an error is left to write then.
  const int error = TryPutInPlace();
  return IsMissing(error) ? TryPutInPlace() : error;
}

int ResponseFile::TryPutInPlace() {
  if (!bComplete) {
    WriteError(ErrorNumber::kResponseNotWritten,
               u"The request was taken, but its response could not be written");
  }
  if (!bComplete) return oFile.Error();
  if (oFile.PutInPlace()) {
    bOwed = false;
    return 0;
  }
  const int error = oFile.Error();
  if (IsMissing(error)) {
    bComplete = false;
  } else {
    SetAside();
  }
  return error;
}

// A finished response is told by its name from one that was in work when the gateway was killed.
void ResponseFile::SetAside() { bAside = bAside || oFile.Rename(oPaths.sFinished); }

}  // namespace ostrel
