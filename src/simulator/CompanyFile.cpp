#include "simulator/CompanyFile.h"

#include "platform/SystemError.h"
#include "simulator/Checksum.h"

namespace ostrel::simulator {
namespace {

// A company file below this is written anew in no time.
constexpr std::size_t kSmallFile = 1024 * 1024;
constexpr std::size_t kShare = 8;
constexpr std::size_t kTooLong = 64 * 1024 * 1024;

}  // namespace

int CompanyFile::Read(Contents& contents) {
  if (const int error = oStorage.Read(sPath, contents.bytes)) return error;
  FileMark mark;
  if (oStorage.CheckWritable(sPath, mark) == 0) oMark = mark;
  oVersion = VersionOf(contents.bytes);
  return ReadJournalFile(contents);
}

int CompanyFile::ReadJournalFile(Contents& contents) {
  std::string bytes;
  const int error = oStorage.Read(JournalPath(), bytes);
  if (error == platform::kFileNotFound) return 0;
  if (error != 0 || bytes.empty()) return error;
  auto journal = ReadJournal(bytes);
  if (!journal) return platform::kInvalidData;
  contents.journal = StateOf(*journal, bytes.size());
  if (contents.journal == JournalState::kForeign) {
    sForeign = JournalPath() + u'-' + FromAscii(ChecksumText(Checksum(bytes)));
  } else if (contents.journal != JournalState::kFolded) {
    contents.changes = std::move(journal->changes);
    lJournalBytes = journal->wholeBytes;
    oWriter = journal->writer;
  }
  return 0;
}

JournalState CompanyFile::StateOf(const Journal& journal, std::size_t bytes) const {
  if (journal.foldedInto == oVersion) return JournalState::kFolded;
  if (journal.continues != oVersion) return JournalState::kForeign;
  return journal.wholeBytes == bytes ? JournalState::kWhole : JournalState::kTorn;
}

int CompanyFile::CheckUnchanged() {
  FileMark mark;
  if (const int error = oStorage.CheckWritable(sPath, mark)) return error;
  if (!oMark) oMark = mark;
  return *oMark == mark ? 0 : platform::kSharingViolation;
}

int CompanyFile::GiveWay() {
  if (!sForeign) return 0;
  const int error = oStorage.Rename(JournalPath(), *sForeign);
  if (error == 0) sForeign.reset();
  return error;
}

int CompanyFile::Append(const Changes& changes) {
  if (const int error = CheckUnchanged()) return error;
  if (const int error = GiveWay()) return error;
  JournalWriter writer = lJournalBytes == 0 ? JournalWriter() : oWriter;
  std::string records = lJournalBytes == 0 ? writer.Continues(oVersion) : std::string();
  records += writer.Changed(changes);
  return AppendRecords(writer, records);
}

int CompanyFile::AppendRecords(JournalWriter writer, std::string_view records) {
  const auto position = static_cast<std::int64_t>(lJournalBytes);
  if (const int error = oStorage.WriteFrom(position, JournalPath(), records)) return error;
  lJournalBytes += records.size();
  oWriter = writer;
  return 0;
}

// The journal says first into which file it is folded: should the work end before the journal is
// erased, the next reader sees that it has nothing to add.
int CompanyFile::Fold(std::string_view bytes) {
  if (const int error = CheckUnchanged()) return error;
  if (const int error = GiveWay()) return error;
  const FileVersion version = VersionOf(bytes);
  if (lJournalBytes > 0) {
    JournalWriter writer = oWriter;
    const std::string record = writer.Folded(version);
    if (const int error = AppendRecords(writer, record)) return error;
  }
  if (const int error = WriteAnew(bytes)) return error;
  oVersion = version;
  oMark.reset();
  FileMark mark;
  if (oStorage.CheckWritable(sPath, mark) == 0) oMark = mark;
  if (lJournalBytes > 0) oStorage.Erase(JournalPath());
  lJournalBytes = 0;
  return 0;
}

int CompanyFile::WriteAnew(std::string_view bytes) {
  const Text beside = sPath + u".new";
  if (const int error = oStorage.WriteFrom(0, beside, bytes)) return error;
  const int error = oStorage.Rename(beside, sPath);
  if (error != 0) oStorage.Erase(beside);
  return error;
}

bool CompanyFile::IsLong() const {
  if (lJournalBytes == 0) return false;
  return oVersion.bytes < kSmallFile || lJournalBytes > oVersion.bytes / kShare;
}

bool CompanyFile::IsTooLong() const {
  return lJournalBytes > kTooLong && lJournalBytes > oVersion.bytes;
}

}  // namespace ostrel::simulator
