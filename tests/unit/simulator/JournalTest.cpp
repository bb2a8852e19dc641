#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "simulator/company/Journal.h"

namespace ostrel::simulator {
namespace {

const FileVersion kFile = {.bytes = 18052, .checksum = 0x1f3a9c04be7702d6};

Change Put(std::string name) {
  Element object{.name = "Customer"};
  object.Add("ListID", "80000001-1");
  object.Add("Name", name);
  return {.kind = FindKind("Customer"), .id = "80000001-1", .object = object};
}

Change Removal() {
  return {.kind = FindKind("Invoice"), .id = "2A-1262682187", .object = std::nullopt};
}

// A journal of three records.
std::string Sample() {
  JournalWriter writer;
  std::string bytes = writer.Continues(kFile);
  bytes += writer.Changed({Put("Zo\xC3\xAB & Sons")});
  bytes += writer.Changed({Removal(), Put("Last")});
  return bytes;
}

// A record as somebody else might write it.
std::string Record(const std::string& xml, std::uint64_t before) {
  const std::string size = std::to_string(xml.size());
  return "<?record " + std::string(9 - size.size(), '0') + size + ' ' +
         ChecksumText(Checksum(xml, before)) + "?>\n" + xml;
}

TEST(Journal, CanBeReadByPeople) {
  EXPECT_EQ(Sample().substr(0, Sample().find("<Removed")),
            "<?record 000000056 da1ba1813c687bce?>\n"
            "<Continues bytes=\"18052\" checksum=\"1f3a9c04be7702d6\" />\n"
            "<?record 000000113 a4874c71a9367dc8?>\n"
            "<Changes>\n"
            "  <Customer>\n"
            "    <ListID>80000001-1</ListID>\n"
            "    <Name>Zo\xC3\xAB &amp; Sons</Name>\n"
            "  </Customer>\n"
            "</Changes>\n"
            "<?record 000000150 8f097e7635c1e51f?>\n"
            "<Changes>\n"
            "  ");
}

TEST(Journal, HoldsWhatWasWritten) {
  const auto journal = ReadJournal(Sample());

  EXPECT_EQ(journal.continues, kFile);
  EXPECT_EQ(journal.foldedInto, std::nullopt);
  EXPECT_EQ(journal.wholeBytes, Sample().size());
  ASSERT_EQ(journal.changes.size(), 2u);
  EXPECT_EQ(journal.changes[0][0].object->ChildText("Name"), "Zo\xC3\xAB & Sons");
  EXPECT_EQ(journal.changes[0][0].id, "80000001-1");
  EXPECT_EQ(journal.changes[1][0].kind, FindKind("Invoice"));
  EXPECT_EQ(journal.changes[1][0].id, "2A-1262682187");
  EXPECT_FALSE(journal.changes[1][0].object);
}

TEST(Journal, GoesOnWhereItEnded) {
  auto journal = ReadJournal(Sample());

  const std::string longer = Sample() + journal.writer.Changed({Put("Later")});

  EXPECT_EQ(ReadJournal(longer).changes.size(), 3u);
}

TEST(Journal, TornAnywhereEndsWithItsLastWholeRecord) {
  const std::string bytes = Sample();
  JournalWriter writer;
  const std::size_t first = writer.Continues(kFile).size();
  const std::size_t second = first + writer.Changed({Put("Zo\xC3\xAB & Sons")}).size();

  for (std::size_t length = 0; length <= bytes.size(); ++length) {
    const auto journal = ReadJournal(std::string_view(bytes).substr(0, length));

    const std::size_t whole = length < first          ? 0
                              : length < second       ? first
                              : length < bytes.size() ? second
                                                      : length;
    EXPECT_EQ(journal.wholeBytes, whole) << length;
    EXPECT_EQ(journal.continues.has_value(), length >= first) << length;
  }
}

// The names that a journal adds, a word a record: "Zoë Last", and "-2" for a record left out.
std::string Told(const Journal& journal) {
  std::string told;
  for (std::size_t i = 0; i < journal.changes.size(); ++i) {
    for (const Change& change : journal.changes[i]) {
      if (change.object) told += std::string(change.object->ChildText("Name")) + ' ';
    }
  }
  for (const LeftOut& leftOut : journal.leftOut) {
    told += '-' + std::to_string(leftOut.record.number) + ' ';
  }
  return told;
}

TEST(Journal, DamagedAnywhereLosesTheDamagedRecordAlone) {
  JournalWriter writer;
  std::string bytes = writer.Continues(kFile);
  std::vector<std::size_t> begins;
  for (const char* name : {"one", "two", "three", "four"}) {
    begins.push_back(bytes.size());
    bytes += writer.Changed({Put(name)});
  }
  const std::size_t last = begins.back();
  for (std::size_t i = begins.front(); i < bytes.size(); ++i) {
    std::string damaged = bytes;
    damaged[i] = static_cast<char>(damaged[i] ^ 0x10);

    const Journal journal = ReadJournal(damaged);

    const bool inHead = std::ranges::any_of(
        begins, [&](std::size_t begin) { return i >= begin && i < begin + 38; });
    const std::string expected = i >= last        ? "one two three "
                                 : inHead         ? "one two three four "
                                 : i >= begins[2] ? "one two four -4 "
                                 : i >= begins[1] ? "one three four -3 "
                                                  : "two three four -2 ";
    EXPECT_EQ(Told(journal), expected) << i;
    EXPECT_LE(journal.wholeBytes, i) << i;
    EXPECT_EQ(journal.endBytes, i >= last ? last : bytes.size()) << i;
    const std::string longer =
        damaged.substr(0, journal.endBytes) + JournalWriter(journal.writer).Changed({Put("five")});
    EXPECT_NE(Told(ReadJournal(longer)).find("five"), std::string::npos) << i;
  }
}

TEST(Journal, LosesNothingBehindAStretchOfDamage) {
  JournalWriter writer;
  std::string bytes = writer.Continues(kFile);
  const std::size_t begin = bytes.size();
  for (const char* name : {"one", "two"}) bytes += writer.Changed({Put(name)});
  const std::size_t end = bytes.size();
  for (const char* name : {"three", "four"}) bytes += writer.Changed({Put(name)});
  std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(begin) + 10,
            bytes.begin() + static_cast<std::ptrdiff_t>(end) - 10, '\0');

