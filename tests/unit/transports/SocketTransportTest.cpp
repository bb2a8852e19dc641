#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <new>
#include <stdexcept>

#include "tests/support/BorrowedSocketService.h"
#include "tests/support/TextBudgetLimit.h"
#include "tests/support/TextMatchers.h"
#include "tests/unit/doubles/FakeTrace.h"
#include "transports/SocketTransport.h"
#include "util/CodePage.h"
#include "util/RunTimeError.h"

namespace ostrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;

using Texts = std::vector<Text>;

class FakeConnections : public SocketService {
 public:
  struct Sent {
    std::int16_t iSocket;
    Text sData;
  };

  bool ServerStarted() const override { return true; }
  bool StartServer(std::int32_t) override { return true; }
  void StopListening() override {}
  void StopServer() override {}
  void SendData(std::string_view bytes, std::int16_t socket) override {
    Err.Clear();
    if (iSendsBeforeFailure-- == 0) {
      Err.Set(iSendFailure, u"CSocket.SendData", u"Connection reset by peer");
      return;
    }
    All.push_back({socket, BytesToText(bytes)});
  }
  void GatherPieces(std::int16_t socket, bool on) override { Gathered.push_back({socket, on}); }
  void CloseSocket(std::int16_t socket) override { Closed.push_back(socket); }
  std::size_t BytesToSend(std::int16_t socket) const override {
    return ToSend.contains(socket) ? ToSend.at(socket) : 0;
  }
  std::uint64_t BytesSent(std::int16_t socket) const override {
    return Taken.contains(socket) ? Taken.at(socket) : 0;
  }

  Texts SentTo(std::int16_t socket) const {
    Texts sent;
    for (const Sent& one : All) {
      if (one.iSocket == socket) sent.push_back(one.sData);
    }
    return sent;
  }

  std::vector<Sent> All;
  std::vector<std::int16_t> Closed;
  std::vector<std::pair<std::int16_t, bool>> Gathered;
  std::map<std::int16_t, std::size_t> ToSend;  // what clients have not taken yet, by socket
  std::map<std::int16_t, std::uint64_t> Taken;
  int iSendsBeforeFailure = -1;  // below 0: none fails
  int iSendFailure = 10054;
};

class ForgetfulTrace : public doubles::FakeTrace {
 public:
  void WriteCommLog(TextView text) override {
    if (!sOutOfMemoryAt.empty() && ostrel::Contains(text, sOutOfMemoryAt)) throw std::bad_alloc();
    FakeTrace::WriteCommLog(text);
  }

  Text sOutOfMemoryAt;
};

class SocketTransportTest : public testing::Test {
 protected:
  SocketTransportTest() {
    Settings.lBlockSize = kDefaultBlockSize;
    Transport.DoEvents = [this] {
      ++iEventRounds;
      if (BetweenBlocks) BetweenBlocks();
    };
    Transport.Now = [this] { return tNow; };
    Transport.Start();
  }

  void Arrive(std::int16_t socket, TextView data) {
    Transport.oSocketServer_DataArrival(socket, data);
  }
  void Tick() { Transport.tmrSocketProcess_Timer(); }
  void RespondWith(Text response, float result = 0) {
    sResponse = std::move(response);
    fResult = result;
  }

  float Process(Text& request, Text& response) {
    Requests.push_back(request);
    if (DuringRequest) DuringRequest();
    response = sResponse;
    return fResult;
  }

  // A response that the client has not taken yet.
  void LeaveUntaken(std::int16_t socket) {
    Connections.ToSend[socket] = 100;
    Arrive(socket, u"\x1F");
    Tick();
  }
  void Advance(std::chrono::milliseconds time) {
    tNow += time;
    Tick();
  }

  Deliveries::Time tNow;
  TransportSettings Settings;
  ForgetfulTrace Trace;
  RequestGate Gate;
  FakeConnections Connections;
  Texts Requests;
  Text sResponse = u"ok";
  float fResult = 0;
  int iEventRounds = 0;
  std::function<void()> DuringRequest;
  std::function<void()> BetweenBlocks;
  SocketTransport Transport{
      Settings, Trace, Gate,
      [this](Text& request, Text& response) { return Process(request, response); },
      BorrowedSocketService::Factory(Connections)};
};

TEST_F(SocketTransportTest, PutsTheReadsOfOneRequestTogetherInOrder) {
  Arrive(1, u"one ");
  Arrive(1, u"two ");
  Arrive(1, u"three\x1F");
  Tick();

  EXPECT_THAT(Requests, ElementsAre(u"one two three"));
}

