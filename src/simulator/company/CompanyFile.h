// A company's file and, beside it, the journal ("sample.qbw.journal") of what has changed since the
// file was written. A change is safe when its record is in the journal; now and then the journal is
// folded: a new company file takes the place of the old one, and the journal goes.
//
// A journal names the version of the company file that it continues. Whose file is another one by
// now - replaced, or edited by hand - it is never applied, but stays as it is and gives way, under
// a name of its own, to the next one. So does a journal of which records were left out, once the
// others are in the company file. Reading changes nothing on disk.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/company/Company.h"
#include "simulator/company/CompanyStorage.h"
#include "simulator/company/Journal.h"

namespace ostrel::simulator {

enum class JournalState {
  kNone,
  kWhole,
  kTorn,     // its last bytes, after the last whole record, do not count
  kFolded,   // all of it is in the company file already
  kForeign,  // it continues another file, or nobody can tell which
};

/// Results are 0 or an error number of platform/SystemError.h.
class CompanyFile {
 public:
  /// No record is written beyond the limits, which are those of what can be read at most.
  CompanyFile(Text path, CompanyStorage& storage, RecordLimits limits = {})
      : sPath(std::move(path)), oStorage(storage), oLimits(limits) {}

  const Text& Path() const { return sPath; }
  Text JournalPath() const { return sPath + u".journal"; }

  struct Contents {
    std::string bytes;                // of the company file
    std::vector<Changes> changes;     // to be carried out on that, oldest first
    std::vector<RecordPlace> places;  // of the record of each of these
    JournalState journal = JournalState::kNone;
  };
  /// Keeps the company to this process.
  CompanyHold Lock() { return oStorage.Lock(sPath); }
  /// Must come before what is below.
  int Read(Contents& contents);
  /// The records of the journal that do not count, in their order.
  const std::vector<LeftOut>& RecordsLeftOut() const { return oLeftOut; }
  /// For a record that cannot be carried out on the company as it is.
  void LeaveOut(LeftOut record);

  /// The changes are safe, or have left no trace. Fails as well when another program has written
  /// the company file since it was read: what it wrote must not be lost; and with kFileTooLarge for
  /// more than a record may hold. Records that were left out must have been folded away.
  int Append(const Changes& changes);
  /// For a company that was read without a lock: 0 when file and journal are still as they were
  /// then.
  int CheckAsRead();
  /// The company file holds these bytes, which have all of the journal in them; or it and the
  /// journal are what they were.
  int Fold(std::string_view bytes);

  /// Whether the journal is so long, beside its company file, that it is better folded at the end.
  bool IsLong() const;
  /// So long that it is better folded at once: files have their limit.
  bool IsTooLong() const;

 private:
  int CheckUnchanged();
  int ReadJournalFile(Contents& contents);
  JournalState StateOf(const Journal& journal, std::size_t bytes) const;
  int GiveWay();
  int AppendRecords(JournalWriter writer, std::string_view records);
  int WriteAnew(std::string_view bytes);
  void PutJournalAway();

  Text sPath;
  CompanyStorage& oStorage;
  RecordLimits oLimits;
  FileVersion oVersion;           // of the company file
  std::optional<FileMark> oMark;  // nothing: it could not be looked at when it was read
  std::int64_t lJournalRead = 0;  // bytes that the journal's file had when it was read
  std::size_t lJournalBytes = 0;  // 0: no journal that counts
  JournalWriter oWriter;          // of the next record
  Text sKept;                     // the name under which a journal that does not count is kept
  bool bGivesWay = false;         // the journal that is there does not count, or not any more
  std::vector<LeftOut> oLeftOut;
};

}  // namespace ostrel::simulator
