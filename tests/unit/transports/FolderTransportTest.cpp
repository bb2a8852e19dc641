#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <utility>

#include "platform/Files.h"
#include "platform/SystemError.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/TextBudgetLimit.h"
#include "tests/support/TextMatchers.h"
#include "tests/unit/doubles/FakeFolderNotification.h"
#include "tests/unit/doubles/FakeTrace.h"
#include "transports/FolderTransport.h"

namespace ostrel {
namespace {

using doubles::FakeFolderNotification;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::Eq;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using WaitResult = platform::FolderNotification::WaitResult;

// A file that another program has open.
class HeldOpen {
 public:
  explicit HeldOpen(const Text& path) {
    EXPECT_EQ(
        oFile.Open(path, platform::FileAccess::kReadWrite, platform::FileCreation::kOpenAlways), 0);
  }

 private:
  platform::File oFile;
};

class FolderTransportTest : public testing::Test {
 protected:
  FolderTransportTest() {
    Folder.MakeFolder(u"p");
    Folder.MakeFolder(u"r");
    Settings.sProcessPath = Folder.Path(u"p");
    Settings.sResponsePath = Folder.Path(u"r");
    Transport.ProcessList.SetFolder(Settings.sProcessPath, u"*.osl");
    Transport.DoEvents = [this] {
      ++iEventRounds;
      if (BetweenFiles) BetweenFiles();
    };
  }

  void Ask(TextView name, std::string_view bytes = "request\r\n") const {
    Folder.Write(Text(u"p/").append(name), bytes);
  }
  void AskMany(int count) const {
    for (int i = 10; i < 10 + count; ++i) Ask(ToText(std::int64_t{i}) + u".osl");
  }
  std::string Response(TextView name) const { return Folder.Read(Text(u"r/").append(name)); }
  bool HasResponse(TextView name) const { return Folder.Has(Text(u"r/").append(name)); }
  std::size_t Waiting() const { return EntriesIn(u"p"); }
  std::size_t Responses() const { return EntriesIn(u"r"); }
  std::size_t EntriesIn(TextView name) const {
    const std::filesystem::directory_iterator entries(std::filesystem::path(Folder.Path()) / name);
    return static_cast<std::size_t>(std::distance(entries, {}));
  }
  void Remove(TextView name) const {
    std::error_code ignored;  // Windows keeps a folder in which a file is open
    std::filesystem::remove_all(std::filesystem::path(Folder.Path()) / name, ignored);
  }

  void Scan() { Transport.ScanProcessFolder(Settings.sProcessPath); }
  // Watches for as long as there are steps; the watch then ends as at the end of the program.
  void Watch(std::vector<FakeFolderNotification::Step> steps = {}) {
    Steps.assign(steps.begin(), steps.end());
    Transport.tmrProcess_Timer();
  }
  static FakeFolderNotification::Step During(std::function<void()> event) {
    return {.during = std::move(event)};
  }
  static FakeFolderNotification::Step Changed() {
    return {.result = WaitResult::kChanged, .during = {}};
  }

  float Process(Text& request, Text& response) {
    Requests.push_back(request);
    if (DuringRequest) DuringRequest();
    response = sResponse;
    return fResult;
  }

  std::shared_ptr<clsWatchFolder> CreateWatcher() {
    ++iWatchers;
    auto notification = std::make_unique<FakeFolderNotification>();
    notification->Steps = std::exchange(Steps, {});
    notification->OpenErrors = OpenErrors;
    Notification = notification.get();
    auto watcher = std::make_shared<clsWatchFolder>(std::move(notification));
    watcher->FolderChanged = [this](TextView folder) { Transport.ScanProcessFolder(folder); };
    watcher->ShowMessage = [this](TextView text) { Messages.emplace_back(text); };
    return watcher;
  }

  ScratchFolder Folder;
  TransportSettings Settings;
  doubles::FakeTrace Trace;
  RequestGate Gate;
  std::deque<FakeFolderNotification::Step> Steps;  // of the next watcher
  std::deque<int> OpenErrors;
  std::vector<Text> Messages;
  int iWatchers = 0;
  FakeFolderNotification* Notification = nullptr;  // of the watcher, while it lives

  std::vector<Text> Requests;
  std::function<void()> DuringRequest, BetweenFiles;
  Text sResponse = u"<A></A>";
  float fResult = 0;
  int iEventRounds = 0;