TEST_F(SocketTransportTest, KeepsInterleavedRequestsApart) {
  Arrive(1, u"a1");
  Arrive(2, u"b1");
  Arrive(1, u"a2\x1F");
  Arrive(2, u"b2\x1F");
  Tick();
  Tick();

  EXPECT_THAT(Requests, ElementsAre(u"a1a2", u"b1b2"));
}

TEST_F(SocketTransportTest, TakesAMarkThatComesAlone) {
  Arrive(1, u"request");
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Requests, ElementsAre(u"request"));
}

TEST_F(SocketTransportTest, DropsWhatFollowsTheEndMark) {
  // Kept: clients depend on it.
  Arrive(1,
         u"request\x1F"
         u"lost\x1F");
  Tick();
  Tick();

  EXPECT_THAT(Requests, ElementsAre(u"request"));
}

TEST_F(SocketTransportTest, ProcessesAnEmptyRequest) {
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Requests, ElementsAre(u""));
}

TEST_F(SocketTransportTest, WaitsForTheEndMark) {
  Arrive(1, u"request");
  Tick();

  EXPECT_THAT(Requests, IsEmpty());
}

TEST_F(SocketTransportTest, ServesOneRequestATickInTheOrderOfTheEndMarks) {
  Arrive(1, u"begun first");
  Arrive(2, u"ended first\x1F");
  Arrive(1, u"\x1F");

  Tick();
  const Texts afterOne = Requests;
  Tick();

  EXPECT_THAT(afterOne, ElementsAre(u"ended first"));
  EXPECT_THAT(Requests, ElementsAre(u"ended first", u"begun first"));
}

TEST_F(SocketTransportTest, ServesSeveralRequestsOfOneConnection) {
  Arrive(1, u"one\x1F");
  Tick();
  Arrive(1, u"two\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1),
              ElementsAre(u"4\u00FE", u"ok", u"\x1F", u"4\u00FE", u"ok", u"\x1F"));
}

TEST_F(SocketTransportTest, SendsHeaderBlocksAndEndMark) {
  RespondWith(Text(25000, u'x'));
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1), ElementsAre(u"25002\u00FE", Text(10000, u'x'),
                                                 Text(10000, u'x'), Text(5000, u'x'), u"\x1F"));
}

TEST_F(SocketTransportTest, SendsAResponseOfExactlyOneBlockAsOneBlock) {
  RespondWith(Text(10000, u'x'));
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1), ElementsAre(u"10002\u00FE", Text(10000, u'x'), u"\x1F"));
}

TEST_F(SocketTransportTest, SendsAnEmptyResponseAsHeaderAndEndMark) {
  RespondWith(u"");
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1), ElementsAre(u"2\u00FE", u"\x1F"));
}

TEST_F(SocketTransportTest, CountsTheHeaderBeforeLineBreaksAreReplaced) {
  RespondWith(u"a\r\nb\r\n");
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1), ElementsAre(u"8\u00FE", u"a\u00FEb\u00FE", u"\x1F"));
}

TEST_F(SocketTransportTest, GathersThePiecesOfAResponse) {
  RespondWith(Text(25'000, u'x'));
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.Gathered, ElementsAre(Pair(1, true), Pair(1, false)));
}

TEST_F(SocketTransportTest, GathersNoLongerForAClientThatHasGone) {
  RespondWith(Text(25'000, u'x'));
  BetweenBlocks = [&] { Transport.oSocketServer_SocketClosed(1); };
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.Gathered, ElementsAre(Pair(1, true)));
}

TEST_F(SocketTransportTest, FindsLineBreaksAtEveryPlace) {
  for (std::size_t place = 0; place < 20; ++place) {
    const Text before(place, u'\x0C');
    RespondWith(before + u"\r\n\r\r\n" + before + u"\r");
    Arrive(1, u"\x1F");
    Tick();

    EXPECT_EQ(Connections.SentTo(1).at(3 * place + 1), before + u"\u00FE\r\u00FE" + before + u"\r");
  }
}

TEST_F(SocketTransportTest, LeavesHalvesOfLineBreaksAsTheyAre) {
  RespondWith(u"\ra\nb\r\r\n\r\n\n\u20AC\r");
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1),
              ElementsAre(u"14\u00FE", u"\ra\nb\r\u00FE\u00FE\n\u20AC\r", u"\x1F"));
}

