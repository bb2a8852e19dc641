// The program's one file class: an object bound to one file name that reads and writes at an
// explicit byte position (the cursor) and keeps the last error instead of raising it, and the
// profile (INI) operations on the same file. A file is opened without sharing; use it within one
// routine and close it.
#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "platform/Files.h"
#include "util/Text.h"

namespace ostrel {

class cFileIO {
 public:
  /// Closed, in the program's folder, without a name.
  cFileIO();
  ~cFileIO();
  cFileIO(cFileIO&&) noexcept = default;

  /// Whether only CR LF ends a line for InputLine, or a lone CR or LF as well.
  bool InputLineCRLFOnly = false;

  /// Whether a link in the file's place is not opened but an error (platform::kStoppedOnLink). Does
  /// not count for the profile operations.
  bool RefuseLinks = false;
  /// Whether OpenFile for writing creates the file and fails when there is one
  /// (platform::kFileExists).
  bool CreateNew = false;
  /// Whether CloseFile returns only when the system has what was written safe on its disk. Not
  /// worth its time for traces that the next one replaces or that only explain.
  bool SafeOnDisk = true;

  /// The cursor is the byte position, from 0, of the next read or write.
  void Reset();
  void SetCursorPos(std::int64_t position);
  /// False, with the error kept, when the file's size cannot be told.
  bool SetCursorToEnd();
  std::int64_t CurrentPos() const;
  bool IsEOF() const;
  /// Hands out the error of the last operation on the file (each one clears it first), with a
  /// number of platform/SystemError.h. True when there is one.
  bool ReadErrorHandler(Text& errorMessage, std::int32_t& errorNumber) const;
  /// In bytes; 0 when the file is not open or the system cannot tell.
  std::int64_t FileSize() const;

  /// The folder is turned to lower case, and then "%apppath%" in it becomes the program's folder.
  /// A name without a separator is in the program's folder.
  Text FullFileName() const;
  void FullFileName(TextView name);
  const Text& FileName() const;
  Text FileNameNoExt() const;
  /// Always ends in "\".
  const Text& FilePath();
  Text FilePathShort();

  /// Creates every missing folder along the path. 0, or the system's error number for the first
  /// folder that could not be made (platform/SystemError.h).
  int ValidateDirectory(TextView path);
  /// Creates the file empty when it cannot be opened for reading; errors are ignored. The object is
  /// bound to this file afterwards.
  void ValidateFile(TextView name);

  bool IsOpen() const;
  /// "MM/DD/YYYY HH:MM:SS" in universal time; all three empty when the file is not open.
  void FileDateTime(Text& creationDate, Text& accessDate, Text& modifyDate) const;
  /// Makes a new empty file in the folder for temporary files and binds the object to it; without
  /// one, the object keeps its name and OpenTempFile fails.
  void SetTempFileInfo(TextView prefix = {});
  bool OpenTempFile(TextView readWrite = {});

  /// Access: "RW", "WR" or empty: read and write; "W": write; anything else: read an existing file.
  /// Opened for writing, a file ends at the cursor when it is closed. The cursor is set to 0 unless
  /// the file is open for writing only or begins with the UTF-16 mark. False on failure.
  bool OpenFile(TextView name = {}, TextView readWrite = {}, TextView overridePath = {});
  void CloseFile();

  /// The file is closed first. False on failure; a folder is expected for MoveFile and CopyFile, a
  /// name without a folder for RenameFile, and what exists there already is never replaced. After
  /// MoveFile and RenameFile the object is bound to the new place.
  void DeleteFile();
  bool Recycle(bool confirm = false);
  bool MoveFile(TextView newPath);
  bool CopyFile(TextView newPath);
  bool RenameFile(TextView newName);

  /// Position -1: the cursor. Options: "X" hexadecimal. On failure `input` keeps its text. More
  /// than about 2^30 characters, or more than there is memory for, is an error.
  void ReadData(Text& input, std::int64_t offset, std::int64_t bytesToRead, TextView option = {});
  /// Without its line end; at the end of the file what is left, then an empty text.
  void InputLine(Text& input);
  Text ReadAllData();
  /// Options: "A" attribute marks become CR LF (in the caller's text too), "X" hexadecimal. After a
  /// failure (a full disk) the cursor stands behind what was written.
  void WriteData(Text& output, std::int64_t offset = -1, TextView option = {});
  void PrintLine(TextView output);

  /// Profile operations on the file of FullFileName; they know no cursor and need no open file.
  /// Failures of the system (a file that is read-only, a full disk) are not reported. Raised as
  /// RunTimeError with the sources "IniFile::ReadIni" (for both reading operations), "IniFile::
  /// WriteIni", "IniFile::DeleteIni" and "IniFile::DeleteIniAll": 53 when the object names no file,
  /// and in the last three anything else.
  /// ReadINI creates an empty file when there is none; values are cut to 99 characters. A value
  /// that was cut (kMoreData) and a file that could not be read, where the value is the fallback,
  /// are left for ReadErrorHandler, as ReadINISection leaves them.
  void ReadINI(TextView section, TextView item, Text& value, TextView fallback = {});
  /// Rows of name and value; a value is cut at its first "=". A section longer than 32765 bytes
  /// ends there, in the middle of a row perhaps. The first entry without "=" gets its name only,
  /// and those after it stay empty.
  void ReadINISection(TextView section, std::vector<std::pair<Text, Text>>& table);
  void WriteIni(TextView section, TextView item, TextView value);
  void DeleteIni(TextView section, TextView item);
  void DeleteIniAll(TextView section);

 private:
  void ClearError();
  // Keeps the error with the message "<operation>(<argument>):<description>".
  void KeepError(TextView operation, TextView argument, int error) noexcept;

  // The rest are steps of the operations of similar names. An int is 0 or an error number.
  int OpenNamedFile(TextView readWrite);
  int ReadByteOrderMark();
  int ReadText(Text& text, std::int64_t position, std::int64_t bytesToRead, bool hexadecimal);
  int ReadLine(Text& line);
  int Write(TextView text, std::int64_t position, bool hexadecimal);
  int WriteBytes(std::span<const char> bytes);
  std::int64_t PositionFor(std::int64_t offset) const;
  Text PathInFolder(TextView folder) const;
  bool Finish(TextView operation, int error);
  Text ProfilePath() const;

  platform::File oFile;
  Text sErrorMessage;
  std::int32_t lErrorNumber = 0;
  bool bWrite = false;
  bool bTruncate = false;
  bool bRead = false;
  bool bUnicode = false;
  std::int64_t lCursor = 0;
  Text sFileName;
  Text sFilePath;
  Text sTempFileName;
};

}  // namespace ostrel
