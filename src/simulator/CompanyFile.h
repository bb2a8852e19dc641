// A company's file and, beside it, the journal ("sample.qbw.journal") of what has changed since the
// file was written. A change is safe when its record is in the journal; now and then the journal is
// folded: a new company file takes the place of the old one, and the journal goes.
//
// A journal names the version of the company file that it continues. Whose file is another one by
// now - replaced, or edited by hand - it is never applied, but stays as it is and gives way, under
// a name of its own, to the next one. Reading changes nothing on disk.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/Change.h"
#include "simulator/CompanyStorage.h"
#include "simulator/Journal.h"

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
  CompanyFile(Text path, CompanyStorage& storage) : sPath(std::move(path)), oStorage(storage) {}

  const Text& Path() const { return sPath; }
  Text JournalPath() const { return sPath + u".journal"; }

  struct Contents {
    std::string bytes;             // of the company file
    std::vector<Changes> changes;  // to be carried out on that, oldest first
    JournalState journal = JournalState::kNone;
  };
  /// Must come before what is below. kInvalidData for a journal that nobody here can carry out.
  int Read(Contents& contents);

  /// The changes are safe, or have left no trace. Fails as well when another program has written
  /// the company file since it was read: what it wrote must not be lost.
  int Append(const Changes& changes);
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

  Text sPath;
  CompanyStorage& oStorage;
  FileVersion oVersion;           // of the company file
  std::optional<FileMark> oMark;  // nothing: it could not be looked at when it was read
  std::size_t lJournalBytes = 0;  // 0: no journal that counts
  JournalWriter oWriter;          // of the next record
  std::optional<Text> sForeign;   // what a journal that does not count is renamed to
};

}  // namespace ostrel::simulator