TEST_F(SocketTransportTest, SendsALineBreakAcrossTwoBlocksUnchanged) {
  // Kept: line breaks are replaced within a block only.
  Settings.lBlockSize = 4;
  RespondWith(u"abc\r\nd\r\n");
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1), ElementsAre(u"10\u00FE", u"abc\r", u"\nd\u00FE", u"\x1F"));
}

TEST_F(SocketTransportTest, TakesABlockSizeBelowOneForTheUsualOne) {
  for (const std::int32_t size : {0, -1}) {
    Settings.lBlockSize = size;
    RespondWith(Text(10001, u'x'));
    Arrive(1, u"\x1F");
    Tick();

    EXPECT_THAT(Connections.SentTo(1),
                ElementsAre(u"10003\u00FE", Text(10000, u'x'), u"x", u"\x1F"));
    Connections.All.clear();
  }
}

TEST_F(SocketTransportTest, LeavesLoneLineCharactersAlone) {
  RespondWith(u"a\rb\nc\n\rd");
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1), Contains(u"a\rb\nc\n\rd"));
}

TEST_F(SocketTransportTest, SendsAFailureInOneCall) {
  RespondWith(u"sentence", 1024);
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1), ElementsAre(u"ERROR: 1024\u00FEsentence\x1F"));
}

TEST_F(SocketTransportTest, WritesAFractionalResultInItsShortestForm) {
  RespondWith(u"", 0.5F);
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1), ElementsAre(u"ERROR: 0.5\u00FE\x1F"));
}

TEST_F(SocketTransportTest, TakesAResultBelowZeroForSuccess) {
  RespondWith(u"fine", -1);
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1), ElementsAre(u"6\u00FE", u"fine", u"\x1F"));
}

TEST_F(SocketTransportTest, LetsEventsRunAfterEachBlock) {
  Settings.lBlockSize = 1;
  RespondWith(u"abc");
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_EQ(iEventRounds, 3);
}

TEST_F(SocketTransportTest, NamesTheActiveSocketWhileItsRequestIsInWork) {
  std::vector<std::int16_t> active;
  DuringRequest = BetweenBlocks = [&] { active.push_back(Transport.ActiveSocket()); };
  Arrive(7, u"\x1F");
  Tick();

  EXPECT_THAT(active, ElementsAre(7, 7));
  EXPECT_EQ(Transport.ActiveSocket(), 0);
}

TEST_F(SocketTransportTest, StartsNoSecondRequestWhileOneIsInWork) {
  DuringRequest = BetweenBlocks = [&] { Tick(); };
  Arrive(1, u"one\x1F");
  Arrive(2, u"two\x1F");
  Tick();

  EXPECT_THAT(Requests, ElementsAre(u"one"));
  EXPECT_FALSE(Gate.IsBusy());
}

TEST_F(SocketTransportTest, LeavesTheQueueAloneWhileOthersHoldThePass) {
  Arrive(1, u"one\x1F");
  {
    const auto pass = Gate.TryEnter();
    Tick();
  }
  const Texts whileBusy = Requests;
  Tick();

  EXPECT_THAT(whileBusy, IsEmpty());
  EXPECT_THAT(Requests, ElementsAre(u"one"));
}

TEST_F(SocketTransportTest, QueuesWhatArrivesBetweenBlocks) {
  BetweenBlocks = [&] { Arrive(2, u"meanwhile\x1F"); };
  Arrive(1, u"one\x1F");
  Tick();
  BetweenBlocks = nullptr;
  Tick();

  EXPECT_THAT(Requests, ElementsAre(u"one", u"meanwhile"));
}

TEST_F(SocketTransportTest, StopsTheResponseAtAFailedSend) {
  Settings.lBlockSize = 1;
  RespondWith(u"abc");
  Connections.iSendsBeforeFailure = 2;
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1), ElementsAre(u"5\u00FE", u"a"));
  EXPECT_THAT(Trace.CommLog,
              Contains(u"Socket 1\tSocket Send Error: 10054 (CSocket.SendData) Connection reset by "
                       u"peer"));
}

TEST_F(SocketTransportTest, DoesNotJudgeTheHeadersOwnSend) {
  // Kept: only the sends after it are looked at.
  Connections.iSendsBeforeFailure = 0;
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1), ElementsAre(u"ok", u"\x1F"));
  EXPECT_THAT(Trace.CommLog, Not(Contains(BeginsWith(u"Socket 1\tSocket Send Error"))));
}

