#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/FileSystem.h"
#include "platform/Files.h"
#include "platform/SystemError.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/doubles/FakeTrace.h"
#include "transports/ResponseFolder.h"

namespace ostrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kGatewayEnded =
    "ERROR 58\r\nthe gateway ended while this request was in work; it may have been carried "
    "out\r\n";

class ResponseFolderTest : public testing::Test {
 protected:
  ResponseFolderTest() {
    Folder.MakeFolder(u"p");
    Folder.MakeFolder(u"r");
    Settings.sProcessPath = Folder.Path(u"p");
    Settings.sResponsePath = Folder.Path(u"r");
  }

  void Left(TextView name, std::string_view content) const {
    Folder.Write(Text(u"r/").append(name), content);
  }
  std::string Read(TextView name) const { return Folder.Read(Text(u"r/").append(name)); }
  std::vector<Text> Names() const { return platform::ListFiles(Settings.sResponsePath, u"*"); }
  void Remove(TextView name) const {
    std::filesystem::remove_all(std::filesystem::path(Folder.Path()) / name);
  }

  // A finished response whose place is in use.
  void LetWait(TextView name) {
    Folder.MakeFolder(Text(u"r/").append(name));
    auto response = Responses.FileFor(name);
    ASSERT_EQ(platform::KindOf(response->Path()), platform::EntryKind::kFolder);
    response->WriteError(1, u"finished");
    response->Owe();
    Responses.Place(std::move(response));
  }

  ScratchFolder Folder;
  TransportSettings Settings;
  doubles::FakeTrace Trace;
  ResponseFolder Responses{Settings, Trace};
};

TEST_F(ResponseFolderTest, FindsNothingInACleanFolder) {
  Left(u"a.osl", "a response that nobody has read");

  Responses.SettleLeftovers();

  EXPECT_THAT(Names(), ElementsAre(u"a.osl"));
  EXPECT_EQ(Read(u"a.osl"), "a response that nobody has read");
  EXPECT_THAT(Trace.Status, IsEmpty());
}

TEST_F(ResponseFolderTest, FindsNothingWithoutAFolder) {
  Settings.sResponsePath = Folder.Path(u"missing");

  Responses.SettleLeftovers();

  EXPECT_THAT(Trace.Status, IsEmpty());
}

// Killed after it had reserved the response, before it deleted the request.
TEST_F(ResponseFolderTest, DropsWhatWasReservedForARequestThatIsStillThere) {
  Folder.Write(u"p/a.osl", "request");
  Left(u"a.osl.part", "    ");

  Responses.SettleLeftovers();

  EXPECT_THAT(Names(), IsEmpty());
  EXPECT_TRUE(Folder.Has(u"p/a.osl"));
  EXPECT_THAT(Trace.Status, IsEmpty());
}

// Killed after it had deleted the request.
TEST_F(ResponseFolderTest, RespondsToARequestThatWasInWorkWithAnError) {
  Left(u"Order.OSL.part", "    half a response");
  Left(u"Order.OSL", "an older response");

  Responses.SettleLeftovers();

  EXPECT_THAT(Names(), ElementsAre(u"Order.OSL"));
  EXPECT_EQ(Read(u"Order.OSL"), kGatewayEnded);
  EXPECT_THAT(Trace.Status, ElementsAre(u"Request file Order.OSL was in work when the gateway "
                                        u"ended; it may have been carried out"));
}

TEST_F(ResponseFolderTest, TellsWhenARequestThatWasInWorkCannotGetItsError) {
  Folder.MakeFolder(u"r/a.osl.note");
  Left(u"a.osl.part", "    ");

  Responses.SettleLeftovers();

  ASSERT_EQ(Trace.Status.size(), 1u);
  EXPECT_TRUE(
      Trace.Status[0].starts_with(u"Request file a.osl was in work when the gateway ended; "
                                  u"its response cannot be written: "));
  EXPECT_THAT(Names(), ElementsAre(u"a.osl.part"));
}

// Killed while a finished response waited for its place.
TEST_F(ResponseFolderTest, PutsAFinishedResponseInPlaceAsItIs) {
  Left(u"a.osl.done", "<A/>\r\n");

  Responses.SettleLeftovers();

  EXPECT_THAT(Names(), ElementsAre(u"a.osl"));
  EXPECT_EQ(Read(u"a.osl"), "<A/>\r\n");
  EXPECT_THAT(Trace.Status, IsEmpty());
}

