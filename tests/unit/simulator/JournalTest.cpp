#include <gtest/gtest.h>

#include "simulator/Checksum.h"
#include "simulator/Journal.h"

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

  ASSERT_TRUE(journal);
  EXPECT_EQ(journal->continues, kFile);
  EXPECT_EQ(journal->foldedInto, std::nullopt);
  EXPECT_EQ(journal->wholeBytes, Sample().size());
  ASSERT_EQ(journal->changes.size(), 2u);
  EXPECT_EQ(journal->changes[0][0].object->ChildText("Name"), "Zo\xC3\xAB & Sons");
  EXPECT_EQ(journal->changes[0][0].id, "80000001-1");
  EXPECT_EQ(journal->changes[1][0].kind, FindKind("Invoice"));
  EXPECT_EQ(journal->changes[1][0].id, "2A-1262682187");
  EXPECT_FALSE(journal->changes[1][0].object);
}

TEST(Journal, GoesOnWhereItEnded) {
  auto journal = ReadJournal(Sample());

  const std::string longer = Sample() + journal->writer.Changed({Put("Later")});

  EXPECT_EQ(ReadJournal(longer)->changes.size(), 3u);
}

TEST(Journal, TornAnywhereEndsWithItsLastWholeRecord) {
  const std::string bytes = Sample();
  JournalWriter writer;
  const std::size_t first = writer.Continues(kFile).size();
  const std::size_t second = first + writer.Changed({Put("Zo\xC3\xAB & Sons")}).size();

  for (std::size_t length = 0; length <= bytes.size(); ++length) {
    const auto journal = ReadJournal(std::string_view(bytes).substr(0, length));

    ASSERT_TRUE(journal) << length;
    const std::size_t whole = length < first          ? 0
                              : length < second       ? first
                              : length < bytes.size() ? second
                                                      : length;
    EXPECT_EQ(journal->wholeBytes, whole) << length;
    EXPECT_EQ(journal->continues.has_value(), length >= first) << length;
  }
}

TEST(Journal, DamagedAnywhereEndsBeforeTheDamage) {
  const std::string bytes = Sample();
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    std::string damaged = bytes;
    damaged[i] = static_cast<char>(damaged[i] ^ 0x10);

    const auto journal = ReadJournal(damaged);

    ASSERT_TRUE(journal) << i;
    EXPECT_LE(journal->wholeBytes, i) << i;
  }
}

TEST(Journal, TakesNoRecordOfAnotherJournal) {
  JournalWriter other;
  std::string bytes = other.Continues({.bytes = 1, .checksum = 1});
  const std::string stranger = other.Changed({Put("Stranger")});

  const auto journal = ReadJournal(Sample() + stranger);

  EXPECT_EQ(journal->wholeBytes, Sample().size());
}

TEST(Journal, SaysIntoWhichFileItWasFoldedUntilItGoesOn) {
  JournalWriter writer;
  std::string bytes = writer.Continues(kFile);
  bytes += writer.Folded({.bytes = 5, .checksum = 6});
  EXPECT_EQ(ReadJournal(bytes)->foldedInto, (FileVersion{.bytes = 5, .checksum = 6}));

  bytes += writer.Changed({Put("Jo")});

  EXPECT_EQ(ReadJournal(bytes)->foldedInto, std::nullopt);
}

TEST(Journal, IsRefusedWhenARecordSaysWhatNobodyUnderstands) {
  JournalWriter writer;
  const std::string start = writer.Continues(kFile);
  const std::uint64_t before = Checksum(start.substr(start.find('\n') + 1));
  ASSERT_TRUE(ReadJournal(start + Record("<Changes />", before)));

  for (const char* xml : {"", "not XML", "<Strange />", "<Changes><Strange /></Changes>",
                          "<Changes><Customer><Name>No ID</Name></Customer></Changes>",
                          "<Changes><Removed kind='Strange' id='1-1' /></Changes>",
                          "<Changes><Removed kind='Customer' /></Changes>", "<Continues />"}) {
    EXPECT_FALSE(ReadJournal(start + Record(xml, before))) << xml;
  }
  EXPECT_FALSE(ReadJournal(Record("<Changes />", 0)));
}

TEST(Journal, DoesNotTrustALengthThatLeadsBehindItsEnd) {
  EXPECT_EQ(ReadJournal("<?record 999999999 5f3e22a19b0c44d1?>\n<Changes />")->wholeBytes, 0u);
  EXPECT_EQ(ReadJournal("<?record -00000001 5f3e22a19b0c44d1?>\n<Changes />")->wholeBytes, 0u);
}

}  // namespace
}  // namespace ostrel::simulator
