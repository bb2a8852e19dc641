#include <gtest/gtest.h>

#include "tests/support/RaisedError.h"
#include "util/CStringBuilder.h"

namespace ostrel {
namespace {

CStringBuilder Holding(TextView text) {
  CStringBuilder builder;
  builder.TheString(text);
  return builder;
}

TEST(CStringBuilder, IsEmptyWhenNew) {
  const CStringBuilder builder;

  EXPECT_EQ(builder.ChunkSize(), 8192);
  EXPECT_EQ(builder.Length(), 0);
  EXPECT_EQ(builder.Capacity(), 0);
  EXPECT_EQ(builder.ToString(), u"");
}

TEST(CStringBuilder, GrowsByOneChunkForTheFirstCharacter) {
  CStringBuilder builder;

  builder.Append(u"x");

  EXPECT_EQ(builder.Capacity(), 8192);
  EXPECT_EQ(builder.Length(), 1);
}

TEST(CStringBuilder, GrowsWhenTheChunkIsFullAndNotBefore) {
  CStringBuilder builder;

  builder.Append(Text(8192, u'x'));
  EXPECT_EQ(builder.Capacity(), 8192);

  builder.Append(u"y");
  EXPECT_EQ(builder.Capacity(), 16384);
}

TEST(CStringBuilder, GrowsByTheChunkSizeThatWasSet) {
  CStringBuilder builder;
  builder.ChunkSize(100);

  builder.Append(Text(60, u'x'));
  EXPECT_EQ(builder.Capacity(), 100);

  builder.Append(Text(60, u'x'));
  EXPECT_EQ(builder.Capacity(), 200);
}

TEST(CStringBuilder, GrowsByAsManyChunksAsOnePieceNeeds) {
  CStringBuilder builder;
  builder.ChunkSize(100);

  builder.Append(Text(950, u'x'));

  EXPECT_EQ(builder.Capacity(), 1000);
  EXPECT_EQ(builder.ToString(), Text(950, u'x'));
}

TEST(CStringBuilder, RefusesAChunkSizeThatCannotGrow) {
  CStringBuilder builder;

  EXPECT_EQ(ErrorOf([&] { builder.ChunkSize(0); }), 5);
  EXPECT_EQ(ErrorOf([&] { builder.ChunkSize(-1); }), 5);
  EXPECT_EQ(ErrorOf([&] { builder.ChunkSize(0x40000000); }), 5);
  EXPECT_EQ(builder.ChunkSize(), 8192);
}

TEST(CStringBuilder, AppendsInOrder) {
  CStringBuilder builder;

  builder.Append(u"one ");
  builder.AppendByVal(u"two");
  builder.AppendBlanks(2);
  builder.Append(u"three");

  EXPECT_EQ(builder.ToString(), u"one two  three");
}

TEST(CStringBuilder, AppendsNothingForAnEmptyText) {
  CStringBuilder builder;

  builder.Append(u"");
  builder.AppendBlanks(0);

  EXPECT_EQ(builder.Length(), 0);
  EXPECT_EQ(builder.Capacity(), 0);
}

TEST(CStringBuilder, HandsItsTextOverAndIsEmptyThen) {
  CStringBuilder builder = Holding(u"text");

  EXPECT_EQ(std::move(builder).ToString(), u"text");

  EXPECT_EQ(builder.Length(), 0);  // NOLINT(bugprone-use-after-move): this is what is tested
  EXPECT_EQ(builder.Capacity(), 0);
}

TEST(CStringBuilder, ReplacesItsContentsAndKeepsItsSpace) {
  CStringBuilder builder;
  builder.Append(Text(10000, u'x'));

  builder.TheString(u"new");

  EXPECT_EQ(builder.ToString(), u"new");
  EXPECT_EQ(builder.Length(), 3);
  EXPECT_EQ(builder.Capacity(), 16384);
}

TEST(CStringBuilder, GivesAllSpaceBackForAnEmptyString) {
  CStringBuilder builder = Holding(u"text");

  builder.TheString(u"");

  EXPECT_EQ(builder.Length(), 0);
  EXPECT_EQ(builder.Capacity(), 0);
  EXPECT_EQ(builder.ToString(), u"");
}

TEST(CStringBuilder, InsertsBeforeThePosition) {
  CStringBuilder builder = Holding(u"bd");

  builder.Insert(0, u"a");
  builder.InsertByVal(2, u"c");
  builder.Insert(4, u"e");

  EXPECT_EQ(builder.ToString(), u"abcde");
}

TEST(CStringBuilder, GrowsForAnInsertionAsForAnAddition) {
  CStringBuilder builder;
  builder.ChunkSize(10);
  builder.Append(u"ad");

  builder.Insert(1, Text(25, u'b'));

  EXPECT_EQ(builder.ToString(), u"a" + Text(25, u'b') + u"d");
  EXPECT_EQ(builder.Capacity(), 30);
}

TEST(CStringBuilder, RefusesToInsertOutsideItsText) {
  CStringBuilder builder = Holding(u"abc");

  EXPECT_EQ(ErrorOf([&] { builder.Insert(4, u"x"); }), 9);
  EXPECT_EQ(ErrorOf([&] { builder.Insert(-1, u"x"); }), 9);
  EXPECT_EQ(builder.ToString(), u"abc");
}

TEST(CStringBuilder, RemovesCharacters) {
  CStringBuilder builder = Holding(u"abcdef");

  builder.Remove(1, 2);

  EXPECT_EQ(builder.ToString(), u"adef");
  EXPECT_EQ(builder.Length(), 4);
  EXPECT_EQ(builder.Capacity(), 8192);
}

TEST(CStringBuilder, RemovesItsFirstCharacters) {
  CStringBuilder builder = Holding(u"abc");

  builder.Remove(0, 0);
  builder.Remove(0, 2);

  EXPECT_EQ(builder.ToString(), u"c");
}

TEST(CStringBuilder, RemovesNoMoreThanThereIs) {
  CStringBuilder builder = Holding(u"abc");

  builder.Remove(2, 100);
  EXPECT_EQ(builder.ToString(), u"ab");

  builder.Remove(2, 1);
  EXPECT_EQ(builder.ToString(), u"ab");
}

TEST(CStringBuilder, RefusesToRemoveOutsideItsText) {
  CStringBuilder builder = Holding(u"abc");

  EXPECT_EQ(ErrorOf([&] { builder.Remove(4, 1); }), 9);
  EXPECT_EQ(ErrorOf([&] { builder.Remove(-1, 1); }), 9);
  EXPECT_EQ(ErrorOf([&] { builder.Remove(0, -1); }), 9);
  EXPECT_EQ(builder.ToString(), u"abc");
}

TEST(CStringBuilder, FindsFromAPositionOn) {
  const CStringBuilder builder = Holding(u"abcabc");

  EXPECT_EQ(builder.Find(u"bc"), 1);
  EXPECT_EQ(builder.Find(u"bc", 1), 1);
  EXPECT_EQ(builder.Find(u"bc", 2), 4);
  EXPECT_EQ(builder.Find(u"bc", 5), -1);
}

TEST(CStringBuilder, FindsIgnoringCaseOnlyWhenAsked) {
  const CStringBuilder builder = Holding(u"xAbC\u00C4");

  EXPECT_EQ(builder.Find(u"abc"), -1);
  EXPECT_EQ(builder.Find(u"aBc\u00E4", 0, CStringBuilder::Compare::kText), 1);
}

TEST(CStringBuilder, FindsAnEmptyTextWhereItStarts) {
  const CStringBuilder builder = Holding(u"abc");

  EXPECT_EQ(builder.Find(u"", 3), 3);
}

TEST(CStringBuilder, RefusesToFindOutsideItsText) {
  const CStringBuilder builder = Holding(u"abc");

  EXPECT_EQ(ErrorOf([&] { builder.Find(u"a", -1); }), 9);
  EXPECT_EQ(ErrorOf([&] { builder.Find(u"a", 4); }), 9);
}

TEST(CStringBuilder, GivesWholeUnusedChunksBack) {
  CStringBuilder builder;
  builder.ChunkSize(100);
  builder.Append(Text(350, u'x'));
  builder.Remove(150, 200);

  builder.HeapMinimize();

  EXPECT_EQ(builder.Capacity(), 200);
  EXPECT_EQ(builder.ToString(), Text(150, u'x'));
}

TEST(CStringBuilder, KeepsOneUnusedChunk) {
  CStringBuilder builder;
  builder.ChunkSize(100);
  builder.Append(Text(200, u'x'));
  builder.Remove(100, 100);

  builder.HeapMinimize();

  EXPECT_EQ(builder.Capacity(), 200);
}

TEST(CStringBuilder, AppendsManySmallPiecesToALongText) {
  CStringBuilder builder;
  builder.ChunkSize(1);

  for (int i = 0; i < 1'000'000; ++i) builder.Append(u"ab");

  EXPECT_EQ(builder.Length(), 2'000'000);
  EXPECT_EQ(builder.Capacity(), 2'000'000);
}

}  // namespace
}  // namespace ostrel