TEST_F(ResponseFolderTest, PutsAFinishedResponseInPlaceOnceThatIsFree) {
  Left(u"a.osl.done", "<A/>\r\n");
  Folder.MakeFolder(u"r/a.osl");
  Responses.SettleLeftovers();
  const bool waited = Responses.IsWaiting(u"a.osl");
  Remove(u"r/a.osl");

  Responses.PlaceWaiting();

  EXPECT_TRUE(waited);
  EXPECT_FALSE(Responses.IsWaiting(u"a.osl"));
  EXPECT_EQ(Read(u"a.osl"), "<A/>\r\n");
}

// Killed while it wrote a notice.
TEST_F(ResponseFolderTest, DropsAHalfNotice) {
  Left(u"a.osl.note", "ERROR 9");

  Responses.SettleLeftovers();

  EXPECT_THAT(Names(), IsEmpty());
}

// Killed while it wrote that the gateway had ended.
TEST_F(ResponseFolderTest, RespondsToARequestThatWasInWorkWhereItWasAboutToBefore) {
  Left(u"a.osl.part", "    ");
  Left(u"a.osl.note", "ERROR 5");

  Responses.SettleLeftovers();

  EXPECT_THAT(Names(), ElementsAre(u"a.osl"));
  EXPECT_EQ(Read(u"a.osl"), kGatewayEnded);
}

TEST_F(ResponseFolderTest, TheErrorOfARequestThatWasInWorkWaitsForItsPlaceToo) {
  Left(u"a.osl.part", "    ");
  Folder.MakeFolder(u"r/a.osl");

  Responses.SettleLeftovers();

  EXPECT_EQ(Read(u"a.osl.done"), kGatewayEnded);
  EXPECT_TRUE(Responses.IsWaiting(u"a.osl"));
}

TEST_F(ResponseFolderTest, LeavesWhatAnotherGatewayHasInWork) {
  Left(u"a.osl.part", "    ");
  Left(u"b.osl.note", "    ");
  platform::File reserved, notice;
  for (auto& [file, name] : {std::pair(&reserved, u"a.osl.part"), {&notice, u"b.osl.note"}}) {
    ASSERT_EQ(file->Open(Settings.sResponsePath + u"\\" + name, platform::FileAccess::kWrite,
                         platform::FileCreation::kOpenExisting),
              0);
  }

  Responses.SettleLeftovers();

  EXPECT_THAT(Names(), ElementsAre(u"a.osl.part", u"b.osl.note"));
}

TEST_F(ResponseFolderTest, LeavesWhatItHasItself) {
  LetWait(u"a.osl");
  auto inWork = Responses.FileFor(u"b.osl");
  ASSERT_EQ(inWork->Reserve(), 0);

  Responses.SettleLeftovers();

  EXPECT_TRUE(Folder.Has(u"r/a.osl.done") && Folder.Has(u"r/b.osl.part"));
}

TEST_F(ResponseFolderTest, LeavesWhatMayStillHaveItsRequest) {
  Remove(u"p");
  Left(u"a.osl.part", "    ");
  Left(u"b.osl.done", "<B/>");

  Responses.SettleLeftovers();

  EXPECT_THAT(Names(), ElementsAre(u"a.osl.part", u"b.osl"));
}

TEST_F(ResponseFolderTest, LeavesFilesOfOtherNames) {
  const std::vector<Text> names = {u"a.osp", u"a.txt.done", u"a.txt.part", u"b.osd",
                                   u"note",  u"osl.part",   u"part"};
  for (const Text& name : names) Left(name, "not ours");

  Responses.SettleLeftovers();

  EXPECT_THAT(Names(), testing::ElementsAreArray(names));
}

TEST_F(ResponseFolderTest, LeavesLinks) {
  Folder.Write(u"secret", "secret");
  const bool areMade = Folder.MakeLink(u"../secret", u"r/a.osl.part") &&
                       Folder.MakeLink(u"../secret", u"r/b.osl.note");
  if (!areMade) return;  // Wine makes no links

  Responses.SettleLeftovers();

  EXPECT_EQ(Folder.Read(u"secret"), "secret");
  EXPECT_THAT(Names(), ElementsAre(u"a.osl.part", u"b.osl.note"));
}