TEST_F(SocketTransportTest, LogsAFailedSendOfAFailure) {
  RespondWith(u"sentence", 1024);
  Connections.iSendsBeforeFailure = 0;
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Trace.CommLog, Contains(BeginsWith(u"Socket 1\tSocket Send Error: 10054")));
  EXPECT_THAT(Trace.CommLog, Not(Contains(BeginsWith(u"Socket 1\tResults: "))));
}

TEST_F(SocketTransportTest, ServesTheNextRequestAfterAFailedSend) {
  Connections.iSendsBeforeFailure = 1;
  Arrive(1, u"\x1F");
  Arrive(2, u"\x1F");
  Tick();
  Tick();

  EXPECT_THAT(Connections.SentTo(2), ElementsAre(u"4\u00FE", u"ok", u"\x1F"));
}

TEST_F(SocketTransportTest, StopsTheResponseWhenTheClientDisconnects) {
  Settings.lBlockSize = 1;
  RespondWith(u"abc");
  BetweenBlocks = [&] { Transport.oSocketServer_SocketClosed(1); };
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1), ElementsAre(u"5\u00FE", u"a"));
}

TEST_F(SocketTransportTest, SendsNothingOfAResponseToTheNextConnectionOfTheSameIndex) {
  DuringRequest = [&] {
    Transport.oSocketServer_SocketClosed(1);
    Transport.oSocketServer_SocketOpened(1);
  };
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.All, IsEmpty());
}

TEST_F(SocketTransportTest, StopsTheResponseWhenTheServerGoesAway) {
  Settings.lBlockSize = 1;
  RespondWith(u"abc");
  BetweenBlocks = [&] { Transport.Stop(); };
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1), ElementsAre(u"5\u00FE", u"a"));
}

TEST_F(SocketTransportTest, ForgetsTheRequestsOfAServerThatHasGone) {
  Arrive(1, u"waits\x1F");
  Arrive(2, u"half");

  Transport.Stop();
  Transport.Start();
  Arrive(2, u"whole\x1F");
  Tick();
  Tick();

  EXPECT_THAT(Requests, ElementsAre(u"whole"));
}

TEST_F(SocketTransportTest, ForgetsTheWaitingRequestsOfAClosedConnection) {
  Arrive(1, u"waits\x1F");
  Transport.oSocketServer_SocketClosed(1);
  Tick();

  EXPECT_THAT(Requests, IsEmpty());
}

TEST_F(SocketTransportTest, GivesTheNextConnectionNothingOfAHalfReceivedRequest) {
  Arrive(1, u"half ");
  Transport.oSocketServer_SocketClosed(1);
  Transport.oSocketServer_SocketOpened(1);
  Arrive(1, u"whole\x1F");
  Tick();

  EXPECT_THAT(Requests, ElementsAre(u"whole"));
}

TEST_F(SocketTransportTest, ReusesTheSlotOfAClosedConnection) {
  for (int round = 0; round < 30; ++round) {
    Arrive(1, u"\x1F");
    Tick();
    Transport.oSocketServer_SocketClosed(1);
  }

  EXPECT_THAT(Trace.CommLog, Contains(u"Socket 1\tResize socket Storage Array: 11"));
  EXPECT_THAT(Trace.CommLog, Not(Contains(u"Socket 1\tResize socket Storage Array: 21")));
}

TEST_F(SocketTransportTest, GrowsForTheTwelfthConnection) {
  for (std::int16_t socket = 1; socket <= 12; ++socket) Arrive(socket, u"x");

  EXPECT_THAT(Trace.CommLog, Contains(u"Socket 12\tResize socket Storage Array: 21"));
  EXPECT_THAT(Trace.CommLog, Contains(u"Socket 12\tStorage Array Position: 12"));
}

TEST_F(SocketTransportTest, ServesOneConnectionForMoreRequestsThanThereAreSlots) {
  Trace.bCommLog = false;
  for (int i = 0; i < 40000; ++i) {
    Arrive(1, u"\x1F");
    Tick();
  }

  EXPECT_EQ(Requests.size(), 40000u);
  EXPECT_THAT(Connections.Closed, IsEmpty());
}

TEST_F(SocketTransportTest, EndsAConnectionForWhichThereIsNoSlot) {
  Trace.bCommLog = false;
  for (std::int16_t socket = 1; socket <= 32761; ++socket) Arrive(socket, u"\x1F");
  Arrive(32762, u"one too many\x1F");

  EXPECT_THAT(Connections.Closed, ElementsAre(32762));
  EXPECT_THAT(Trace.Status, ElementsAre(u"Socket 32762 ended: no room for another request"));
}

