// The program's one file class: an object bound to one file name that reads and writes at an
// explicit byte position (the cursor) and keeps the last error instead of raising it, and the
// profile (INI) operations on the same file. A file is opened without sharing; use it within one
// routine and close it.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/Files.h"
#include "util/Text.h"

namespace ostrel {

class cFileIO {
 public:
  cFileIO();
  ~cFileIO();
  cFileIO(cFileIO&&) noexcept = default;
  cFileIO& operator=(cFileIO&&) noexcept = default;

  bool InputLineCRLFOnly = false;

  void Reset();
  void SetCursorPos(std::int64_t position);
  std::int64_t CurrentPos() const;
  bool IsEOF() const;
  /// Hands out the last error. True when there is one.
  bool ReadErrorHandler(Text& errorMessage, std::int32_t& errorNumber) const;
  std::int64_t FileSize() const;

  Text FullFileName() const;
  void FullFileName(TextView name);
  const Text& FileName() const;
  Text FileNameNoExt() const;
  const Text& FilePath();
  Text FilePathShort();

  /// Creates every missing folder along the path. 0, or the system's error number for the first
  /// folder that could not be made (platform/SystemError.h).
  int ValidateDirectory(TextView path);
  /// Creates the file empty when it cannot be opened for reading; errors are ignored.
  void ValidateFile(TextView name);

  bool IsOpen() const;
  /// "MM/DD/YYYY HH:MM:SS", all three empty when the file is not open.
  void FileDateTime(Text& creationDate, Text& accessDate, Text& modifyDate) const;
  void SetTempFileInfo(TextView prefix = {});
  bool OpenTempFile(TextView readWrite = {});

  /// Access: "RW", "WR" or empty: read and write; "W": write; anything else: read an existing file.
  /// Opened for writing, a file ends at the cursor when it is closed. False on failure.
  bool OpenFile(TextView name = {}, TextView readWrite = {}, TextView overridePath = {});
  void CloseFile();

  void DeleteFile();
  bool Recycle(bool confirm = false);
  bool MoveFile(TextView newPath);
  bool CopyFile(TextView newPath);
  bool RenameFile(TextView newName);

  /// Position -1: the cursor. Options: "X" hexadecimal.
  void ReadData(Text& input, std::int64_t offset, std::int64_t bytesToRead, TextView option = {});
  void InputLine(Text& input);
  Text ReadAllData();
  /// Options: "A" attribute marks become CR LF (in the caller's text too), "X" hexadecimal.
  void WriteData(Text& output, std::int64_t offset = -1, TextView option = {});
  void PrintLine(TextView output);

  /// Profile operations. ReadINI creates an empty file when there is none; values are cut to 99
  /// characters. The others raise RunTimeError as "IniFile::WriteIni" and so on.
  void ReadINI(TextView section, TextView item, Text& value, TextView fallback = {});
  /// Rows of name and value; a value is cut at its first "=".
  void ReadINISection(TextView section, std::vector<std::pair<Text, Text>>& table);
  void WriteIni(TextView section, TextView item, TextView value);
  void DeleteIni(TextView section, TextView item);
  void DeleteIniAll(TextView section);
};

}  // namespace ostrel
