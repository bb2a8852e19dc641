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
  Text partialPath = sPath + u".part";
  if (!oFile.OpenFile(partialPath, u"W")) return false;
  sPartialPath = std::move(partialPath);
  return true;
}

bool WholeFile::Write(Text text) {
  oFile.WriteData(text);
  return !Failed();
}

bool WholeFile::PutInPlace() {
  oFile.CloseFile();
  if (Failed() || platform::RenameOver(sPartialPath, sPath) != 0) return false;
  sPartialPath.clear();
  return true;
}

bool WholeFile::Failed() const {
  Text message;
  std::int32_t number = 0;
  return oFile.ReadErrorHandler(message, number);
}

}  // namespace ostrel
