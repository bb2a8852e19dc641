#include "transports/AnswerFile.h"

#include "gateway/ErrorFile.h"
#include "platform/FileSystem.h"
#include "platform/SystemError.h"

namespace ostrel {
namespace {

constexpr std::size_t kReserved = 4096;  // bytes, one for each character
constexpr std::size_t kLongestCutMessage = kReserved - 64;

TextView FolderOf(TextView path) { return path.substr(0, path.find_last_of(u"\\/")); }

bool IsMissing(int error) {
  return error == platform::kFileNotFound || error == platform::kPathNotFound;
}

}  // namespace

AnswerFile::AnswerFile(TextView path) : sPath(path), oFile(path) {}

AnswerFile::~AnswerFile() {
  if (!bOwed) return;
  try {
    if (PutInPlace() != 0) oFile.Keep();
  } catch (...) {
    oFile.Keep();  // no memory: what has been written is better than nothing
  }
}

int AnswerFile::Reserve() {
  if (platform::FolderExists(sPath)) return platform::kFileExists;
  return Open() && oFile.Reserve(kReserved) ? 0 : oFile.Error();
}

bool AnswerFile::Open() {
  if (oFile.Open()) return true;
  return IsMissing(oFile.Error()) && cFileIO().ValidateDirectory(FolderOf(sPath)) == 0 &&
         oFile.Open();
}

void AnswerFile::WriteResponse(TextView response, const ResponseWriter& write) {
  bComplete = Open() && write(response, oFile) && oFile.Close();
  if (bComplete) return;
  const int error = oFile.Error() != 0 ? oFile.Error() : platform::kOutOfMemory;
  WriteError(kErrorResponseNotWritten,
             u"The request was carried out, but its response could not be written: " +
                 platform::SystemErrorText(error));
}

void AnswerFile::WriteError(TextView errorNumber, TextView message) {
  bComplete = TryWriteError(errorNumber, message) ||
              TryWriteError(errorNumber, message.substr(0, kLongestCutMessage));
}

bool AnswerFile::TryWriteError(TextView errorNumber, TextView message) {
  return Open() && WriteErrorFile(oFile, errorNumber, message) && oFile.Close();
}

int AnswerFile::PutInPlace() {
  // What has been written may have gone with its folder; what is left of it then is an error.
  const int error = TryPutInPlace();
  return IsMissing(error) ? TryPutInPlace() : error;
}

int AnswerFile::TryPutInPlace() {
  if (!bComplete) {
    WriteError(kErrorResponseNotWritten,
               u"The request was taken, but its response could not be written");
  }
  if (!bComplete) return oFile.Error();
  if (oFile.PutInPlace()) {
    bOwed = false;
    return 0;
  }
  if (IsMissing(oFile.Error())) bComplete = false;
  return oFile.Error();
}

}  // namespace ostrel
