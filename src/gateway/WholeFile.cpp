#include "gateway/WholeFile.h"

#include <utility>

#include "platform/FileSystem.h"

namespace ostrel {

WholeFile::WholeFile(TextView path) {
  oFile.FullFileName(path);
  sPath = oFile.FullFileName();
}

WholeFile::~WholeFile() {
  if (sPartialPath.empty()) return;
  try {
    oFile.CloseFile();
    platform::EraseFile(sPartialPath);
  } catch (...) {  // NOLINT(bugprone-empty-catch): out of memory; the next such file replaces it
  }
}

bool WholeFile::Open() {
  iPlaceError = 0;
  Text partialPath = sPath + u".part";
  if (!oFile.IsOpen() && !oFile.OpenFile(partialPath, u"W")) return false;
  sPartialPath = std::move(partialPath);
  oFile.SetCursorPos(0);
  return true;
}

bool WholeFile::Reserve(std::size_t bytes) {
  if (!Write(Text(bytes, u' '))) return false;
  oFile.SetCursorPos(0);
  return true;
}

bool WholeFile::Write(Text text) {
  oFile.WriteData(text);
  return Error() == 0;
}

bool WholeFile::Close() {
  oFile.CloseFile();
  return Error() == 0;
}

bool WholeFile::PutInPlace() {
  iPlaceError = 0;
  if (!Close()) return false;
  iPlaceError = platform::RenameOver(sPartialPath, sPath);
  if (iPlaceError != 0) return false;
  sPartialPath.clear();
  return true;
}

int WholeFile::Error() const {
  Text message;
  std::int32_t number = 0;
  oFile.ReadErrorHandler(message, number);
  return iPlaceError != 0 ? iPlaceError : number;
}

void WholeFile::Keep() { sPartialPath.clear(); }

}  // namespace ostrel