TEST_F(SocketTransportTest, EndsTheConnectionWithTheMostRequestsWhenThereIsNoSlotForAnother) {
  Trace.bCommLog = false;
  for (std::int16_t socket = 1; socket <= 33; ++socket) {
    for (int i = 0; i < 992; ++i) Arrive(socket, u"\x1F");
  }
  for (int i = 0; i < 8; ++i) Arrive(7, u"\x1F");
  for (int i = 0; i < 17; ++i) Arrive(34, u"\x1F");
  ASSERT_THAT(Connections.Closed, IsEmpty());

  Arrive(35, u"request\x1F");

  EXPECT_THAT(Connections.Closed, ElementsAre(7));
  EXPECT_THAT(Trace.Status, ElementsAre(u"Socket 7 ended: no room for another request"));
}

TEST_F(SocketTransportTest, KeepsAThousandRequestsOfOneConnection) {
  Trace.bCommLog = false;
  for (int i = 0; i < 1000; ++i) Arrive(1, u"\x1F");
  EXPECT_THAT(Connections.Closed, IsEmpty());

  for (int i = 0; i < 1000; ++i) Tick();
  for (int i = 0; i < 1000; ++i) Arrive(1, u"\x1F");

  EXPECT_EQ(Requests.size(), 1000u);
  EXPECT_THAT(Connections.Closed, IsEmpty());
}

TEST_F(SocketTransportTest, EndsAConnectionWithMoreThanAThousandRequests) {
  Trace.bCommLog = false;
  for (int i = 0; i < 1001; ++i) Arrive(1, u"\x1F");
  Arrive(2, u"another\x1F");
  Tick();
  Tick();

  EXPECT_THAT(Connections.Closed, ElementsAre(1));
  EXPECT_THAT(Trace.Status, ElementsAre(u"Socket 1 ended: more than 1000 requests wait"));
  EXPECT_THAT(Requests, ElementsAre(u"another"));
}

TEST_F(SocketTransportTest, TellsAnErrorAndClosesItsSocket) {
  Transport.oSocketServer_Error(3, 10053, u"Software caused connection abort.");

  EXPECT_THAT(Trace.Status,
              ElementsAre(u"Socket Error 3 - 10053 - Software caused connection abort."));
  EXPECT_THAT(Connections.Closed, ElementsAre(3));
}

TEST_F(SocketTransportTest, ClearsTheActiveSocketAtAnyError) {
  // Kept: an error of another connection clears it as well.
  std::int16_t active = -1;
  BetweenBlocks = [&] {
    Transport.oSocketServer_Error(2, 10053, u"");
    active = Transport.ActiveSocket();
  };
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_EQ(active, 0);
  EXPECT_THAT(Connections.SentTo(1), ElementsAre(u"4\u00FE", u"ok", u"\x1F"));
}

TEST_F(SocketTransportTest, FreesTheIncompleteRequestOfAFailedConnection) {
  Arrive(1, u"half");
  Transport.oSocketServer_Error(1, 10053, u"");
  Transport.oSocketServer_SocketOpened(1);
  Arrive(1, u"whole\x1F");
  Tick();

  EXPECT_THAT(Requests, ElementsAre(u"whole"));
}

TEST_F(SocketTransportTest, ForgetsTheWaitingRequestsOfAFailedConnection) {
  Arrive(1, u"waits\x1F");
  Transport.oSocketServer_Error(1, 10053, u"");
  Tick();

  EXPECT_THAT(Requests, IsEmpty());
}

TEST_F(SocketTransportTest, ForgetsEveryConnectionWhenTheListenerFails) {
  Arrive(1, u"waits\x1F");
  Arrive(2, u"half");
  Transport.oSocketServer_Error(0, 10050, u"Network is down.");
  Arrive(2, u"whole\x1F");
  Tick();
  Tick();

  EXPECT_THAT(Requests, ElementsAre(u"whole"));
}

TEST_F(SocketTransportTest, EndsAConnectionWhoseRequestIsTooLong) {
  Transport.lLongestRequest = 10;
  Arrive(1, u"0123456789");
  Arrive(1, u"x");
  Arrive(1, u"still coming\x1F");
  Tick();

  EXPECT_THAT(Connections.Closed, ElementsAre(1));
  EXPECT_THAT(Trace.Status, ElementsAre(u"Socket 1 ended: its request is too long"));
  EXPECT_THAT(Requests, IsEmpty());
}

