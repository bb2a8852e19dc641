// The profile operations of the file class. Text is bytes of the code page here, as the system's
// profile functions take it.
#include <algorithm>
#include <exception>
#include <new>
#include <string>

#include "platform/Profile.h"
#include "platform/SystemError.h"
#include "util/CodePage.h"
#include "util/RunTimeError.h"
#include "util/cFileIO.h"

namespace ostrel {
namespace {

constexpr int kWithoutNumber = -1;

constexpr std::size_t kValueSize = 100;
constexpr std::size_t kSectionSize = 32767;

constexpr TextView kReadSource = u"IniFile::ReadIni";

// Of a handler: what it caught, with a number.
RunTimeError CaughtError() {
  try {
    throw;
  } catch (const RunTimeError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return RunTimeError(ErrorNumber::kOutOfMemory, {}, u"Out of memory");
  } catch (const std::exception& error) {
    return RunTimeError(kWithoutNumber, {}, FromAscii(error.what()));
  }
}

bool IsRaisedByReading(const RunTimeError& error) {
  return error.Number == ErrorNumber::kFileNotFound || error.Number == kWithoutNumber;
}

RunTimeError ReadingError(const RunTimeError& caught, const Text& path) {
  return RunTimeError(
      caught.Number, Text(kReadSource),
      caught.Number == ErrorNumber::kFileNotFound ? path + u" not Found" : caught.Description);
}

template <typename Operation>
void RaiseAs(TextView source, Operation operation) {
  try {
    operation();
  } catch (const std::exception&) {
    const RunTimeError caught = CaughtError();
    throw RunTimeError(caught.Number, Text(source), caught.Description);
  }
}

// Takes what stands before the first separator, or everything, off the front.
TextView TakePiece(TextView& text, char16_t separator) {
  const std::size_t at = text.find(separator);
  const TextView piece = text.substr(0, at);
  text.remove_prefix(at == TextView::npos ? text.size() : at + 1);
  return piece;
}

// An entry that the buffer had no room for is a row as well, as far as it goes.
// Kept: a value that itself contains "=" is cut there, and an entry without "=" ends the filling:
// its row has a name only and the rows after it are empty. The table has always been like this.
void FillTable(TextView entries, std::vector<std::pair<Text, Text>>& table) {
  const auto ended = std::count(entries.begin(), entries.end(), u'\0');
  const bool isLastCut = !entries.empty() && entries.back() != u'\0';
  table.assign(static_cast<std::size_t>(ended) + (isLastCut ? 1 : 0), {});
  for (auto& [name, value] : table) {
    TextView entry = TakePiece(entries, u'\0');
    const bool hasValue = Contains(entry, u"=");
    name = TakePiece(entry, u'=');
    if (!hasValue) return;
    value = TakePiece(entry, u'=');
  }
}

}  // namespace

Text cFileIO::ProfilePath() const {
  if (sFileName.empty()) throw RunTimeError(ErrorNumber::kFileNotFound, {}, u"File not found");
  return FullFileName();
}

void cFileIO::ReadINI(TextView section, TextView item, Text& value, TextView fallback) {
  try {
    ValidateFile(ProfilePath());
    std::string bytes;
    const int error =
        platform::ReadProfileValue(ProfilePath(), TextToBytes(section), TextToBytes(item),
                                   TextToBytes(fallback), kValueSize, bytes);
    value = TrimBlanks(BytesToText(bytes));
    if (error != 0) KeepError(kReadSource, FullFileName(), error);
  } catch (const std::exception&) {
    const RunTimeError caught = CaughtError();
    if (!IsRaisedByReading(caught)) return KeepError(kReadSource, {}, platform::kOutOfMemory);
    value = Text(fallback);
    throw ReadingError(caught, FullFileName());
  }
}

void cFileIO::ReadINISection(TextView section, std::vector<std::pair<Text, Text>>& table) {
  try {
    ClearError();
    std::string bytes;
    const int error =
        platform::ReadProfileSection(ProfilePath(), TextToBytes(section), kSectionSize, bytes);
    FillTable(BytesToText(bytes), table);
    if (error != 0) KeepError(kReadSource, FullFileName(), error);
  } catch (const std::exception&) {
    const RunTimeError caught = CaughtError();
    if (!IsRaisedByReading(caught)) return KeepError(kReadSource, {}, platform::kOutOfMemory);
    throw ReadingError(caught, FullFileName());
  }
}

void cFileIO::WriteIni(TextView section, TextView item, TextView value) {
  RaiseAs(u"IniFile::WriteIni", [&] {
    const std::string bytes = TextToBytes(value);
    platform::WriteProfileValue(ProfilePath(), TextToBytes(section), TextToBytes(item), &bytes);
  });
}

void cFileIO::DeleteIni(TextView section, TextView item) {
  RaiseAs(u"IniFile::DeleteIni", [&] {
    platform::WriteProfileValue(ProfilePath(), TextToBytes(section), TextToBytes(item), nullptr);
  });
}

void cFileIO::DeleteIniAll(TextView section) {
  RaiseAs(u"IniFile::DeleteIniAll",
          [&] { platform::EraseProfileSection(ProfilePath(), TextToBytes(section)); });
}

}  // namespace ostrel
