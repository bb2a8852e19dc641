// Names, opening and closing, and what is done to a file as a whole. Reading and writing is in
// cFileIOData.cpp, the profile operations in cFileIOIni.cpp.
#include "util/cFileIO.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <string_view>

#include "platform/FileSystem.h"
#include "platform/SystemError.h"

namespace ostrel {
namespace {

using platform::FileAccess;
using platform::FileCreation;
using platform::FileLinks;

constexpr TextView kSeparators = u"\\/";
constexpr TextView kAppPath = u"%apppath%";
constexpr TextView kDefaultTempPrefix = u"nts";

struct OpenMode {
  FileAccess access;
  FileCreation creation;
};

OpenMode ModeOf(TextView readWrite) {
  if (readWrite.empty() || readWrite == u"RW" || readWrite == u"WR") {
    return {FileAccess::kReadWrite, FileCreation::kOpenAlways};
  }
  if (readWrite == u"W") return {FileAccess::kWrite, FileCreation::kOpenAlways};
  return {FileAccess::kRead, FileCreation::kOpenExisting};
}

Text ExpandFolder(TextView folder) {
  return ReplaceAll(LowerCase(folder), kAppPath, platform::ProgramFolder());
}

void AppendSeparator(Text& folder) {
  if (!folder.ends_with(u'\\')) folder.push_back(u'\\');
}

// The length of the part that is there without being made: the drive, or a network path's server
// and share; the root's separator on POSIX.
std::size_t LengthOfStart(TextView path) {
  if (path.starts_with(u"\\\\")) {
    const std::size_t share = path.find(u'\\', 2);
    return share == TextView::npos ? path.size()
                                   : std::min(path.find(u'\\', share + 1), path.size());
  }
  const std::size_t first = std::min(path.find_first_of(kSeparators), path.size());
  return path.substr(0, first).ends_with(u':') ? first : 0;
}

Text DateTimeText(platform::TimePoint time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  const auto day = std::chrono::floor<std::chrono::days>(seconds);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(seconds - day);
  char text[80];
  const int length = std::snprintf(
      text, sizeof text, "%02u/%02u/%04d %02d:%02d:%02d", static_cast<unsigned>(date.month()),
      static_cast<unsigned>(date.day()), static_cast<int>(date.year()),
      static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
      static_cast<int>(clock.seconds().count()));
  return FromAscii({text, static_cast<std::size_t>(length)});
}

bool IsFree(TextView path) {
  platform::File probe;
  return probe.Open(path, FileAccess::kRead, FileCreation::kOpenExisting) ==
         platform::kFileNotFound;
}

int CopyUnlessExists(TextView from, TextView to) {
  return IsFree(to) ? platform::DuplicateFile(from, to) : platform::kFileExists;
}

int MoveUnlessExists(TextView from, TextView to) {
  int error = platform::RenamePath(from, to);
  if (error != platform::kNotSameDevice) return error;
  error = CopyUnlessExists(from, to);
  return error != 0 ? error : platform::EraseFile(from);
}

}  // namespace

cFileIO::cFileIO() : sFilePath(platform::ProgramFolder()) {}
cFileIO::~cFileIO() { CloseFile(); }

void cFileIO::Reset() { lCursor = 0; }
void cFileIO::SetCursorPos(std::int64_t position) { lCursor = position; }

bool cFileIO::SetCursorToEnd() {
  const auto size = oFile.Size();
  if (size) {
    lCursor = *size;
  } else {
    KeepError(u"SetCursorToEnd", FullFileName(), platform::kGeneralFailure);
  }
  return size.has_value();
}

std::int64_t cFileIO::CurrentPos() const { return lCursor; }
bool cFileIO::IsEOF() const { return lCursor >= FileSize(); }

bool cFileIO::ReadErrorHandler(Text& errorMessage, std::int32_t& errorNumber) const {
  errorMessage = sErrorMessage;
  errorNumber = lErrorNumber;
  return lErrorNumber != 0;
}

std::int64_t cFileIO::FileSize() const { return IsOpen() ? oFile.Size().value_or(0) : 0; }

Text cFileIO::FullFileName() const { return PathInFolder(sFilePath); }

void cFileIO::FullFileName(TextView name) {
  const std::size_t start = name.find_last_of(kSeparators) + 1;  // 0 when there is none
  Text folder = start == 0 ? platform::ProgramFolder() : Text(name.substr(0, start));
  sFileName = name.substr(start);
  sFilePath = ExpandFolder(folder);
}

const Text& cFileIO::FileName() const { return sFileName; }
Text cFileIO::FileNameNoExt() const { return sFileName.substr(0, sFileName.rfind(u'.')); }

const Text& cFileIO::FilePath() {
  AppendSeparator(sFilePath);
  return sFilePath;
}

Text cFileIO::FilePathShort() { return platform::ShortPath(FilePath()); }

int cFileIO::ValidateDirectory(TextView path) {
  Text folders = ExpandFolder(path);
  AppendSeparator(folders);
  const TextView whole = folders;
  std::size_t end = LengthOfStart(whole);
  while ((end = whole.find_first_of(kSeparators, whole.find_first_not_of(kSeparators, end))) !=
         TextView::npos) {
    const TextView folder = whole.substr(0, end);
    if (platform::FolderExists(folder)) continue;
    const int error = platform::MakeFolder(folder);
    if (error != 0 && !platform::FolderExists(folder)) return error;
  }
  return 0;
}

void cFileIO::ValidateFile(TextView name) {
  // A file that is there and cannot be read is left alone: another program may be writing it.
  const bool isMissing = !OpenFile(name, u"R") && lErrorNumber == platform::kFileNotFound;
  if (isMissing && OpenFile({}, u"W")) SetCursorToEnd();
  CloseFile();
  ClearError();
}

bool cFileIO::IsOpen() const { return oFile.IsOpen(); }

void cFileIO::FileDateTime(Text& creationDate, Text& accessDate, Text& modifyDate) const {
  const auto times = oFile.Times();
  creationDate = times ? DateTimeText(times->created) : Text();
  accessDate = times ? DateTimeText(times->accessed) : Text();
  modifyDate = times ? DateTimeText(times->modified) : Text();
}

void cFileIO::SetTempFileInfo(TextView prefix) {
  sTempFileName = platform::MakeTemporaryFile(platform::TemporaryFolder(),
                                              prefix.empty() ? kDefaultTempPrefix : prefix);
  if (!sTempFileName.empty()) FullFileName(sTempFileName);
}

bool cFileIO::OpenTempFile(TextView readWrite) {
  if (!sTempFileName.empty()) return OpenFile(sTempFileName, readWrite);
  ClearError();
  KeepError(u"modMain.OpenFile", {}, platform::kFileNotFound);
  return false;
}

bool cFileIO::OpenFile(TextView name, TextView readWrite, TextView overridePath) {
  CloseFile();
  ClearError();
  if (!name.empty()) FullFileName(name);
  if (!overridePath.empty()) sFilePath = overridePath;
  sFilePath = ExpandFolder(sFilePath);

  const int error = OpenNamedFile(readWrite);
  if (error != 0) KeepError(u"modMain.OpenFile", FullFileName(), error);
  return error == 0;
}

int cFileIO::OpenNamedFile(TextView readWrite) {
  OpenMode mode = ModeOf(readWrite);
  bWrite = bTruncate = mode.access != FileAccess::kRead;
  bRead = mode.access != FileAccess::kWrite;
  bUnicode = false;
  if (bWrite && CreateNew) mode.creation = FileCreation::kCreateNew;
  const auto links = RefuseLinks ? FileLinks::kRefuse : FileLinks::kFollow;
  int error = oFile.Open(FullFileName(), mode.access, mode.creation, links);
  if (error == 0 && bRead) error = ReadByteOrderMark();
  if (error != 0) oFile.Close();
  return error;
}

int cFileIO::ReadByteOrderMark() {
  char mark[2] = {};
  int error = 0;
  oFile.ReadAt(0, mark, error);
  bUnicode = std::string_view(mark, sizeof mark) == "\xFF\xFE";
  if (!bUnicode) lCursor = 0;
  return error;
}

void cFileIO::CloseFile() {
  if (!IsOpen()) return;
  ClearError();
  int error = 0;
  if (bWrite) {
    if (bTruncate) error = oFile.CutAt(std::max<std::int64_t>(lCursor, 0));
    const int flushError = SafeOnDisk ? oFile.Flush() : 0;
    if (error == 0) error = flushError;
  }
  oFile.Close();
  if (error != 0) KeepError(u"modMain.CloseFile", {}, error);
}

void cFileIO::DeleteFile() {
  CloseFile();
  Finish(u"modMain.DeleteFile", platform::EraseFile(FullFileName()));
}

bool cFileIO::Recycle(bool confirm) {
  CloseFile();
  return Finish(u"modMain.Recycle", platform::RecyclePath(FullFileName(), confirm));
}

bool cFileIO::MoveFile(TextView newPath) {
  CloseFile();
  const Text target = PathInFolder(newPath);
  const bool moved = Finish(u"modMain.MoveFile", MoveUnlessExists(FullFileName(), target));
  if (moved) FullFileName(target);
  return moved;
}

bool cFileIO::CopyFile(TextView newPath) {
  CloseFile();
  return Finish(u"modMain.CopyFile", CopyUnlessExists(FullFileName(), PathInFolder(newPath)));
}

bool cFileIO::RenameFile(TextView newName) {
  CloseFile();
  const bool isName = !newName.empty() && newName.find_first_of(kSeparators) == TextView::npos;
  const Text from = FullFileName();
  const Text to = FilePath() + Text(newName);
  const bool renamed = Finish(u"modMain.RenameFile",
                              isName ? platform::RenamePath(from, to) : platform::kInvalidName);
  if (renamed) sFileName = newName;
  return renamed;
}

Text cFileIO::PathInFolder(TextView folder) const {
  Text path(folder);
  AppendSeparator(path);
  return path += sFileName;
}

bool cFileIO::Finish(TextView operation, int error) {
  ClearError();
  if (error != 0) KeepError(operation, {}, error);
  return error == 0;
}

void cFileIO::ClearError() {
  sErrorMessage.clear();
  lErrorNumber = 0;
}

void cFileIO::KeepError(TextView operation, TextView argument, int error) noexcept {
  lErrorNumber = error;
  try {
    Text message(operation);
    message.append(u"(").append(argument).append(u"):").append(platform::SystemErrorText(error));
    sErrorMessage = std::move(message);
  } catch (const std::exception&) {
    sErrorMessage.clear();  // no memory for words: the number tells
  }
}

}  // namespace ostrel