TEST_F(SocketTransportTest, TakesRequestsOf256MebibytesAndNoMore) {
  EXPECT_EQ(Transport.lLongestRequest, 268'435'456u);
}

TEST_F(SocketTransportTest, TakesARequestOfExactlyTheGreatestLength) {
  Transport.lLongestRequest = 10;
  Arrive(1, u"01234");
  Arrive(1, u"56789\x1F");
  Tick();

  EXPECT_THAT(Requests, ElementsAre(u"0123456789"));
}

TEST_F(SocketTransportTest, ServesTheNextConnectionOfAnIndexThatWasEnded) {
  Transport.lLongestRequest = 5;
  Arrive(1, u"too long");
  Transport.oSocketServer_SocketOpened(1);
  Arrive(1, u"short\x1F");
  Tick();

  EXPECT_THAT(Requests, ElementsAre(u"short"));
}

TEST_F(SocketTransportTest, EndsAConnectionForWhoseRequestThereIsNoMemory) {
  Trace.sOutOfMemoryAt = u"Socket 1\tLooking for";
  Arrive(1, u"request\x1F");
  Arrive(2, u"another\x1F");
  Tick();

  EXPECT_THAT(Connections.Closed, ElementsAre(1));
  EXPECT_THAT(Trace.Status, ElementsAre(u"Socket 1 ended: no memory for its request"));
  EXPECT_THAT(Requests, ElementsAre(u"another"));
}

TEST_F(SocketTransportTest, EndsAConnectionForWhoseResponseThereIsNoMemory) {
  DuringRequest = [] { throw std::bad_alloc(); };
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.Closed, ElementsAre(1));
  EXPECT_THAT(Trace.Status, ElementsAre(u"Socket 1 ended: no memory for its request"));
  EXPECT_EQ(Transport.ActiveSocket(), 0);
  EXPECT_FALSE(Gate.IsBusy());
}

TEST_F(SocketTransportTest, EndsNobodyWhenTheClientHasGoneThatThereIsNoMemoryFor) {
  DuringRequest = [&] {
    Transport.oSocketServer_SocketClosed(1);
    Transport.oSocketServer_SocketOpened(1);
    throw std::bad_alloc();
  };
  Arrive(1, u"\x1F");
  Tick();
  DuringRequest = [&] {
    Transport.oSocketServer_SocketClosed(1);
    throw std::length_error("");
  };
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.Closed, IsEmpty());
  EXPECT_THAT(Trace.Status, IsEmpty());
}

