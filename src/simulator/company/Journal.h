// The text of a journal: what has changed in a company since its file was written, a record a set
// of changes. Records are XML that people can read, each behind a line with its length in bytes and
// a checksum over it and all before it:
//
//   <?record 000000056 da1ba1813c687bce?>
//   <Continues bytes="18052" checksum="1f3a9c04be7702d6" />
//   <?record 000000512 09ab44e170c35f2e?>
//   <Changes>
//     <Customer> ... </Customer>                                     as it now is
//     <Removed kind="Invoice" id="2A-1262682187" />
//   </Changes>
//
// The first record names the company file that the journal continues. One that says <Folded> names
// the file into which all before it is about to be written. Which files these are and when they
// are written: CompanyFile.h.
//
// A record that is damaged, or that nobody here can carry out, is left out by itself. Each of the
// others holds whole objects as they are after its change, so that it can be carried out without
// the one that is missing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/company/Company.h"

namespace ostrel::simulator {

/// The checksum tells damaged bytes from whole ones, and one version of a file from another. It is
/// no secret: anybody can make bytes of any checksum. This one is of bytes that follow others of
/// the checksum `before`.
std::uint64_t Checksum(std::string_view bytes, std::uint64_t before = 0);

/// Sixteen digits, "5f3e22a19b0c44d1".
std::string ChecksumText(std::uint64_t checksum);

/// Tells a company file from all others, however they are named.
struct FileVersion {
  std::uint64_t bytes = 0;
  std::uint64_t checksum = 0;
  bool operator==(const FileVersion&) const = default;
};

FileVersion VersionOf(std::string_view file);

/// The largest record: what is written is what can be read again. Its response is at most three
/// times as long, and so never longer than a response may be.
struct RecordLimits {
  std::size_t elements = 1'000'000;
  std::size_t bytes = 40 * 1024 * 1024;
};

/// Elements in the record of these changes.
std::size_t CountElements(const Changes& changes);

/// Makes records, from the first of a journal on or from the last one that was read on.
class JournalWriter {
 public:
  explicit JournalWriter(std::uint64_t checksum = 0) : lChecksum(checksum) {}

  std::string Continues(const FileVersion& file);
  std::string Changed(const Changes& changes);
  std::string Folded(const FileVersion& file);

 private:
  std::string Record(std::string_view xml);

  std::uint64_t lChecksum;
};

struct RecordPlace {
  std::size_t number = 1;    // counted from 1, which is the one that names the company file
  std::size_t position = 0;  // in bytes
};

/// A record that does not count.
struct LeftOut {
  RecordPlace record;
  std::string_view why;  // "is damaged"
};

struct Journal {
  std::optional<FileVersion> continues;   // nothing: the first record is damaged
  std::optional<FileVersion> foldedInto;  // when the last record says so
  std::vector<Changes> changes;           // oldest first
  std::vector<RecordPlace> places;        // of the record of each of these
  std::vector<LeftOut> leftOut;           // the records between others that do not count
  std::size_t wholeBytes = 0;             // of the records before the first damaged or torn one
  std::size_t endBytes = 0;               // up to the end of the last whole record
  JournalWriter writer;                   // for what follows that
};

Journal ReadJournal(std::string_view bytes);

}  // namespace ostrel::simulator