// There is no room for the usual endings behind these names.
TEST_F(ResponseFolderTest, SettlesTheLongestNames) {
  const Text stem(251, u'n');
  Left(stem + u".osp", "    ");
  Left(stem + u".oSN", "    ");
  Left(Text(249, u'm') + u".OSD", "<M/>");
  Left(Text(250, u'o') + u".OSP", "    ");

  Responses.SettleLeftovers();

  EXPECT_THAT(Names(),
              ElementsAre(Text(249, u'm') + u".OSL", stem + u".osl", Text(250, u'o') + u".OSL"));
  EXPECT_EQ(Read(stem + u".osl"), kGatewayEnded);
  EXPECT_EQ(Read(Text(249, u'm') + u".OSL"), "<M/>");
}

TEST_F(ResponseFolderTest, ToldOnceThatAResponseWaits) {
  LetWait(u"a.osl");

  Responses.PlaceWaiting();
  Responses.PlaceWaiting();

  EXPECT_THAT(Trace.Status, testing::SizeIs(1));
  EXPECT_EQ(Read(u"a.osl.done"), "ERROR 1\r\nfinished\r\n");
}

TEST_F(ResponseFolderTest, AWaitingResponseCountsForItsOwnNameOnly) {
  LetWait(u"a.osl");

  EXPECT_TRUE(Responses.IsWaiting(u"a.osl"));
  EXPECT_FALSE(Responses.IsWaiting(u"b.osl"));
  EXPECT_EQ(Responses.IsWaiting(u"A.osl"), platform::IsSameName(u"a", u"A"));
}

TEST_F(ResponseFolderTest, PlacesEachThatWaits) {
  LetWait(u"a.osl");
  LetWait(u"b.osl");
  Remove(u"r/b.osl");

  Responses.PlaceWaiting();

  EXPECT_TRUE(Responses.IsWaiting(u"a.osl"));
  EXPECT_EQ(Read(u"b.osl"), "ERROR 1\r\nfinished\r\n");
}

TEST_F(ResponseFolderTest, WritesANoticeWhole) {
  Left(u"a.osl", "an older and longer response");

  Responses.WriteNotice(u"a.osl", 99, u"Loading Quickbooks");

  EXPECT_THAT(Names(), ElementsAre(u"a.osl"));
  EXPECT_EQ(Read(u"a.osl"), "ERROR 99\r\nLoading Quickbooks\r\n");
}

TEST_F(ResponseFolderTest, ANoticeGivesWayToAFinishedResponse) {
  LetWait(u"a.osl");
  Remove(u"r/a.osl");

  Responses.WriteNotice(u"a.osl", 99, u"Loading Quickbooks");

  EXPECT_THAT(Names(), ElementsAre(u"a.osl.done"));
}

TEST_F(ResponseFolderTest, ANoticeDoesNotTouchWhatIsReserved) {
  auto inWork = Responses.FileFor(u"a.osl");
  ASSERT_EQ(inWork->Reserve(), 0);

  Responses.WriteNotice(u"a.osl", 99, u"Loading Quickbooks");

  EXPECT_THAT(Names(), ElementsAre(u"a.osl", u"a.osl.part"));
}

TEST_F(ResponseFolderTest, ANoticeDoesNotReplaceALink) {
  Folder.Write(u"secret", "secret");
  if (!Folder.MakeLink(u"../secret", u"r/a.osl")) return;  // Wine makes no links

  Responses.WriteNotice(u"a.osl", 99, u"Loading Quickbooks");

  EXPECT_EQ(Read(u"a.osl"), "secret");
  EXPECT_THAT(Names(), ElementsAre(u"a.osl"));
}

TEST_F(ResponseFolderTest, WhatWasReservedGoesWhenItIsNotNeeded) {
  Responses.FileFor(u"a.osl")->Reserve();

  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(ResponseFolderTest, AReservationHasRoomForAnError) {
  auto response = Responses.FileFor(u"a.osl");

  ASSERT_EQ(response->Reserve(), 0);

  // Looked at from outside: nobody else can open it.
  const auto path = std::filesystem::path(Folder.Path()) / "r" / "a.osl.part";
  EXPECT_EQ(std::filesystem::file_size(path), 4096u);
}

TEST_F(ResponseFolderTest, WhatSomebodyLinkedToIsNotWrittenTo) {
  Folder.Write(u"secret", "secret");
  std::error_code error;
  const std::filesystem::path folder = Folder.Path();
  std::filesystem::create_hard_link(folder / "secret", folder / "r" / "a.osl.part", error);
  if (error) return;  // Wine makes no links
  auto response = Responses.FileFor(u"a.osl");

  EXPECT_EQ(response->Reserve(), 0);

  EXPECT_EQ(Folder.Read(u"secret"), "secret");
}

}  // namespace
}  // namespace ostrel