TEST_F(SocketTransportTest, EndsAConnectionWhoseRequestWouldPassTheMemoryForAll) {
  const TextBudgetLimit limit(20'000);
  Arrive(1, Text(6'000, u'x'));
  Arrive(2, Text(6'000, u'y'));
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.Closed, ElementsAre(2));
  EXPECT_THAT(Trace.Status, ElementsAre(u"Socket 2 ended: no memory for its request"));
  EXPECT_THAT(Requests, ElementsAre(Text(6'000, u'x')));
  EXPECT_EQ(ProcessTextBudget().Held(), 0u);
}

TEST_F(SocketTransportTest, MakesAResponseThatWouldPassTheMemoryForAllAnError) {
  RespondWith(Text(5'000, u'x'));
  const TextBudgetLimit limit(14'000);
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1),
              ElementsAre(u"ERROR: 7\u00FEOut of memory: the response is too long\x1F"));
  EXPECT_THAT(Connections.Closed, IsEmpty());
  EXPECT_EQ(ProcessTextBudget().Held(), 0u);
}

TEST_F(SocketTransportTest, HoldsAResponseAndWhatOfItIsStillToBeQueued) {
  Settings.lBlockSize = 1'000;
  RespondWith(Text(5'000, u'x'));
  std::vector<std::size_t> held;
  BetweenBlocks = [&] { held.push_back(ProcessTextBudget().Held()); };
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(held, ElementsAre(14'000, 13'000, 12'000, 11'000, 10'000));
  EXPECT_EQ(ProcessTextBudget().Held(), 0u);
}

TEST_F(SocketTransportTest, HoldsARequestWhileItIsInWork) {
  std::size_t held = 0;
  DuringRequest = [&] { held = ProcessTextBudget().Held(); };
  Arrive(1, Text(5'000, u'x') + u"\x1F");
  Tick();

  EXPECT_GE(held, 10'000u);
  EXPECT_EQ(ProcessTextBudget().Held(), 0u);
}

class NoMemoryForASend : public SocketTransportTest, public testing::WithParamInterface<int> {};

TEST_P(NoMemoryForASend, EndsItsConnection) {
  Settings.lBlockSize = 1;
  RespondWith(u"abc");
  Connections.iSendsBeforeFailure = 2;
  Connections.iSendFailure = GetParam();
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.SentTo(1), ElementsAre(u"5\u00FE", u"a"));
  EXPECT_THAT(Connections.Closed, ElementsAre(1));
  EXPECT_THAT(Trace.Status, ElementsAre(u"Socket 1 ended: no memory for its response"));
}

INSTANTIATE_TEST_SUITE_P(SocketTransport, NoMemoryForASend, testing::Values(7, 10055));

TEST_F(SocketTransportTest, LeavesALostConnectionToItsClose) {
  Connections.iSendsBeforeFailure = 1;
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Connections.Closed, IsEmpty());
  EXPECT_THAT(Trace.Status, IsEmpty());
}

TEST_F(SocketTransportTest, WalksNoMoreOfAResponseOnceTheClientHasGone) {
  Settings.lBlockSize = 1;
  RespondWith(u"abcdef");
  BetweenBlocks = [&] { Transport.oSocketServer_SocketClosed(1); };
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_EQ(iEventRounds, 1);
}

TEST_F(SocketTransportTest, LetsGoOfAClientThatTakesNothingForFiveMinutes) {
  LeaveUntaken(1);
  Advance(minutes(5) - milliseconds(1));
  EXPECT_THAT(Connections.Closed, IsEmpty());

  Advance(seconds(1));

  EXPECT_THAT(Connections.Closed, ElementsAre(1, 1));  // the second drops what is queued
  EXPECT_THAT(Trace.Status,
              ElementsAre(u"Socket 1 ended: it took nothing of its response for five minutes"));
}

TEST_F(SocketTransportTest, TellsOnceOfAClientThatItLetGo) {
  LeaveUntaken(1);

  Advance(minutes(5));
  Advance(minutes(5));

  EXPECT_EQ(Trace.Status.size(), 1u);
}

TEST_F(SocketTransportTest, KeepsAClientThatTakesALittle) {
  LeaveUntaken(1);
  for (int i = 1; i <= 4; ++i) {
    Connections.Taken[1] += 1;
    Connections.ToSend[1] += 50;
    Advance(minutes(4));
  }

  EXPECT_THAT(Connections.Closed, IsEmpty());
}

TEST_F(SocketTransportTest, KeepsAnIdleClientThatHasTakenEverything) {
  LeaveUntaken(1);
  Connections.ToSend[1] = 0;
  Advance(minutes(1));
  Connections.ToSend[1] = 100;  // nothing of ours

  Advance(minutes(10));

  EXPECT_THAT(Connections.Closed, IsEmpty());
}

TEST_F(SocketTransportTest, CountsAnewForTheNextConnectionOfAnIndex) {
  for (const int how : {1, 2, 3}) {
    Connections.Closed.clear();
    LeaveUntaken(1);
    Advance(minutes(4));
    if (how == 1) Transport.oSocketServer_SocketClosed(1);
    if (how == 2) Transport.oSocketServer_Error(1, 10053, u"");
    Transport.oSocketServer_SocketOpened(1);
    Connections.Closed.clear();
    LeaveUntaken(1);

    Advance(minutes(4));

    EXPECT_THAT(Connections.Closed, IsEmpty()) << how;
    Transport.oSocketServer_SocketClosed(1);
  }
}

TEST_F(SocketTransportTest, LooksAtIdleClientsOnceASecond) {
  LeaveUntaken(1);
  Advance(minutes(5) - milliseconds(500));
  Advance(milliseconds(500));
  EXPECT_THAT(Connections.Closed, IsEmpty());

  Advance(milliseconds(500));

  EXPECT_THAT(Connections.Closed, Not(IsEmpty()));
}

TEST_F(SocketTransportTest, TakesNoMoreAtItsEnd) {
  Arrive(1, u"waits\x1F");
  Transport.TakeNoMore();
  Arrive(2, u"late\x1F");
  Tick();
  EXPECT_THAT(Requests, IsEmpty());

  Transport.Stop();
  Transport.Start();
  Arrive(2, u"anew\x1F");
  Tick();

  EXPECT_THAT(Requests, ElementsAre(u"anew"));
}

TEST_F(SocketTransportTest, IsDeliveringUntilEverythingWasTaken) {
  EXPECT_FALSE(Transport.IsDelivering());
  LeaveUntaken(1);

  EXPECT_TRUE(Transport.IsDelivering());
  Connections.ToSend[1] = 0;
  EXPECT_FALSE(Transport.IsDelivering());
}

TEST_F(SocketTransportTest, IsDeliveringForFiveSecondsWithoutProgress) {
  LeaveUntaken(1);
  LeaveUntaken(2);
  tNow += minutes(4);
  EXPECT_TRUE(Transport.IsDelivering());
  tNow += seconds(4);
  Connections.Taken[2] = 1;
  EXPECT_TRUE(Transport.IsDelivering());

  tNow += seconds(5) - milliseconds(1);
  EXPECT_TRUE(Transport.IsDelivering());
  tNow += milliseconds(1);
  EXPECT_FALSE(Transport.IsDelivering());
}

TEST_F(SocketTransportTest, DeliversNothingWithoutAServer) {
  LeaveUntaken(1);

  Transport.Stop();

  EXPECT_FALSE(Transport.IsDelivering());
}

TEST_F(SocketTransportTest, OnlyLogsAnErrorInsideTheTick) {
  DuringRequest = [] { throw RunTimeError(9, u"", u"Subscript out of range"); };
  Arrive(1, u"\x1F");
  Tick();
  DuringRequest = [] { throw std::runtime_error("broken"); };
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_THAT(Trace.CommLog, Contains(u"Socket 1\tError: Subscript out of range"));
  EXPECT_THAT(Trace.CommLog, Contains(u"Socket 1\tError: broken"));
  EXPECT_THAT(Trace.Status, IsEmpty());
  EXPECT_FALSE(Gate.IsBusy());
}

TEST_F(SocketTransportTest, LogsTheReceivingOfARequest) {
  Arrive(4, u"abc\x1F");

  EXPECT_THAT(
      Trace.CommLog,
      ElementsAre(u"Socket 4\tData Arrival: abc\x1F", u"Socket 4\tResize socket Storage Array: 11",
                  u"Socket 4\tStorage Array Position: 1", u"Socket 4\tLooking for End of data: 4",
                  u"Socket 4\tAdds to Process Queue"));
}

TEST_F(SocketTransportTest, LogsThatTheEndMarkIsMissing) {
  Arrive(4, u"abc");

  EXPECT_THAT(Trace.CommLog, Contains(u"Socket 4\tLooking for End of data: 0"));
  EXPECT_THAT(Trace.CommLog, Not(Contains(u"Socket 4\tAdds to Process Queue")));
}

TEST_F(SocketTransportTest, LogsTheBlocksItHasSent) {
  Settings.lBlockSize = 4;
  RespondWith(u"ab\r\ncd");
  Arrive(1, u"\x1F");
  Trace.CommLog.clear();
  Tick();

  EXPECT_THAT(Trace.CommLog, ElementsAre(u"Socket 1\tResults: ab\u00FE", u"Socket 1\tResults: cd"));
}

TEST_F(SocketTransportTest, LogsTheFailureItHasSent) {
  RespondWith(u"sentence", 1024);
  Arrive(1, u"\x1F");
  Trace.CommLog.clear();
  Tick();

  EXPECT_THAT(Trace.CommLog, ElementsAre(u"Socket 1\tResults: ERROR: 1024\u00FEsentence\x1F"));
}

TEST_F(SocketTransportTest, TellsTheWaitingClientThatQuickBooksIsLoading) {
  bool told = false;
  DuringRequest = [&] { told = Transport.SendLoadingNotice(); };
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_TRUE(told);
  EXPECT_THAT(Connections.SentTo(1), ElementsAre(u"ERROR: 99\x1F", u"4\u00FE", u"ok", u"\x1F"));
}

TEST_F(SocketTransportTest, HasNobodyToTellWithoutARequestInWork) {
  EXPECT_FALSE(Transport.SendLoadingNotice());

  EXPECT_THAT(Connections.All, IsEmpty());
}

TEST_F(SocketTransportTest, TellsNobodyThatQuickBooksIsLoadingWhenTheClientHasGone) {
  bool told = false;
  DuringRequest = [&] {
    Transport.oSocketServer_SocketClosed(1);
    told = Transport.SendLoadingNotice();
  };
  Arrive(1, u"\x1F");
  Tick();

  EXPECT_TRUE(told);
  EXPECT_THAT(Connections.All, IsEmpty());
}

}  // namespace
}  // namespace ostrel