  const Journal journal = ReadJournal(bytes);

  EXPECT_EQ(Told(journal), "three four -2 ");
  ASSERT_EQ(journal.places.size(), 2u);
  EXPECT_EQ(journal.places[0].position, end);
  EXPECT_EQ(journal.leftOut[0].record.position, begin);
  EXPECT_EQ(journal.leftOut[0].why, "is damaged");
}

TEST(Journal, CountsTheElementsOfItsRecords) {
  EXPECT_EQ(CountElements(Changes{Put("a")}), 4u);  // Changes, Customer, ListID, Name
  EXPECT_EQ(CountElements(Changes{Removal(), Put("a")}), 5u);
}

TEST(Journal, TakesNoRecordOfAnotherJournal) {
  JournalWriter other;
  std::string bytes = other.Continues({.bytes = 1, .checksum = 1});
  const std::string stranger = other.Changed({Put("Stranger")});

  const auto journal = ReadJournal(Sample() + stranger);

  EXPECT_EQ(journal.wholeBytes, Sample().size());
}

TEST(Journal, SaysIntoWhichFileItWasFoldedUntilItGoesOn) {
  JournalWriter writer;
  std::string bytes = writer.Continues(kFile);
  bytes += writer.Folded({.bytes = 5, .checksum = 6});
  EXPECT_EQ(ReadJournal(bytes).foldedInto, (FileVersion{.bytes = 5, .checksum = 6}));

  bytes += writer.Changed({Put("Jo")});

  EXPECT_EQ(ReadJournal(bytes).foldedInto, std::nullopt);
}

TEST(Journal, LeavesOutWhatNobodyUnderstandsAndNothingElse) {
  JournalWriter writer;
  const std::string start = writer.Continues(kFile);
  const std::uint64_t before = Checksum(start.substr(start.find('\n') + 1));
  EXPECT_EQ(Told(ReadJournal(start + Record("<Changes />", before))), "");

  const char* const half =
      "<Changes><Customer><ListID>1-1</ListID><Name>Half</Name></Customer>"
      "<Customer><Name>No ID</Name></Customer></Changes>";
  for (const char* xml : {"", "not XML", "<Strange />", "<Changes><Strange /></Changes>", half,
                          "<Changes><Removed kind='Strange' id='1-1' /></Changes>",
                          "<Changes><Removed kind='Customer' /></Changes>", "<Continues />"}) {
    const std::string bytes = start + Record(xml, before);
    const std::string longer = bytes + JournalWriter(Checksum(xml, before)).Changed({Put("next")});
    EXPECT_EQ(Told(ReadJournal(bytes)), "-2 ") << xml;
    EXPECT_EQ(Told(ReadJournal(longer)), "next -2 ") << xml;
    EXPECT_EQ(ReadJournal(longer).wholeBytes, longer.size()) << xml;
  }
  EXPECT_EQ(Told(ReadJournal(Record("<Changes />", 0))), "-1 ");
  EXPECT_EQ(ReadJournal(Record("<Changes />", 0)).continues, std::nullopt);
}

TEST(Journal, DoesNotTrustALengthThatLeadsBehindItsEnd) {
  EXPECT_EQ(ReadJournal("<?record 999999999 5f3e22a19b0c44d1?>\n<Changes />").wholeBytes, 0u);
  EXPECT_EQ(ReadJournal("<?record -00000001 5f3e22a19b0c44d1?>\n<Changes />").wholeBytes, 0u);
}

}  // namespace
}  // namespace ostrel::simulator