  FolderTransport Transport{
      Settings, Trace, Gate,
      [this](Text& request, Text& response) { return Process(request, response); },
      [this] { return CreateWatcher(); }};
};

TEST_F(FolderTransportTest, ServesARequestUnderItsName) {
  Ask(u"One.osl", "<Q/>\r\n");

  Scan();

  EXPECT_THAT(Requests, ElementsAre(u"<Q/>\r\n"));
  EXPECT_EQ(Response(u"One.osl"), "<A></A>\r\n");
  EXPECT_EQ(Waiting(), 0u);
  EXPECT_EQ(Responses(), 1u);
}

TEST_F(FolderTransportTest, TracesEachStep) {
  Ask(u"a.osl");

  Scan();

  const Text& process = Settings.sProcessPath;
  EXPECT_THAT(Trace.CommLog,
              ElementsAre(u"Folder Watched\tChanged " + process,
                          u"Folder Watched\tRead " + process + u"\\a.osl",
                          u"Folder Watched\tWrite " + Settings.sResponsePath + u"\\a.osl"));
  EXPECT_THAT(Trace.Status, IsEmpty());
}

TEST_F(FolderTransportTest, TracesAnEmptyFolderAndWritesNothing) {
  Scan();

  EXPECT_THAT(Trace.CommLog, ElementsAre(u"Folder Watched\tChanged " + Settings.sProcessPath,
                                         u"Folder Watched\tNo *.osl files found"));
  EXPECT_EQ(Responses(), 0u);
}

TEST_F(FolderTransportTest, HandsOnLinesThatAllEndInCrLf) {
  Ask(u"a.osl", "one\r\ntwo");
  Ask(u"c.osl", "one\ntwo\rthree\r\n\r\n\nfour\n");
  Scan();
  Scan();

  EXPECT_THAT(Requests, ElementsAre(u"one\r\ntwo\r\n", u"one\r\ntwo\r\nthree\r\n\r\n\r\nfour\r\n"));
}

TEST_F(FolderTransportTest, BeginsWithAnEmptyLineWhereTheFileBeginsWithItsEnd) {
  for (const std::string_view lineEnd : {"\n", "\r", "\r\n"}) {
    Ask(u"a.osl", std::string(lineEnd) + "one");
    Scan();
  }

  EXPECT_THAT(Requests, Each(Eq(u"\r\none\r\n")));
  EXPECT_THAT(Requests, SizeIs(3));
}

TEST_F(FolderTransportTest, TakesAnEmptyFileForOneEmptyLine) {
  Ask(u"a.osl", "");

  Scan();

  EXPECT_THAT(Requests, ElementsAre(u"\r\n"));
  EXPECT_TRUE(HasResponse(u"a.osl"));
}

// The file is read in pieces of 64 KB.
TEST_F(FolderTransportTest, KeepsALineBreakThatTwoPiecesShare) {
  const std::string line(0xFFFF, 'x');
  Ask(u"a.osl", line + "\r\nnext\r\n");

  Scan();

  EXPECT_THAT(Requests, ElementsAre(Text(0xFFFF, u'x') + u"\r\nnext\r\n"));
}

TEST_F(FolderTransportTest, ReadsTheCodePageAndUtf16) {
  Ask(u"a.osl", "\xE4\xFE\r\n");
  Ask(u"b.osl", std::string("\xFF\xFE\xE4\0\x0A\x4E\r\0\n\0", 10));

  Scan();
  Scan();

  EXPECT_THAT(Requests, ElementsAre(u"\u00E4\u00FE\r\n", u"\u00E4\u4E0A\r\n"));
}

TEST_F(FolderTransportTest, RespondsToAFailureWithCodeAndText) {
  fResult = 1024;
  sResponse = u"as <QuickBooks> says";
  Ask(u"a.osl");

  Scan();

  EXPECT_EQ(Response(u"a.osl"), "ERROR 1024\r\nas <QuickBooks> says\r\n");
}

TEST_F(FolderTransportTest, WritesTheCodeInItsShortestForm) {
  fResult = 0.5F;
  Ask(u"a.osl");

  Scan();

  EXPECT_THAT(Response(u"a.osl"), BeginsWith("ERROR 0.5\r\n"));
}

TEST_F(FolderTransportTest, TakesAResultBelowZeroForSuccess) {
  fResult = -1;
  Ask(u"a.osl");

  Scan();

  EXPECT_EQ(Response(u"a.osl"), "<A></A>\r\n");
}

TEST_F(FolderTransportTest, ReplacesTheResponseOfAnEarlierRequest) {
  Folder.Write(u"r/a.osl", std::string(10000, 'x'));
  Folder.Write(u"r/a.osl.part", std::string(10000, 'y'));
  Ask(u"a.osl");

  Scan();

  EXPECT_EQ(Response(u"a.osl"), "<A></A>\r\n");
  EXPECT_EQ(Responses(), 1u);
}

TEST_F(FolderTransportTest, TakesOnlyFilesOfThePattern) {
  Folder.MakeFolder(u"p/folder.osl");
  Ask(u"a.osl.part");
  Ask(u"a.txt");
  Ask(u"B.OSL");

  Scan();

  EXPECT_THAT(Requests, SizeIs(1));
  EXPECT_TRUE(HasResponse(u"B.OSL"));
  EXPECT_EQ(Waiting(), 3u);
}

TEST_F(FolderTransportTest, DeletesTheRequestBeforeItIsProcessed) {
  std::size_t waiting = 99;
  DuringRequest = [&] { waiting = Waiting(); };
  Ask(u"a.osl");

  Scan();

  EXPECT_EQ(waiting, 0u);
}

TEST_F(FolderTransportTest, ShowsNoResponseBeforeItIsWhole) {
  bool seen = true;
  DuringRequest = [&] { seen = HasResponse(u"a.osl"); };
  Ask(u"a.osl");

  Scan();

  EXPECT_FALSE(seen);
  EXPECT_TRUE(HasResponse(u"a.osl"));
}

// Kept: count and index of the first listing stay while the list shrinks.
TEST_F(FolderTransportTest, LeavesEveryOtherFileToTheNextScan) {
  AskMany(5);

  Scan();
  const bool every = HasResponse(u"10.osl") && HasResponse(u"12.osl") && HasResponse(u"14.osl");
  const std::size_t first = Responses();
  Scan();
  Scan();

  EXPECT_TRUE(every);
  EXPECT_EQ(first, 3u);
  EXPECT_EQ(Responses(), 5u);
  EXPECT_THAT(Requests, SizeIs(5));
}

TEST_F(FolderTransportTest, PassesOverAnIndexBeyondTheList) {
  AskMany(5);
  Transport.DeleteRequest = [this](RequestFile& file) {
    const int error = file.Delete();
    Remove(u"p");
    Folder.MakeFolder(u"p");
    return error;
  };

  Scan();

  EXPECT_THAT(Requests, SizeIs(1));
  EXPECT_THAT(Trace.Status, IsEmpty());
}

TEST_F(FolderTransportTest, PassesOverAFileThatHasGone) {
  AskMany(5);
  DuringRequest = [this] {
    Remove(u"p");
    Folder.MakeFolder(u"p");
  };

  Scan();

  EXPECT_THAT(Requests, SizeIs(1));
  EXPECT_THAT(Trace.Status, IsEmpty());
}

TEST_F(FolderTransportTest, LetsOthersHaveTheirTurnBetweenFiles) {
  AskMany(5);
  bool busy = true;
  BetweenFiles = [&] { busy = Gate.IsBusy(); };

  Scan();

  EXPECT_EQ(iEventRounds, 3);
  EXPECT_FALSE(busy);
}

TEST_F(FolderTransportTest, HoldsTheGateWhileARequestIsInWork) {
  bool busy = false;
  DuringRequest = [&] { busy = Gate.IsBusy(); };
  Ask(u"a.osl");

  Scan();

  EXPECT_TRUE(busy);
}

TEST_F(FolderTransportTest, TakesNothingWhileAnotherRequestIsInWork) {
  Ask(u"a.osl");
  const auto pass = Gate.TryEnter();

  Scan();

  EXPECT_EQ(Waiting(), 1u);
  EXPECT_EQ(Responses(), 0u);
}

TEST_F(FolderTransportTest, EndsTheScanWhenAnotherRequestComesBetween) {
  AskMany(4);
  std::optional<RequestGate::Pass> other;
  BetweenFiles = [&] { other.emplace(Gate.TryEnter().value()); };

  Scan();

  EXPECT_THAT(Requests, SizeIs(1));
}

TEST_F(FolderTransportTest, DoesNotScanInsideAScan) {
  AskMany(4);
  DuringRequest = [this] { Scan(); };
  BetweenFiles = [this] { Scan(); };

  Scan();

  EXPECT_THAT(Requests, SizeIs(2));
  EXPECT_THAT(Trace.CommLog, SizeIs(5));
}

TEST_F(FolderTransportTest, EmptiesTheStatusFileBeforeTheFirstFileOfAScan) {
  Ask(u"a.osl");
  DuringRequest = [this] { EXPECT_THAT(Trace.StatusFiles, ElementsAre(u"")); };
  Scan();

  Scan();

  EXPECT_THAT(Trace.StatusFiles, SizeIs(1));
}

// Files that cannot be taken.

TEST_F(FolderTransportTest, SaysNothingOfAWriterThatEndsBeforeTheNextLook) {
  Ask(u"a.osl");
  auto writer = std::make_optional<HeldOpen>(Folder.Path(u"p\\a.osl"));
  Watch({During([&] {
           Scan();
           writer.reset();
         }),
         Changed()});

  EXPECT_THAT(Trace.Status, ElementsAre(u"Watching Folder: " + Settings.sProcessPath));
  EXPECT_TRUE(HasResponse(u"a.osl"));
}

TEST_F(FolderTransportTest, LeavesALockedFileAndTellsOfItOnce) {
  Ask(u"a.osl");
  const HeldOpen writer(Folder.Path(u"p\\a.osl"));
  Watch({During([this] {
           Scan();
           Transport.LookAgain();
         }),
         Changed()});

  EXPECT_THAT(Trace.Status,
              ElementsAre(u"Watching Folder: " + Settings.sProcessPath,
                          u"Request file a.osl waits: it cannot be read: " +
                              platform::SystemErrorText(platform::kSharingViolation)));
  EXPECT_THAT(Requests, IsEmpty());
  EXPECT_EQ(Waiting(), 1u);
  EXPECT_EQ(Responses(), 0u);
}

TEST_F(FolderTransportTest, TakesALockedFileAtTheLookAfterItsRelease) {
  Ask(u"a.osl");
  auto writer = std::make_optional<HeldOpen>(Folder.Path(u"p\\a.osl"));
  Watch({During([&] {
    writer.reset();
    Trace.CommLog.clear();
    Transport.LookAgain();
  })});

  EXPECT_TRUE(HasResponse(u"a.osl"));
  EXPECT_THAT(Trace.CommLog,
              ElementsAre(u"Folder Watched\tRead " + Settings.sProcessPath + u"\\a.osl",
                          u"Folder Watched\tWrite " + Settings.sResponsePath + u"\\a.osl"));
}

TEST_F(FolderTransportTest, LeavesNoTraceOfALookThatFindsALockedFileAgain) {
  Ask(u"a.osl");
  const HeldOpen writer(Folder.Path(u"p\\a.osl"));
  Watch({During([this] {
    Transport.LookAgain();
    Trace.CommLog.clear();
    Trace.Status.clear();
    Transport.LookAgain();
  })});

  EXPECT_THAT(Trace.CommLog, IsEmpty());
  EXPECT_THAT(Trace.Status, IsEmpty());
}

TEST_F(FolderTransportTest, TellsAgainOfAFileThatCameAnew) {
  Transport.DeleteRequest = [](RequestFile&) { return platform::kAccessDenied; };
  Ask(u"a.osl");
  Scan();
  Remove(u"p/a.osl");
  Scan();
  Ask(u"a.osl");

  Scan();

  EXPECT_THAT(Trace.Status, SizeIs(2));
}

TEST_F(FolderTransportTest, TakesTheOthersBesideALockedFile) {
  Ask(u"a.osl");
  Ask(u"b.osl");
  const HeldOpen writer(Folder.Path(u"p\\a.osl"));

  Scan();

  EXPECT_TRUE(HasResponse(u"b.osl"));
  EXPECT_EQ(Waiting(), 1u);
}

TEST_F(FolderTransportTest, DoesNotProcessWhatItCannotDelete) {
  Transport.DeleteRequest = [](RequestFile&) { return platform::kAccessDenied; };
  Ask(u"a.osl");

  Scan();
  Scan();

  EXPECT_THAT(Requests, IsEmpty());
  EXPECT_THAT(Trace.Status, ElementsAre(u"Request file a.osl waits: it cannot be deleted: " +
                                        platform::SystemErrorText(platform::kAccessDenied)));
  EXPECT_EQ(Responses(), 0u);
}

TEST_F(FolderTransportTest, DoesNotProcessWhatWasTakenBack) {
  Transport.DeleteRequest = [](RequestFile&) { return platform::kFileNotFound; };
  Ask(u"a.osl");

  Scan();

  EXPECT_THAT(Requests, IsEmpty());
  EXPECT_THAT(Trace.Status, IsEmpty());
}

TEST_F(FolderTransportTest, LeavesARequestWhoseResponseHasNoPlace) {
  Folder.MakeFolder(u"r/a.osl");
  Ask(u"a.osl");

  Scan();

  EXPECT_THAT(Requests, IsEmpty());
  EXPECT_EQ(Waiting(), 1u);
  EXPECT_EQ(Responses(), 1u);
  EXPECT_THAT(Trace.Status,
              ElementsAre(u"Request file a.osl waits: its response cannot be written: " +
                          platform::SystemErrorText(platform::kFileExists)));
}

TEST_F(FolderTransportTest, LeavesRequestsWhileResponsesCannotBeWritten) {
  Remove(u"r");
  Folder.Write(u"r", "a file where the folder should be");
  Ask(u"a.osl");
  Scan();
  const std::size_t waiting = Waiting();

  Remove(u"r");
  Scan();

  EXPECT_EQ(waiting, 1u);
  EXPECT_THAT(Trace.Status,
              ElementsAre(BeginsWith(u"Request file a.osl waits: its response cannot be written")));
  EXPECT_TRUE(HasResponse(u"a.osl"));
}

TEST_F(FolderTransportTest, CreatesTheResponseFolderAgain) {
  Remove(u"r");
  Settings.sResponsePath = Folder.Path(u"r\\deeper");
  Ask(u"a.osl");
  std::size_t reserved = 0;
  DuringRequest = [&] { reserved = EntriesIn(u"r/deeper"); };

  Scan();

  EXPECT_EQ(reserved, 1u);
  EXPECT_TRUE(Folder.Has(u"r/deeper/a.osl"));
}

TEST_F(FolderTransportTest, DoesNotFollowALinkInTheProcessFolderAndTellsOfItOnce) {
  Folder.Write(u"secret", "secret");
  if (!Folder.MakeLink(u"../secret", u"p/a.osl")) return;  // Wine makes no links

  Scan();
  Scan();

  EXPECT_THAT(Requests, IsEmpty());
  EXPECT_EQ(Responses(), 0u);
  EXPECT_THAT(Trace.Status, ElementsAre(u"Request file a.osl waits: it cannot be read: " +
                                        platform::SystemErrorText(platform::kStoppedOnLink)));
}

TEST_F(FolderTransportTest, WritesToNoLinkInTheResponseFolderAndTellsOfItOnce) {
  Folder.Write(u"secret", "secret");
  const bool areMade =
      Folder.MakeLink(u"../secret", u"r/a.osl") && Folder.MakeLink(u"../secret", u"r/b.osl.part");
  if (!areMade) return;  // Wine makes no links
  Ask(u"a.osl");
  Ask(u"b.osl");

  for (int scan = 0; scan < 3; ++scan) Scan();

  const Text reason =
      u"its response cannot be written: " + platform::SystemErrorText(platform::kStoppedOnLink);
  EXPECT_THAT(Trace.Status, ElementsAre(u"Request file a.osl waits: " + reason,
                                        u"Request file b.osl waits: " + reason));
  EXPECT_THAT(Requests, IsEmpty());
  EXPECT_EQ(Folder.Read(u"secret"), "secret");
}

TEST_F(FolderTransportTest, TellsOnceOfANameThatNoPathCanHold) {
  Ask(u"a\\b.osl");
  if (!Folder.Has(u"p/a\\b.osl") || Waiting() == 0) return;  // no name on Windows

  Scan();
  Scan();

  EXPECT_THAT(Trace.Status,
              ElementsAre(u"Request file a\\b.osl waits: its name is no text, or there "
                          u"is a \"\\\" in it"));
}

TEST_F(FolderTransportTest, ServesTheLongestNames) {
  for (const std::size_t length : {250u, 251u, 255u}) {
    const Text name = Text(length - 4, u'n') + u".osl";
    Ask(name);
    bool isReserved = false;
    DuringRequest = [&] { isReserved = Responses() == 1 && !HasResponse(name); };

    Scan();

    EXPECT_TRUE(isReserved);
    EXPECT_EQ(Response(name), "<A></A>\r\n");
    Remove(u"r/" + name);
  }
}

// Failures once the request has been deleted.

TEST_F(FolderTransportTest, RespondsToATooLongRequestWithAnError) {
  Transport.lLongestRequest = 10;
  Ask(u"a.osl", "123456789\r\n");

  Scan();

  EXPECT_THAT(Requests, IsEmpty());
  EXPECT_EQ(Response(u"a.osl"), "ERROR 14\r\nThe request is too long\r\n");
  EXPECT_EQ(Waiting(), 0u);
}

TEST_F(FolderTransportTest, TakesRequestsOf256MebibytesAndNoMore) {
  EXPECT_EQ(Transport.lLongestRequest, 268'435'456u);
}

TEST_F(FolderTransportTest, TakesTheLongestRequest) {
  Transport.lLongestRequest = 10;
  Ask(u"a.osl", "12345678\r\n");

  Scan();

  EXPECT_THAT(Requests, ElementsAre(u"12345678\r\n"));
}

TEST_F(FolderTransportTest, RespondsWithAnErrorWhenThereIsNoMemory) {
  DuringRequest = [] { throw std::bad_alloc(); };
  Ask(u"a.osl");

  Scan();

  EXPECT_EQ(Response(u"a.osl"), "ERROR 7\r\nOut of memory\r\n");
}

TEST_F(FolderTransportTest, MakesAResponseThatWouldPassTheMemoryForAllAnError) {
  sResponse = Text(5'000, u'x');
  Ask(u"a.osl");
  const TextBudgetLimit limit(8'000);

  Scan();

  EXPECT_EQ(Response(u"a.osl"), "ERROR 7\r\nOut of memory: the response is too long\r\n");
  EXPECT_EQ(ProcessTextBudget().Held(), 0u);
}

TEST_F(FolderTransportTest, RespondsToARequestThatWouldPassTheMemoryForAllWithAnError) {
  Ask(u"a.osl", std::string(5'000, 'x'));
  const TextBudgetLimit limit(8'000);

  Scan();

  EXPECT_EQ(Response(u"a.osl"), "ERROR 7\r\nOut of memory: the request could not be read\r\n");
  EXPECT_TRUE(Requests.empty());
}

TEST_F(FolderTransportTest, HoldsARequestWhileItIsInWork) {
  std::size_t held = 0;
  DuringRequest = [&] { held = ProcessTextBudget().Held(); };
  Ask(u"a.osl", std::string(5'000, 'x'));

  Scan();

  EXPECT_GE(held, 10'000u);
  EXPECT_EQ(ProcessTextBudget().Held(), 0u);
}

TEST_F(FolderTransportTest, RespondsWithAnErrorWhateverIsRaised) {
  DuringRequest = [] { throw std::runtime_error("a defect"); };
  Ask(u"a.osl");

  Scan();

  EXPECT_EQ(Response(u"a.osl"), "ERROR 51\r\nInternal error\r\n");
}

TEST_F(FolderTransportTest, RespondsWithAnErrorWhenTheResponseCannotBeWrittenWhole) {
  Transport.WriteResponse = [](TextView, WholeFile& file) {
    file.Write(Text(100'000, u'x'));
    return false;
  };
  Ask(u"a.osl");

  Scan();

  EXPECT_EQ(Response(u"a.osl"),
            "ERROR 57\r\nThe request was carried out, but its response could not be written: " +
                ToUtf8(platform::SystemErrorText(platform::kOutOfMemory)) + "\r\n");
  EXPECT_EQ(Responses(), 1u);
}

TEST_F(FolderTransportTest, RespondsEvenWhenTheResponseFolderIsRemovedMeanwhile) {
  DuringRequest = [this] { Remove(u"r"); };
  Ask(u"a.osl");

  Scan();

  EXPECT_TRUE(HasResponse(u"a.osl"));
  EXPECT_EQ(Responses(), 1u);
}

TEST_F(FolderTransportTest, KeepsAFinishedResponseUntilItsPlaceIsFree) {
  DuringRequest = [this] { Folder.MakeFolder(u"r/a.osl"); };
  Ask(u"a.osl");
  std::string early;
  Watch({During([&] {
    Transport.LookAgain();
    early = Folder.Read(u"r/a.osl.done");
    Remove(u"r/a.osl");
    Transport.LookAgain();
  })});

  EXPECT_EQ(early, "<A></A>\r\n");
  EXPECT_EQ(Response(u"a.osl"), "<A></A>\r\n");
  EXPECT_EQ(Responses(), 1u);
  EXPECT_THAT(Trace.Status,
              ElementsAre(BeginsWith(u"Watching Folder: "),
                          BeginsWith(u"Response file " + Settings.sResponsePath + u"\\a.osl")));
}

TEST_F(FolderTransportTest, DoesNotWriteOverAResponseThatWaitsForItsPlace) {
  DuringRequest = [this] { Folder.MakeFolder(u"r/a.osl"); };
  Ask(u"a.osl");
  Scan();
  Ask(u"a.osl");

  Scan();

  EXPECT_THAT(Requests, SizeIs(1));
  EXPECT_TRUE(Trace.HasStatus(
      u"Request file a.osl waits: its last response could not be put in place yet"));
  EXPECT_EQ(Folder.Read(u"r/a.osl.done"), "<A></A>\r\n");
}

TEST_F(FolderTransportTest, GivesNoLoadingNoticeWhereAFinishedResponseWaitsForItsPlace) {
  DuringRequest = [this] { Folder.MakeFolder(u"r/b.osl"); };
  Ask(u"b.osl");
  Scan();
  Ask(u"a.osl");
  Ask(u"b.osl");
  DuringRequest = [this] { Transport.SendLoadingNotice(); };

  Watch({During([this] {
    Remove(u"r/b.osl");
    Transport.LookAgain();
  })});

  EXPECT_THAT(Requests, SizeIs(3));
  EXPECT_EQ(Response(u"b.osl"), "<A></A>\r\n");
}

// As two programs write them whose system tells names by their case.
TEST_F(FolderTransportTest, ServesRequestsWhoseNamesDifferInCaseEachUnderItsOwn) {
  Ask(u"a.osl", "small");
  Ask(u"A.osl", "capital");
  if (Waiting() == 1) return;  // one name on Windows
  const auto process = [this](Text& request, Text& response) {
    const float result = Process(request, response);
    response = u"<" + request.substr(0, request.size() - 2) + u"/>";
    return result;
  };
  FolderTransport transport(Settings, Trace, Gate, process, nullptr);
  transport.ProcessList.SetFolder(Settings.sProcessPath, u"*.osl");

  transport.ScanProcessFolder(Settings.sProcessPath);
  transport.ScanProcessFolder(Settings.sProcessPath);

  EXPECT_EQ(Response(u"a.osl"), "<small/>\r\n");
  EXPECT_EQ(Response(u"A.osl"), "<capital/>\r\n");
}

TEST_F(FolderTransportTest, LeavesAResponseWithoutAPlaceBehindAtTheEnd) {
  auto transport = std::make_unique<FolderTransport>(
      Settings, Trace, Gate, [](Text&, Text&) { return 1.0F; }, nullptr);
  transport->ProcessList.SetFolder(Settings.sProcessPath, u"*.osl");
  Ask(u"a.osl");
  transport->DeleteRequest = [this](RequestFile& file) {
    Folder.MakeFolder(u"r/a.osl");
    return file.Delete();
  };
  transport->ScanProcessFolder(Settings.sProcessPath);

  transport.reset();

  EXPECT_TRUE(Folder.Has(u"r/a.osl.done"));
}

// Watching.

TEST_F(FolderTransportTest, SettlesWhatIsLeftOverBeforeItTakesRequests) {
  Folder.Write(u"r/gone.osl.part", "    ");
  Folder.Write(u"r/there.osl.part", "    ");
  Ask(u"there.osl");

  Watch();

  EXPECT_THAT(Response(u"gone.osl"), BeginsWith("ERROR 58\r\n"));
  EXPECT_EQ(Response(u"there.osl"), "<A></A>\r\n");
  EXPECT_EQ(Responses(), 2u);
}

TEST_F(FolderTransportTest, ServesAllThatWaitsBeforeItWatches) {
  AskMany(9);
  std::size_t responses = 0;
  Watch({During([&] { responses = Responses(); })});

  EXPECT_EQ(responses, 9u);
  EXPECT_THAT(Requests, SizeIs(9));
  EXPECT_THAT(Trace.Status, ElementsAre(u"Watching Folder: " + Settings.sProcessPath));
  EXPECT_TRUE(Transport.IsRunning());
}

TEST_F(FolderTransportTest, ScansAnEmptyFolderOnceAtTheStart) {
  Watch();

  EXPECT_THAT(Trace.CommLog, SizeIs(2));
}

TEST_F(FolderTransportTest, ScansAgainWithEachChange) {
  Watch({During([this] { Ask(u"a.osl"); }), Changed()});

  EXPECT_TRUE(HasResponse(u"a.osl"));
}

TEST_F(FolderTransportTest, ServesWhatWaitsInAFolderThatCannotBeWatched) {
  OpenErrors = {platform::kGeneralFailure};
  AskMany(3);

  Watch();

  EXPECT_THAT(Messages, ElementsAre(u"Fatal Error: Unable to start watching the folder: " +
                                    Settings.sProcessPath));
  EXPECT_EQ(Responses(), 3u);
}

TEST_F(FolderTransportTest, EndsTheWatchFromInsideAnEvent) {
  bool lateEvent = false;
  Watch({During([this] { Transport.Stop(); }), During([&] { lateEvent = true; })});

  EXPECT_FALSE(lateEvent);
  EXPECT_EQ(iWatchers, 1);
}

TEST_F(FolderTransportTest, EndsTheScanAfterTheFileInWorkWhenItIsStopped) {
  AskMany(4);
  DuringRequest = [this] { Transport.Stop(); };
  bool watched = false;
  Watch({During([&] { watched = true; })});

  EXPECT_THAT(Requests, SizeIs(1));
  EXPECT_EQ(Responses(), 1u);
  EXPECT_EQ(Waiting(), 3u);
  EXPECT_FALSE(watched);
}

TEST_F(FolderTransportTest, EndsTheScanAfterTheFileInWorkWhenNoMoreIsWanted) {
  AskMany(4);
  DuringRequest = [this] { Transport.TakeNoMore(); };

  Watch();

  EXPECT_EQ(Responses(), 1u);
}

TEST_F(FolderTransportTest, WatchesAnewAfterAStop) {
  Watch({During([this] { Transport.Stop(); })});
  Ask(u"a.osl");

  Watch();

  EXPECT_EQ(iWatchers, 2);
  EXPECT_TRUE(HasResponse(u"a.osl"));
}

TEST_F(FolderTransportTest, KeepsTheWatcherWhileItsWaitIsOnTheStack) {
  std::weak_ptr<clsWatchFolder> watcher;
  auto transport = FolderTransport(
      Settings, Trace, Gate, [](Text&, Text&) { return 0.0F; },
      [&] {
        auto created = CreateWatcher();
        watcher = created;
        return created;
      });
  bool alive = false;
  Steps = {During([&] {
    transport.Stop();
    alive = !watcher.expired();
  })};

  transport.tmrProcess_Timer();

  EXPECT_TRUE(alive);
  EXPECT_TRUE(watcher.expired());
}

TEST_F(FolderTransportTest, IsStoppedWithoutHavingStarted) {
  Transport.Stop();
  Transport.Stop();

  EXPECT_EQ(iWatchers, 0);
}

// Looking again.

TEST_F(FolderTransportTest, LooksForWhatNoNotificationToldOf) {
  Watch({During([this] {
    Ask(u"a.osl");
    Trace.CommLog.clear();
    Transport.LookAgain();
  })});

  EXPECT_TRUE(HasResponse(u"a.osl"));
  EXPECT_THAT(Trace.CommLog, SizeIs(3));
}

// Kept: as with a notification, every other file is left to the next scan.
TEST_F(FolderTransportTest, ALookThatFindsSomethingNewIsOneScan) {
  Watch({During([this] {
    AskMany(4);
    Transport.LookAgain();
  })});

  EXPECT_EQ(Responses(), 2u);
}

TEST_F(FolderTransportTest, LeavesNoTraceOfALookThatFindsNothing) {
  Watch({During([this] {
    Trace.CommLog.clear();
    Transport.LookAgain();
  })});

  EXPECT_THAT(Trace.CommLog, IsEmpty());
}

TEST_F(FolderTransportTest, DoesNotLookUnlessItWatches) {
  Ask(u"a.osl");
  Transport.LookAgain();
  const std::size_t before = Waiting();
  Watch({During([this] { Transport.Stop(); })});
  Ask(u"b.osl");

  Transport.LookAgain();

  EXPECT_EQ(before, 1u);
  EXPECT_FALSE(HasResponse(u"b.osl"));
}

TEST_F(FolderTransportTest, DoesNotLookWhileARequestIsInWork) {
  Watch({During([this] {
    Ask(u"a.osl");
    Trace.CommLog.clear();
    const auto pass = Gate.TryEnter();
    Transport.LookAgain();
  })});

  EXPECT_EQ(Waiting(), 1u);
  EXPECT_THAT(Trace.CommLog, IsEmpty());
}

TEST_F(FolderTransportTest, TellsOnceThatTheFolderIsGoneAndThatItIsBack) {
  Watch({During([this] {
    Trace.Status.clear();
    Remove(u"p");
    Transport.LookAgain();
    Transport.LookAgain();
    Folder.MakeFolder(u"p");
    Ask(u"a.osl");
    Transport.LookAgain();
    Transport.LookAgain();
  })});

  EXPECT_THAT(Trace.Status, ElementsAre(u"The process folder is gone: " + Settings.sProcessPath,
                                        u"The process folder is back: " + Settings.sProcessPath));
  EXPECT_TRUE(HasResponse(u"a.osl"));
}

// A network share that no longer responds would hold up the only thread with each question.
TEST_F(FolderTransportTest, AsksForTheFolderItselfOnceWithEachLookAndNeverBetween) {
  constexpr int kRounds = 20;  // of 100 ms
  std::vector<int> looks;
  std::vector<FakeFolderNotification::Step> steps(kRounds);
  steps.push_back(During([&] {
    looks.push_back(Notification->iLooks);
    Transport.LookAgain();
    looks.push_back(Notification->iLooks);
    Ask(u"a.osl");
  }));
  steps.push_back(Changed());
  steps.push_back(During([&] { looks.push_back(Notification->iLooks); }));

  Watch(steps);

  EXPECT_THAT(looks, ElementsAre(0, 1, 1));
  EXPECT_TRUE(HasResponse(u"a.osl"));
}

TEST_F(FolderTransportTest, AsksForTheFolderItselfWhereItCannotBeWatched) {
  OpenErrors = {platform::kTooManyOpenFiles};
  Watch();
  Trace.Status.clear();
  Remove(u"p");

  Transport.LookAgain();

  EXPECT_THAT(Trace.Status, ElementsAre(u"The process folder is gone: " + Settings.sProcessPath));
}

// The loading notice.

// Kept: the notice goes to the first entry of the list, which no longer holds the request in work.
TEST_F(FolderTransportTest, GivesTheLoadingNoticeToTheNextWaitingRequest) {
  AskMany(2);
  std::string notice;
  DuringRequest = [&] {
    Transport.SendLoadingNotice();
    notice = Response(u"11.osl");
  };

  Scan();

  EXPECT_EQ(notice, "ERROR 99\r\nLoading Quickbooks\r\n");
  EXPECT_EQ(Responses(), 2u);  // the notice still, and the response
}

TEST_F(FolderTransportTest, GivesNoLoadingNoticeWhenNobodyElseWaits) {
  Ask(u"a.osl");
  DuringRequest = [this] { Transport.SendLoadingNotice(); };

  Scan();

  EXPECT_EQ(Responses(), 1u);
}

}  // namespace
}  // namespace ostrel
