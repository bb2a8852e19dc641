// Changes are appended to the journal. A journal that has become long (beside a small file always,
// beside a large one from an eighth of the file on) is folded into the company file when the
// company closes; one that outgrows the file is folded at once. Folding keeps apart three states
// that a crash can leave: the journal continues the old file, it is already contained in the new
// one (its last record says so), or it is gone.
#include "simulator/company/CompanyFile.h"

#include <algorithm>

#include "platform/SystemError.h"
#include "simulator/company/Journal.h"

namespace ostrel::simulator {
namespace {

// Writing a company file below this size anew takes no noticeable time.
constexpr std::size_t kSmallFile = 1024 * 1024;
constexpr std::size_t kShare = 8;
constexpr std::size_t kTooLong = 64 * 1024 * 1024;

}  // namespace

int CompanyFile::Read(Contents& contents) {
  if (const int error = oStorage.Read(sPath, contents.bytes)) return error;
  FileMark mark;
  if (oStorage.CheckWritable(sPath, mark) == 0) oMark = mark;
  oVersion = VersionOf(contents.bytes);
  oLeftOut.clear();
  return ReadJournalFile(contents);
}

int CompanyFile::ReadJournalFile(Contents& contents) {
  std::string bytes;
  const int error = oStorage.Read(JournalPath(), bytes);
  if (error == platform::kFileNotFound) return 0;
  lJournalRead = static_cast<std::int64_t>(bytes.size());
  if (error != 0 || bytes.empty()) return error;
  Journal journal = ReadJournal(bytes);
  contents.journal = StateOf(journal, bytes.size());
  sKept = JournalPath() + u'-' + FromAscii(ChecksumText(Checksum(bytes)));
  const bool folded = contents.journal == JournalState::kFolded;
  bGivesWay = contents.journal == JournalState::kForeign || (folded && !journal.leftOut.empty());
  if (folded || bGivesWay) return 0;
  contents.changes = std::move(journal.changes);
  contents.places = std::move(journal.places);
  oLeftOut = std::move(journal.leftOut);
  lJournalBytes = journal.endBytes;
  oWriter = journal.writer;
  return 0;
}

void CompanyFile::LeaveOut(LeftOut record) {
  const auto behind = std::ranges::upper_bound(
      oLeftOut, record.record.number, {}, [](const LeftOut& other) { return other.record.number; });
  oLeftOut.insert(behind, record);
}

JournalState CompanyFile::StateOf(const Journal& journal, std::size_t bytes) const {
  if (journal.foldedInto == oVersion) return JournalState::kFolded;
  if (journal.continues != oVersion) return JournalState::kForeign;
  return journal.endBytes == bytes ? JournalState::kWhole : JournalState::kTorn;
}

int CompanyFile::CheckUnchanged() {
  FileMark mark;
  if (const int error = oStorage.CheckWritable(sPath, mark)) return error;
  if (!oMark) oMark = mark;
  return *oMark == mark ? 0 : platform::kSharingViolation;
}

int CompanyFile::CheckAsRead() {
  FileMark journal;
  const int error = oStorage.CheckWritable(JournalPath(), journal);
  if (error != 0 && error != platform::kFileNotFound) return error;
  return journal.bytes == lJournalRead ? CheckUnchanged() : platform::kSharingViolation;
}

int CompanyFile::GiveWay() {
  if (!bGivesWay) return 0;
  const int error = oStorage.Rename(JournalPath(), sKept);
  bGivesWay = error != 0;
  return error;
}

int CompanyFile::Append(const Changes& changes) {
  if (CountElements(changes) > oLimits.elements) return platform::kFileTooLarge;
  if (const int error = CheckUnchanged()) return error;
  if (const int error = GiveWay()) return error;
  JournalWriter writer = lJournalBytes == 0 ? JournalWriter() : oWriter;
  std::string records = lJournalBytes == 0 ? writer.Continues(oVersion) : std::string();
  const std::string record = writer.Changed(changes);
  if (record.size() > oLimits.bytes) return platform::kFileTooLarge;
  records += record;
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
  if (lJournalBytes > 0) PutJournalAway();
  return 0;
}

// A journal that cannot be put away now says in its last record that it is folded.
void CompanyFile::PutJournalAway() {
  bGivesWay = !oLeftOut.empty();
  if (bGivesWay) {
    GiveWay();
  } else {
    oStorage.Erase(JournalPath());
  }
  oLeftOut.clear();
  lJournalBytes = 0;
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
