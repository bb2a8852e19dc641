#include "gateway/WholeFile.h"

#include "platform/FileSystem.h"
#include "platform/SystemError.h"

namespace ostrel {
namespace {

Text NormalPath(TextView path) {
  cFileIO file;
  file.FullFileName(path);
  return file.FullFileName();
}

// 0 when nothing is there any more. What another program has open is in work there.
int EraseLeftover(const Text& path) {
  using namespace platform;
  File leftover;
  const int error =
      leftover.Open(path, FileAccess::kReadWrite, FileCreation::kOpenExisting, FileLinks::kRefuse);
  leftover.Close();
  return error != 0 ? error : EraseFile(path);
}

}  // namespace

WholeFile::WholeFile(TextView path) : WholeFile(path, Text(path) + u".part") {}

WholeFile::WholeFile(TextView path, TextView besidePath)
    : sPath(NormalPath(path)), sBesidePath(NormalPath(besidePath)) {
  oFile.CreateNew = true;
}

WholeFile::~WholeFile() {
  if (sWritten.empty()) return;
  try {
    oFile.CloseFile();
    platform::EraseFile(sWritten);
  } catch (...) {  // NOLINT(bugprone-empty-catch): out of memory; the next such file replaces it
  }
}

bool WholeFile::Open() {
  if (!oFile.IsOpen() && !Create()) return false;
  oFile.SetCursorPos(0);
  return Finish(0);
}

bool WholeFile::Create() {
  Text path = sBesidePath;
  bool isOpen = oFile.OpenFile(path, u"W");
  if (!isOpen && FileError() == platform::kFileExists) {
    if (const int error = EraseLeftover(path)) return Finish(error);
    isOpen = oFile.OpenFile(path, u"W");
  }
  if (!isOpen) return Finish(FileError());
  sWritten.swap(path);
  return true;
}

bool WholeFile::Reserve(std::size_t bytes) {
  if (!Write(Text(bytes, u' '))) return false;
  oFile.SetCursorPos(0);
  return true;
}

bool WholeFile::Write(Text text) {
  oFile.WriteData(text);
  return Finish(FileError());
}

bool WholeFile::Close() {
  oFile.CloseFile();
  return Finish(FileError());
}

bool WholeFile::PutInPlace() {
  if (!MoveTo(sPath)) return false;
  sWritten.clear();
  return true;
}

bool WholeFile::Rename(TextView besidePath) {
  Text path = NormalPath(besidePath);
  if (!MoveTo(path)) return false;
  sWritten.swap(path);
  return true;
}

void WholeFile::Adopt(TextView besidePath) { sWritten = NormalPath(besidePath); }

bool WholeFile::MoveTo(const Text& path) {
  return Close() && Finish(platform::RenameOver(sWritten, path));
}

bool WholeFile::Finish(int error) {
  iError = error;
  return error == 0;
}

int WholeFile::FileError() const {
  Text message;
  std::int32_t number = 0;
  oFile.ReadErrorHandler(message, number);
  return number;
}

}  // namespace ostrel
