// Journals of any bytes, damaged ones and such whose checksums are right: what is read can be
// written, and what is written can be read. An input that begins with character 30 holds the texts
// of records, to which their heads are added.
#include "simulator/company/Journal.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/fuzz/JournalBytes.h"

namespace ostrel::simulator {
namespace {

using fuzz::Require;

// A record behind a journal is read whatever is wrong with the records before.
void WriteWhatWasRead(std::string bytes, Journal journal) {
  for (const Changes& changes : journal.changes) bytes += journal.writer.Changed(changes);
  const Journal twice = ReadJournal(bytes);
  Require(twice.endBytes == bytes.size(), "what is written can be read");
  Require(twice.leftOut.size() == journal.leftOut.size(), "no record spoils another");
  Require(twice.changes.size() == 2 * journal.changes.size(), "every record counts");
  for (std::size_t i = 0; i < journal.changes.size(); ++i) {
    const Changes& reread = twice.changes[journal.changes.size() + i];
    Require(JournalWriter().Changed(reread) == JournalWriter().Changed(journal.changes[i]),
            "what is written says what was read");
  }
}

void TryJournal(std::string_view bytes) {
  const bool isFramed = bytes.starts_with('\x1e');
  const std::string file = isFramed ? fuzz::Framed(bytes.substr(1)) : std::string(bytes);
  const Journal journal = ReadJournal(file);
  Require(journal.wholeBytes <= journal.endBytes && journal.endBytes <= file.size(),
          "a journal ends within its file");
  Require(journal.places.size() == journal.changes.size(), "every record has its place");

  const std::string whole = file.substr(0, journal.wholeBytes);
  const Journal again = ReadJournal(whole);
  Require(again.wholeBytes == whole.size(), "whole records stay whole");
  if (again.continues) WriteWhatWasRead(whole, again);
  if (journal.continues) WriteWhatWasRead(file.substr(0, journal.endBytes), journal);
}

const fuzz::Registered kTarget("journal", TryJournal);

}  // namespace
}  // namespace ostrel::simulator
