// Journals of any bytes, damaged ones and such whose checksums are right: what is read can be
// written, and what is written can be read. An input that begins with character 30 holds the texts
// of records, to which their heads are added.
#include "simulator/Journal.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/fuzz/JournalBytes.h"

namespace ostrel::simulator {
namespace {

using fuzz::Require;

void WriteWhatWasRead(std::string whole, Journal journal) {
  for (const Changes& changes : journal.changes) whole += journal.writer.Changed(changes);
  const auto twice = ReadJournal(whole);
  Require(twice && twice->wholeBytes == whole.size(), "what is written can be read");
  Require(twice->changes.size() == 2 * journal.changes.size(), "every record counts");
  for (std::size_t i = 0; i < journal.changes.size(); ++i) {
    const Changes& reread = twice->changes[journal.changes.size() + i];
    Require(JournalWriter().Changed(reread) == JournalWriter().Changed(journal.changes[i]),
            "what is written says what was read");
  }
}

void TryJournal(std::string_view bytes) {
  const bool isFramed = bytes.starts_with('\x1e');
  const std::string journalBytes = isFramed ? fuzz::Framed(bytes.substr(1)) : std::string(bytes);
  const auto journal = ReadJournal(journalBytes);
  if (!journal) return;
  Require(journal->wholeBytes <= journalBytes.size(), "a journal ends within its file");
  Require(journal->continues || journal->wholeBytes == 0, "the first record names a company file");
  const std::string whole = journalBytes.substr(0, journal->wholeBytes);
  const auto again = ReadJournal(whole);
  Require(again && again->wholeBytes == whole.size(), "whole records stay whole");
  Require(again->changes.size() == journal->changes.size(), "whole records say the same");
  if (journal->continues) WriteWhatWasRead(whole, *journal);
}

const fuzz::Registered kTarget("journal", TryJournal);

}  // namespace
}  // namespace ostrel::simulator
