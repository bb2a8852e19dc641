#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

#include "sockets/CSocket.h"
#include "tests/support/TextBudgetLimit.h"
#include "tests/unit/doubles/FakeSockets.h"
#include "util/RunTimeError.h"

namespace ostrel {
namespace {

using doubles::FakeSockets;
using doubles::SocketEvent;
using platform::kNoSocket;
using testing::ElementsAre;

struct Raised {
  int number = 0;
  Text source;
  Text description;
};

template <typename Operation>
Raised WhatIsRaised(Operation operation) {
  try {
    operation();
  } catch (const RunTimeError& error) {
    return {error.Number, error.Source, error.Description};
  }
  return {};
}

class CSocketTest : public testing::Test {
 protected:
  CSocketTest() {
    Err.Clear();
    Subscribe(*socket);
  }

  void Subscribe(CSocket& own) {
    own.Events.OnClose = [this] { log.push_back("close"); };
    own.Events.OnConnect = [this] { log.push_back("connect"); };
    own.Events.OnDataArrival = [this](std::int32_t bytes) {
      log.push_back("data " + std::to_string(bytes));
    };
    own.Events.OnError = [this](std::uint16_t Number, Text& Description, std::int32_t Scode,
                                TextView Source, TextView HelpFile, std::int32_t HelpContext,
                                bool&) {
      log.push_back("error " + std::to_string(Number) + " " + ToUtf8(Description) + " from " +
                    ToUtf8(Source));
      EXPECT_EQ(Scode, 0);
      EXPECT_EQ(HelpFile, u"");
      EXPECT_EQ(HelpContext, 0);
    };
    own.Events.OnSendComplete = [this] { log.push_back("complete"); };
    own.Events.OnSendProgress = [this](std::int32_t sent, std::int32_t remaining) {
      log.push_back("sent " + std::to_string(sent) + " of " + std::to_string(sent + remaining));
    };
  }

  platform::SocketHandle Accepted() {
    const auto handle = network.NewHandle();
    socket->Accept(handle);
    return handle;
  }
  Text Got(std::int32_t maxLen = 0) {
    Text text;
    socket->GetData(text, maxLen);
    return text;
  }
  Text Peeked(std::int32_t maxLen = 0) {
    Text text;
    socket->PeekData(text, maxLen);
    return text;
  }

  FakeSockets network;
  MSocketSupport support{network, network, network};
  std::shared_ptr<CSocket> socket = CSocket::Create(support);
  std::vector<std::string> log;
};

TEST_F(CSocketTest, IsClosedWhenItIsMade) {
  EXPECT_EQ(socket->State(), SocketState::kClosed);
  EXPECT_EQ(socket->SocketHandle(), -1);
  EXPECT_EQ(socket->protocol(), platform::SocketProtocol::kTcp);
  EXPECT_EQ(socket->BytesReceived(), 0);
}

TEST_F(CSocketTest, AcceptTakesOverTheConnection) {
  const auto handle = Accepted();

  EXPECT_EQ(socket->State(), SocketState::kConnected);
  EXPECT_EQ(socket->SocketHandle(), handle);
  EXPECT_EQ(socket->RemoteHostIP(), u"10.0.0.1");
  EXPECT_EQ(socket->RemotePort(), 50000);
  EXPECT_EQ(socket->LocalPort(), 4999);
  EXPECT_TRUE(network.selected.contains(handle));
}

TEST_F(CSocketTest, AcceptThatCannotRegisterClosesTheConnection) {
  network.errors.select = 10055;

  const auto handle = network.NewHandle();
  const Raised raised = WhatIsRaised([&] { socket->Accept(handle); });

  EXPECT_EQ(raised.number, 10055);
  EXPECT_EQ(raised.description, u"No buffer space available.");
  EXPECT_FALSE(network.open.contains(handle));
  EXPECT_EQ(socket->State(), SocketState::kError);
}

TEST_F(CSocketTest, ConnectsToADottedAddressAtOnce) {
  socket->Connect(u"10.0.0.1", 4999);
  EXPECT_EQ(socket->State(), SocketState::kConnecting);
  EXPECT_EQ(network.connectedTo.ip, 0x0A000001u);
  EXPECT_EQ(network.connectedTo.port, 4999);

  network.Tell(socket->SocketHandle(), SocketEvent::kConnect);

  EXPECT_EQ(socket->State(), SocketState::kConnected);
  EXPECT_THAT(log, ElementsAre("connect"));
}

TEST_F(CSocketTest, LooksANameUpBeforeItConnects) {
  socket->Connect(u"server", 4999);
  EXPECT_EQ(socket->State(), SocketState::kResolvingHost);
  EXPECT_EQ(network.lookedUp, "server");

  network.TellLookUp(77, 0, 0x0A000009);

  EXPECT_EQ(socket->State(), SocketState::kConnecting);
  EXPECT_EQ(network.connectedTo.ip, 0x0A000009u);
  EXPECT_EQ(socket->RemoteHost(), u"server");
}

TEST_F(CSocketTest, FailsWhenTheNameIsNotKnown) {
  socket->Connect(u"server", 4999);

  network.TellLookUp(77, 11001, 0);

  EXPECT_EQ(socket->State(), SocketState::kError);
  EXPECT_THAT(log, ElementsAre("error 11001 Host not found. from CSocket.PostGetHostEvent"));
}

TEST_F(CSocketTest, FailsWhenTheConnectAfterALookUpFails) {
  network.errors.connect = 10051;
  socket->Connect(u"server", 4999);

  network.TellLookUp(77, 0, 1);

  EXPECT_EQ(socket->State(), SocketState::kError);
  EXPECT_THAT(log,
              ElementsAre("error 10051 Network is unreachable. from CSocket.PostGetHostEvent"));
}

TEST_F(CSocketTest, RaisesALookUpThatCannotStart) {
  network.errors.lookUp = 10055;

  const Raised raised = WhatIsRaised([&] { socket->Connect(u"server", 4999); });

  EXPECT_EQ(raised.number, 10055);
  EXPECT_EQ(raised.source, u"CSocket.Connect");
  EXPECT_EQ(socket->State(), SocketState::kError);
}

TEST_F(CSocketTest, ForgetsALookUpWhenItIsClosed) {
  socket->Connect(u"server", 4999);

  socket->CloseSocket();
  network.TellLookUp(77, 0, 1);

  EXPECT_EQ(network.cancelled, 77);
  EXPECT_EQ(socket->State(), SocketState::kClosed);
  EXPECT_EQ(network.connectedTo.ip, 0u);
}

TEST_F(CSocketTest, RaisesAConnectThatFailsAtOnce) {
  network.errors.connect = 10051;

  const Raised raised = WhatIsRaised([&] { socket->Connect(u"10.0.0.1", 4999); });

  EXPECT_EQ(raised.number, 10051);
  EXPECT_EQ(raised.source, u"CSocket.Connect");
  EXPECT_EQ(raised.description, u"Network is unreachable.");
  EXPECT_EQ(socket->State(), SocketState::kError);
}

TEST_F(CSocketTest, ReportsARefusedConnect) {
  socket->Connect(u"10.0.0.1", 4999);

  network.Tell(socket->SocketHandle(), SocketEvent::kConnect, 10061);

  EXPECT_EQ(socket->State(), SocketState::kError);
  EXPECT_EQ(socket->SocketHandle(), -1);
  EXPECT_THAT(log, ElementsAre("error 10061 Connection refused. from 16"));
}

TEST_F(CSocketTest, ConnectUsesWhatWasSetBefore) {
  socket->RemoteHost(u"10.0.0.1");
  socket->RemotePort(80);

  socket->Connect();

  EXPECT_EQ(network.connectedTo.ip, 0x0A000001u);
  EXPECT_EQ(network.connectedTo.port, 80);
}

TEST_F(CSocketTest, BindsToAllInterfacesWithoutAnAddress) {
  socket->Bind(4999, u"");

  EXPECT_EQ(network.bound.ip, 0u);
  EXPECT_EQ(network.bound.port, 4999);
  EXPECT_EQ(socket->State(), SocketState::kClosed);
  EXPECT_EQ(socket->LocalIP(), u"192.168.0.5");
}

TEST_F(CSocketTest, BindsToTheAddressItIsGiven) {
  socket->Bind(4999, u"127.0.0.1");

  EXPECT_EQ(network.bound.ip, 0x7F000001u);
  EXPECT_EQ(socket->LocalIP(), u"127.0.0.1");
}

TEST_F(CSocketTest, KnowsThePortItWasGivenForPortZero) {
  network.properties.local.port = 54321;

  socket->Bind(0, u"");

  EXPECT_EQ(socket->LocalPort(), 54321);
}

class PortOutOfRange : public CSocketTest, public testing::WithParamInterface<std::int32_t> {};

TEST_P(PortOutOfRange, IsAnInvalidArgument) {
  const Raised raised = WhatIsRaised([&] { socket->Bind(GetParam(), u""); });

  EXPECT_EQ(raised.number, 10022);
  EXPECT_EQ(raised.source, u"CSocket.Bind");
  EXPECT_TRUE(network.open.empty());
}

TEST_P(PortOutOfRange, CannotBeConnectedTo) {
  const Raised raised = WhatIsRaised([&] { socket->Connect(u"10.0.0.1", GetParam()); });

  EXPECT_EQ(raised.number, 10022);
  EXPECT_EQ(raised.source, u"CSocket.Connect");
}

TEST_F(CSocketTest, TakesTheHighestPort) {
  network.properties.local.port = 65535;

  socket->Bind(65535, u"");
  EXPECT_EQ(network.bound.port, 65535);
  socket->CloseSocket();
  socket->Connect(u"10.0.0.1", 65535);

  EXPECT_EQ(network.connectedTo.port, 65535);
  EXPECT_EQ(network.boundSocket, 101);
  EXPECT_EQ(network.connectedSocket, socket->SocketHandle());
}

INSTANTIATE_TEST_SUITE_P(CSocket, PortOutOfRange,
                         testing::Values(-1, 65536, 65536 + 4999, 0x7FFFFFFF));

TEST_F(CSocketTest, RaisesABindThatFails) {
  network.errors.bind = 10048;

  const Raised raised = WhatIsRaised([&] { socket->Bind(4999, u""); });

  EXPECT_EQ(raised.number, 10048);
  EXPECT_EQ(raised.source, u"CSocket.Bind");
  EXPECT_EQ(raised.description, u"Address already in use.");
}

TEST_F(CSocketTest, RaisesASocketThatCannotBeMade) {
  network.errors.open = 10024;

  const Raised raised = WhatIsRaised([&] { socket->Bind(4999, u""); });

  EXPECT_EQ(raised.number, 10024);
  EXPECT_EQ(raised.source, u"CSocket.vbSocket");
}

TEST_F(CSocketTest, ListensWithABacklogOfFive) {
  socket->Bind(4999, u"");

  socket->Listen();

  EXPECT_EQ(network.backlog, 5);
  EXPECT_EQ(socket->State(), SocketState::kListening);
}

TEST_F(CSocketTest, IsInErrorWhenItCannotListen) {
  network.errors.listen = 10048;
  socket->Bind(4999, u"");

  const Raised raised = WhatIsRaised([&] { socket->Listen(); });

  EXPECT_EQ(raised.source, u"CSocket.Listen");
  EXPECT_EQ(socket->State(), SocketState::kError);
}

TEST_F(CSocketTest, OffersAConnectionToItsOwner) {
  socket->Bind(4999, u"");
  socket->Listen();
  const auto accepting = CSocket::Create(support);
  socket->Events.OnConnectionRequest = [&](std::int32_t requestID) {
    accepting->Accept(requestID);
  };

  const auto connection = network.Arrives(socket->SocketHandle());

  EXPECT_EQ(accepting->SocketHandle(), connection);
  EXPECT_TRUE(network.open.contains(connection));
}

TEST_F(CSocketTest, ClosesAConnectionThatNobodyTakesOver) {
  socket->Bind(4999, u"");
  socket->Listen();

  const auto connection = network.Arrives(socket->SocketHandle());

  EXPECT_FALSE(network.open.contains(connection));
}

TEST_F(CSocketTest, GoesOnListeningWhenAConnectionIsGoneAgain) {
  socket->Bind(4999, u"");
  socket->Listen();
  network.waiting.push_back({kNoSocket, 10053});

  network.Tell(socket->SocketHandle(), SocketEvent::kAccept);
  network.Tell(socket->SocketHandle(), SocketEvent::kAccept);

  EXPECT_EQ(socket->State(), SocketState::kListening);
  EXPECT_TRUE(log.empty());
}

TEST_F(CSocketTest, GoesOnListeningWhenAHandlerFails) {
  socket->Bind(4999, u"");
  socket->Listen();
  socket->Events.OnConnectionRequest = [](std::int32_t) { throw std::bad_alloc(); };

  const auto connection = network.Arrives(socket->SocketHandle());

  EXPECT_EQ(socket->State(), SocketState::kListening);
  EXPECT_FALSE(network.open.contains(connection));
}

TEST_F(CSocketTest, ReportsTheWholeLengthOfWhatItHolds) {
  const auto handle = Accepted();

  network.Receives(handle, "abc");
  network.Receives(handle, "de");

  EXPECT_THAT(log, ElementsAre("data 3", "data 5"));
  EXPECT_EQ(socket->BytesReceived(), 5);
}

TEST_F(CSocketTest, IgnoresAReadWithNothingToRead) {
  const auto handle = Accepted();

  network.Tell(handle, SocketEvent::kRead);

  EXPECT_TRUE(log.empty());
  EXPECT_EQ(socket->State(), SocketState::kConnected);
}

TEST_F(CSocketTest, ReportsAReceiveThatFails) {
  const auto handle = Accepted();
  network.incoming[handle].push_back({"", 10054});

  network.Tell(handle, SocketEvent::kRead);

  EXPECT_EQ(socket->State(), SocketState::kError);
  EXPECT_THAT(
      log,
      ElementsAre("error 10054 Connection closed by Remote server. from CSocket.RecvToBuffer"));
}

TEST_F(CSocketTest, GetDataWithoutALengthTakesEverything) {
  network.Receives(Accepted(), "abcdef");

  EXPECT_EQ(Got(0), u"abcdef");
  EXPECT_EQ(socket->BytesReceived(), 0);
  EXPECT_EQ(Got(), u"");
}

TEST_F(CSocketTest, GetDataWithALargerLengthTakesEverything) {
  network.Receives(Accepted(), "abcdef");

  EXPECT_EQ(Got(100), u"abcdef");
  EXPECT_EQ(socket->BytesReceived(), 0);
}

TEST_F(CSocketTest, GetDataWithASmallerLengthKeepsTheRest) {
  network.Receives(Accepted(), "abcdef");

  EXPECT_EQ(Got(2), u"ab");
  EXPECT_EQ(socket->BytesReceived(), 4);
  EXPECT_EQ(Got(), u"cdef");
}

TEST_F(CSocketTest, PeekDataLeavesEverything) {
  network.Receives(Accepted(), "abcdef");

  EXPECT_EQ(Peeked(3), u"abc");
  EXPECT_EQ(Peeked(3), u"abc");
  EXPECT_EQ(socket->BytesReceived(), 6);
}

TEST_F(CSocketTest, GivesTextOneCharacterAByte) {
  network.Receives(Accepted(), "a\xFE\x1F");

  EXPECT_EQ(Got(), u"a\u00FE\u001F");
}

TEST_F(CSocketTest, GivesBytesAsTheyAre) {
  network.Receives(Accepted(), std::string("a\0\xFF", 3));
  std::vector<std::uint8_t> bytes;

  socket->GetData(bytes);

  EXPECT_THAT(bytes, ElementsAre('a', 0, 0xFF));
}

TEST_F(CSocketTest, GivesANumberFromItsFirstBytes) {
  network.Receives(Accepted(), std::string("\x04\x03\x02\x01\x7F", 5));
  std::int32_t number = 0;
  std::int16_t small = 0;

  socket->PeekData(small);
  socket->GetData(number, 4);

  EXPECT_EQ(small, 0x0304);
  EXPECT_EQ(number, 0x01020304);
  EXPECT_EQ(socket->BytesReceived(), 1);
}

TEST_F(CSocketTest, GivesANumberThatIsCutShortWithZeroes) {
  network.Receives(Accepted(), "\x01");
  std::int32_t number = -1;
  bool flag = false;

  socket->PeekData(flag);
  socket->GetData(number);
  EXPECT_EQ(number, 1);
  EXPECT_TRUE(flag);

  socket->GetData(number);
  EXPECT_EQ(number, 0);
}

TEST_F(CSocketTest, SendsEachTypeInItsMemoryForm) {
  const auto handle = Accepted();
  const auto sentBy = [&](const SocketValue& value) {
    network.sent[handle].clear();
    socket->SendData(value);
    return network.sent[handle];
  };
  const std::vector<std::uint8_t> bytes = {1, 0, 255};

  EXPECT_EQ(sentBy(u"a\u00FE\u20AC\u4E00"), "a\xFE\x80?");
  EXPECT_EQ(sentBy(bytes), std::string("\x01\0\xFF", 3));
  EXPECT_EQ(sentBy(true), "\xFF\xFF");
  EXPECT_EQ(sentBy(false), std::string(2, '\0'));
  EXPECT_EQ(sentBy(std::uint8_t{7}), "\x07");
  EXPECT_EQ(sentBy(std::int16_t{0x0102}), "\x02\x01");
  EXPECT_EQ(sentBy(std::int32_t{0x01020304}), "\x04\x03\x02\x01");
  EXPECT_EQ(sentBy(1.0f), std::string("\0\0\x80\x3F", 4));
  EXPECT_EQ(sentBy(1.0), std::string("\0\0\0\0\0\0\xF0\x3F", 8));
  EXPECT_EQ(sentBy(Currency{10000}), std::string("\x10\x27\0\0\0\0\0\0", 8));
  EXPECT_EQ(sentBy(DateValue{1.0}), std::string("\0\0\0\0\0\0\xF0\x3F", 8));
}

TEST_F(CSocketTest, SendDataOnAClosedSocketQueuesNothing) {
  const Raised raised = WhatIsRaised([&] { socket->SendData(u"abc"); });

  EXPECT_EQ(raised.number, 40006);
  EXPECT_EQ(raised.source, u"CSocket.SendData");
  EXPECT_EQ(raised.description,
            u"Wrong protocol or connection state for the requested transaction or request.");
  Accepted();
  socket->SendData(u"x");
  EXPECT_THAT(log, ElementsAre("sent 1 of 1"));
}

TEST_F(CSocketTest, SendStringChecksTheSameWay) {
  EXPECT_EQ(WhatIsRaised([&] { socket->SendString(u"abc"); }).number, 40006);
}

TEST_F(CSocketTest, SendsOncePerCallAndOncePerWriteNotification) {
  const auto handle = Accepted();
  network.room = {4, 0, 3};

  socket->SendData(u"abcdefghij");
  network.Tell(handle, SocketEvent::kWrite);
  network.Tell(handle, SocketEvent::kWrite);
  network.Tell(handle, SocketEvent::kWrite);

  EXPECT_EQ(network.sends, 4);
  EXPECT_EQ(network.sent[handle], "abcdefghij");
  EXPECT_THAT(log, ElementsAre("sent 4 of 10", "sent 3 of 6", "sent 3 of 3"));
}

TEST_F(CSocketTest, ReportsThatSendingIsCompleteOnce) {
  const auto handle = Accepted();
  socket->SendData(u"abc");
  log.clear();

  network.Tell(handle, SocketEvent::kWrite);
  network.Tell(handle, SocketEvent::kWrite);

  EXPECT_THAT(log, ElementsAre("complete"));
}

TEST_F(CSocketTest, RaisesASendThatFailsAndDropsWhatIsQueued) {
  const auto handle = Accepted();
  network.errors.send = 10053;

  const Raised raised = WhatIsRaised([&] { socket->SendData(u"abc"); });
  network.errors.send = 0;
  network.Tell(handle, SocketEvent::kWrite);

  EXPECT_EQ(raised.number, 10053);
  EXPECT_EQ(raised.source, u"CSocket.SendData");
  EXPECT_EQ(network.sent[handle], "");
}

TEST_F(CSocketTest, KeepsWhatWasQueuedBeforeASendThatFailsOnAConnectionThatIsThere) {
  const auto handle = Accepted();
  network.room = {0};
  socket->SendData(u"before ");
  network.errors.send = 10055;

  const Raised raised = WhatIsRaised([&] { socket->SendData(u"refused "); });
  network.errors.send = 0;
  socket->SendData(u"after");
  network.Tell(handle, SocketEvent::kWrite);

  EXPECT_EQ(raised.number, 10055);
  EXPECT_EQ(network.sent[handle], "before after");
}

TEST_F(CSocketTest, QueuesNothingOfAnOnlySendThatFails) {
  const auto handle = Accepted();
  network.errors.send = 10055;
  WhatIsRaised([&] { socket->SendData(u"refused"); });
  network.errors.send = 0;

  network.Tell(handle, SocketEvent::kWrite);

  EXPECT_EQ(socket->BytesToSend(), 0u);
  EXPECT_TRUE(log.empty());
}

TEST_F(CSocketTest, TakesBackAFailedPieceOfSeveralChunks) {
  const auto handle = Accepted();
  const std::string before(100'000, 'b');
  const Text refused(300'000, u'r');
  network.room = {1, 0};
  socket->SendData(std::span(reinterpret_cast<const std::uint8_t*>(before.data()), before.size()));
  socket->SendData(u"c");
  network.errors.send = 10055;

  WhatIsRaised([&] { socket->SendData(refused); });
  network.errors.send = 0;
  while (socket->BytesToSend() > 0) network.Tell(handle, SocketEvent::kWrite);

  EXPECT_EQ(network.sent[handle], before + "c");
}

TEST_F(CSocketTest, StillReportsThatSendingIsCompleteAfterAPieceThatFailed) {
  const auto handle = Accepted();
  socket->SendData(u"abc");
  network.errors.send = 10055;
  WhatIsRaised([&] { socket->SendData(u"refused"); });
  network.errors.send = 0;
  log.clear();

  network.Tell(handle, SocketEvent::kWrite);

  EXPECT_THAT(log, ElementsAre("complete"));
}

class LostConnection : public CSocketTest, public testing::WithParamInterface<int> {};

TEST_P(LostConnection, EmptiesTheQueue) {
  const auto handle = Accepted();
  network.room = {0};
  socket->SendData(u"before");
  network.errors.send = GetParam();

  const Raised raised = WhatIsRaised([&] { socket->SendData(u"after"); });
  network.errors.send = 0;
  network.Tell(handle, SocketEvent::kWrite);

  EXPECT_EQ(raised.number, GetParam());
  EXPECT_EQ(network.sent[handle], "");
  EXPECT_TRUE(log.empty());
}

INSTANTIATE_TEST_SUITE_P(CSocket, LostConnection,
                         testing::Values(10038, 10052, 10053, 10054, 10058, 10060));

TEST_F(CSocketTest, RaisesWantOfMemoryAndKeepsWhatIsQueued) {
  const auto handle = Accepted();
  network.room = {0};
  socket->SendData(u"before");
  const TextBudgetLimit limit(ProcessTextBudget().Held() + 100);

  EXPECT_THROW(socket->SendData(Text(200, u'x')), std::bad_alloc);
  network.Tell(handle, SocketEvent::kWrite);

  EXPECT_EQ(network.sent[handle], "before");
}

TEST_F(CSocketTest, CountsWhatIsQueuedAndWhatWasTaken) {
  const auto handle = Accepted();
  network.room = {4, 3};
  socket->SendData(u"abcdefghij");
  EXPECT_EQ(socket->BytesToSend(), 6u);
  EXPECT_EQ(socket->BytesSent(), 4u);

  network.Tell(handle, SocketEvent::kWrite);
  network.incoming[handle].push_back({""});
  network.room = {0};
  network.Tell(handle, SocketEvent::kClose);

  EXPECT_EQ(socket->BytesToSend(), 0u);
  EXPECT_EQ(socket->BytesSent(), 7u);
  socket->Accept(network.NewHandle());
  EXPECT_EQ(socket->BytesSent(), 0u);
}

TEST_F(CSocketTest, CountsAnewForItsNextSystemSocket) {
  Accepted();
  socket->SendData(u"abc");
  socket->vbSocket();

  EXPECT_EQ(socket->BytesSent(), 0u);
}

TEST_F(CSocketTest, GivesBackTheMemoryOfWhatWasSent) {
  const std::size_t before = ProcessTextBudget().Held();
  const auto handle = Accepted();
  network.room = {0};
  socket->SendData(Text(200'000, u'x'));
  const std::size_t queued = ProcessTextBudget().Held();

  network.Tell(handle, SocketEvent::kWrite);

  EXPECT_GE(queued, before + 200'000);
  EXPECT_EQ(ProcessTextBudget().Held(), before);
}

TEST_F(CSocketTest, ReportsTheLastDataBeforeTheClose) {
  const auto handle = Accepted();
  network.incoming[handle] = {{"abc"}, {"de"}};

  network.CloseByPeer(handle);

  EXPECT_THAT(log, ElementsAre("data 3", "data 5", "close"));
  EXPECT_EQ(socket->State(), SocketState::kClosed);
  EXPECT_EQ(socket->SocketHandle(), -1);
  EXPECT_FALSE(network.open.contains(handle));
}

TEST_F(CSocketTest, ReportsTheCloseWhenTheLastReceiveFails) {
  const auto handle = Accepted();
  network.incoming[handle] = {{"abc"}, {"", 10054}};

  network.Tell(handle, SocketEvent::kClose);

  EXPECT_THAT(log, ElementsAre("data 3", "close"));
}

TEST_F(CSocketTest, KeepsWhatItReceivedAndThePeersAddressAfterTheClose) {
  const auto handle = Accepted();
  network.incoming[handle] = {{"abc"}};

  network.CloseByPeer(handle);

  EXPECT_EQ(socket->BytesReceived(), 3);
  EXPECT_EQ(Got(), u"abc");
  EXPECT_EQ(socket->RemoteHostIP(), u"10.0.0.1");
}

TEST_F(CSocketTest, SendsWhatIsQueuedOnceMoreBeforeTheClose) {
  const auto handle = Accepted();
  network.room = {0};
  socket->SendData(u"abc");

  network.CloseByPeer(handle);

  EXPECT_EQ(network.sent[handle], "abc");
  EXPECT_THAT(log, ElementsAre("sent 3 of 3", "close"));
}

TEST_F(CSocketTest, PassesOnEveryChunkBeforeTheClose) {
  const auto handle = Accepted();
  network.room = {0, 0, 0};
  for (const char16_t letter : {u'a', u'b', u'c'}) socket->SendData(Text(70'000, letter));

  network.CloseByPeer(handle);

  EXPECT_EQ(network.sent[handle],
            std::string(70'000, 'a') + std::string(70'000, 'b') + std::string(70'000, 'c'));
}

TEST_F(CSocketTest, ClosesWithWhatThePeerDidNotTake) {
  const auto handle = Accepted();
  network.room = {0, 2, 0};
  socket->SendData(u"abc");

  network.CloseByPeer(handle);

  EXPECT_EQ(network.sent[handle], "ab");
  EXPECT_EQ(network.sends, 3);
  EXPECT_EQ(socket->State(), SocketState::kClosed);
}

TEST_F(CSocketTest, MayBeClosedByTheReportOfItsLastSending) {
  const auto handle = Accepted();
  network.room = {0, 1};
  socket->SendData(u"abc");
  socket->Events.OnSendProgress = [&](std::int32_t, std::int32_t) { socket->CloseSocket(); };

  network.CloseByPeer(handle);

  EXPECT_EQ(network.sent[handle], "a");
  EXPECT_EQ(socket->State(), SocketState::kClosed);
  EXPECT_TRUE(log.empty());
}

TEST_F(CSocketTest, ReportsTheCloseWhenThePeerTakesNoMore) {
  const auto handle = Accepted();
  network.room = {0};
  socket->SendData(u"abc");
  network.errors.send = 10054;

  network.CloseByPeer(handle);

  EXPECT_THAT(log, ElementsAre("close"));
  EXPECT_EQ(socket->State(), SocketState::kClosed);
}

TEST_F(CSocketTest, ClosesSilentlyWhenThisSideBeganTheClose) {
  const auto handle = Accepted();

  socket->CloseSocket();
  EXPECT_EQ(socket->State(), SocketState::kClosing);
  EXPECT_TRUE(network.shutDown.contains(handle));
  EXPECT_TRUE(network.open.contains(handle));
  network.CloseByPeer(handle);

  EXPECT_EQ(socket->State(), SocketState::kClosed);
  EXPECT_FALSE(network.open.contains(handle));
  EXPECT_TRUE(log.empty());
}

TEST_F(CSocketTest, EndsItsSendingOnceWhatIsQueuedHasGoneOut) {
  const auto handle = Accepted();
  network.room = {0, 2};
  socket->SendData(u"abc");

  socket->CloseSocket();
  EXPECT_EQ(socket->State(), SocketState::kClosing);
  network.Tell(handle, SocketEvent::kWrite);
  EXPECT_FALSE(network.shutDown.contains(handle));
  network.Tell(handle, SocketEvent::kWrite);

  EXPECT_TRUE(network.shutDown.contains(handle));
  EXPECT_EQ(network.sent[handle], "abc");
}

TEST_F(CSocketTest, TakesNoMoreOnceItIsToClose) {
  const auto handle = Accepted();
  network.room = {0};
  socket->SendData(u"abc");
  socket->CloseSocket();

  const Raised raised = WhatIsRaised([&] { socket->SendData(u"x"); });
  network.Tell(handle, SocketEvent::kWrite);

  EXPECT_EQ(raised.number, 10058);
  EXPECT_EQ(raised.source, u"CSocket.SendData");
  EXPECT_EQ(network.sent[handle], "abc");
}

TEST_F(CSocketTest, ClosesAtOnceWhenItIsClosedTwice) {
  const auto handle = Accepted();
  network.room = {0};
  socket->SendData(u"abc");

  socket->CloseSocket();
  socket->CloseSocket();

  EXPECT_EQ(socket->State(), SocketState::kClosed);
  EXPECT_FALSE(network.open.contains(handle));
}

TEST_F(CSocketTest, PassesOnWhatIsQueuedWhenThePeerClosesMeanwhile) {
  const auto handle = Accepted();
  network.room = {0};
  socket->SendData(u"abc");
  socket->CloseSocket();
  log.clear();

  network.CloseByPeer(handle);

  EXPECT_EQ(network.sent[handle], "abc");
  EXPECT_EQ(socket->State(), SocketState::kClosed);
  EXPECT_THAT(log, ElementsAre("sent 3 of 3"));
}

TEST_F(CSocketTest, DoesNotReportThatSendingIsCompleteAfterItsClose) {
  const auto handle = Accepted();
  socket->SendData(u"abc");
  log.clear();

  socket->CloseSocket();
  network.Tell(handle, SocketEvent::kWrite);

  EXPECT_TRUE(log.empty());
}

TEST_F(CSocketTest, OwesTheNextConnectionNoReportOfTheLast) {
  const auto first = Accepted();
  socket->SendData(u"abc");
  network.CloseByPeer(first);
  const auto second = Accepted();
  log.clear();

  network.Tell(second, SocketEvent::kWrite);

  EXPECT_TRUE(log.empty());
}

TEST_F(CSocketTest, EndsNothingOfTheNextConnection) {
  Accepted();
  network.room = {0};
  socket->SendData(u"abc");
  socket->CloseSocket();
  const auto second = Accepted();

  socket->SendData(u"def");
  network.Tell(second, SocketEvent::kWrite);

  EXPECT_EQ(network.sent[second], "def");
  EXPECT_FALSE(network.shutDown.contains(second));
}

TEST_F(CSocketTest, RaisesAShutdownThatFails) {
  Accepted();
  network.errors.shutdown = 10057;

  const Raised raised = WhatIsRaised([&] { socket->CloseSocket(); });

  EXPECT_EQ(raised.number, 10057);
  EXPECT_EQ(raised.source, u"CSocket.CloseSocket");
  EXPECT_EQ(socket->State(), SocketState::kClosing);
}

TEST_F(CSocketTest, ClosesAtOnceInEveryOtherState) {
  socket->Bind(4999, u"");
  socket->Listen();
  const auto handle = socket->SocketHandle();

  socket->CloseSocket();

  EXPECT_EQ(socket->State(), SocketState::kClosed);
  EXPECT_FALSE(network.open.contains(handle));
}

TEST_F(CSocketTest, LeavesTheErrorStateWhenItIsClosed) {
  network.Tell(Accepted(), SocketEvent::kClose, 10053);

  socket->CloseSocket();

  EXPECT_EQ(socket->State(), SocketState::kClosed);
}

TEST_F(CSocketTest, RaisesASystemSocketThatCannotBeClosed) {
  socket->Bind(4999, u"");
  network.errors.close = 10050;

  const Raised raised = WhatIsRaised([&] { socket->CloseSocket(); });

  EXPECT_EQ(raised.number, 10050);
  EXPECT_EQ(raised.source, u"CSocket.DestroySocket");
}

TEST_F(CSocketTest, ReportsANotificationThatCarriesAnError) {
  const auto handle = Accepted();

  network.Tell(handle, SocketEvent::kClose, 10053);

  EXPECT_THAT(log, ElementsAre("error 10053 Software caused connection abort. from 32"));
  EXPECT_EQ(socket->State(), SocketState::kError);
  EXPECT_EQ(socket->SocketHandle(), -1);
  EXPECT_FALSE(network.open.contains(handle));
}

TEST_F(CSocketTest, IsSilentAfterItIsClosed) {
  const auto handle = Accepted();
  network.CloseByPeer(handle);
  log.clear();

  network.Receives(handle, "late");
  network.Tell(handle, SocketEvent::kClose);

  EXPECT_TRUE(log.empty());
}

TEST_F(CSocketTest, BecomesAnErrorOfItsOwnWhenAHandlerFails) {
  const auto handle = Accepted();
  const auto other = CSocket::Create(support);
  Subscribe(*other);
  const auto otherHandle = network.NewHandle();
  other->Accept(otherHandle);
  socket->Events.OnDataArrival = [](std::int32_t) { throw std::bad_alloc(); };

  network.Receives(handle, "abc");
  network.Receives(otherHandle, "abc");

  EXPECT_THAT(log, ElementsAre("error 7 Out of memory from CSocket", "data 3"));
  EXPECT_EQ(socket->State(), SocketState::kError);
}

TEST_F(CSocketTest, PassesTheErrorOfAHandlerOn) {
  const auto handle = Accepted();
  socket->Events.OnDataArrival = [](std::int32_t) { throw RunTimeError(13, u"Handler", u"Oops"); };

  network.Receives(handle, "abc");

  EXPECT_THAT(log, ElementsAre("error 13 Oops from Handler"));
}

TEST_F(CSocketTest, TellsTheNumberOfAHandlersErrorWhole) {
  const auto handle = Accepted();
  const auto closed = CSocket::Create(support);
  socket->Events.OnDataArrival = [&](std::int32_t) { closed->SendData(u"x"); };

  network.Receives(handle, "abc");

  EXPECT_THAT(log, ElementsAre("error 40006 Wrong protocol or connection state for the requested "
                               "transaction or request. from CSocket.SendData"));
}

TEST_F(CSocketTest, TellsANumberThatDoesNotFitAsAnInternalError) {
  const auto handle = Accepted();
  const auto other = CSocket::Create(support);
  Subscribe(*other);
  const auto otherHandle = network.NewHandle();
  other->Accept(otherHandle);
  socket->Events.OnDataArrival = [](std::int32_t) { throw RunTimeError(65536, u"", u"Oops"); };
  other->Events.OnDataArrival = [](std::int32_t) { throw RunTimeError(65535, u"", u"Oops"); };

  network.Receives(handle, "abc");
  network.Receives(otherHandle, "abc");

  EXPECT_THAT(log, ElementsAre("error 51 Oops from ", "error 65535 Oops from "));
}

TEST_F(CSocketTest, MayConnectAnewFromTheHandlerOfItsLastData) {
  const auto handle = Accepted();
  network.incoming[handle] = {{"abc"}, {"de"}};
  socket->Events.OnDataArrival = [&](std::int32_t bytes) {
    log.push_back("data " + std::to_string(bytes));
    socket->CloseSocket();
    socket->CloseSocket();
    socket->Connect(u"10.0.0.7", 80);
    network.incoming[socket->SocketHandle()] = {{"not announced yet"}};
  };

  network.CloseByPeer(handle);

  EXPECT_THAT(log, ElementsAre("data 3"));
  EXPECT_EQ(socket->State(), SocketState::kConnecting);
  EXPECT_TRUE(network.open.contains(socket->SocketHandle()));
  EXPECT_EQ(socket->BytesReceived(), 0);
}

TEST_F(CSocketTest, ClosesItsFirstSystemSocketWhenItMakesASecond) {
  socket->vbSocket();
  const auto first = socket->SocketHandle();

  socket->vbSocket();
  const auto second = socket->SocketHandle();
  socket.reset();
  network.Tell(first, SocketEvent::kRead);
  network.Tell(second, SocketEvent::kRead);

  EXPECT_NE(first, second);
  EXPECT_TRUE(network.open.empty());
  EXPECT_TRUE(log.empty());
}

TEST_F(CSocketTest, IsClosedWithANewSystemSocketInPlaceOfAConnection) {
  const auto handle = Accepted();

  socket->vbSocket();

  EXPECT_FALSE(network.open.contains(handle));
  EXPECT_EQ(socket->State(), SocketState::kClosed);
}

TEST_F(CSocketTest, MayBeClosedByItsHandlerDuringTheClose) {
  const auto handle = Accepted();
  network.incoming[handle] = {{"abc"}, {"de"}};
  socket->Events.OnDataArrival = [&](std::int32_t) { socket->CloseSocket(); };

  network.CloseByPeer(handle);

  EXPECT_EQ(socket->State(), SocketState::kClosed);
  EXPECT_TRUE(log.empty());
}

TEST_F(CSocketTest, MayTakeOverAnotherConnectionInItsHandlerDuringTheClose) {
  const auto handle = Accepted();
  const auto other = network.NewHandle();
  network.incoming[handle] = {{"abc"}};
  network.incoming[other] = {{"not announced yet"}};
  socket->Events.OnDataArrival = [&](std::int32_t) {
    if (socket->SocketHandle() == handle) socket->Accept(other);
  };

  network.CloseByPeer(handle);

  EXPECT_EQ(socket->State(), SocketState::kConnected);
  EXPECT_EQ(socket->SocketHandle(), other);
  EXPECT_EQ(socket->BytesReceived(), 0);
  EXPECT_FALSE(network.open.contains(handle));
}

TEST_F(CSocketTest, MayConnectAnewFromTheHandlerOfItsClose) {
  const auto handle = Accepted();
  socket->Events.OnClose = [&] { socket->Connect(u"10.0.0.7", 80); };

  network.CloseByPeer(handle);

  EXPECT_EQ(socket->State(), SocketState::kConnecting);
  EXPECT_TRUE(network.open.contains(socket->SocketHandle()));
}

TEST_F(CSocketTest, MayBeLetGoOfByItsHandler) {
  const auto handle = Accepted();
  const std::weak_ptr<CSocket> watched = socket;
  network.incoming[handle] = {{"abc"}, {"de"}};
  socket->Events.OnDataArrival = [&](std::int32_t bytes) {
    log.push_back("data " + std::to_string(bytes));
    socket.reset();
  };

  network.CloseByPeer(handle);

  EXPECT_TRUE(watched.expired());
  EXPECT_FALSE(network.open.contains(handle));
  EXPECT_THAT(log, ElementsAre("data 3", "data 5", "close"));
}

TEST_F(CSocketTest, ClosesItsSystemSocketWhenItGoes) {
  const auto handle = Accepted();

  socket.reset();
  network.Tell(handle, SocketEvent::kRead);

  EXPECT_FALSE(network.open.contains(handle));
}

class Callback : public ISocketServer {
 public:
  MOCK_METHOD(void, OnClose, (std::int16_t), (override));
  MOCK_METHOD(void, OnConnect, (std::int16_t), (override));
  MOCK_METHOD(void, OnConnectionRequest, (std::int16_t, std::int32_t), (override));
  MOCK_METHOD(void, OnDataArrival, (std::int16_t, std::int32_t), (override));
  MOCK_METHOD(void, OnError,
              (std::int16_t, std::uint16_t, Text&, std::int32_t, TextView, TextView, std::int32_t,
               bool&),
              (override));
  MOCK_METHOD(void, OnSendComplete, (std::int16_t), (override));
  MOCK_METHOD(void, OnSendProgress, (std::int16_t, std::int32_t, std::int32_t), (override));
};

TEST_F(CSocketTest, ReportsToItsCallbackInsteadOfItsEvents) {
  testing::StrictMock<Callback> callback;
  const testing::InSequence inOrder;
  EXPECT_CALL(callback, OnSendProgress(5, 2, 0));
  EXPECT_CALL(callback, OnSendComplete(5));
  EXPECT_CALL(callback, OnDataArrival(5, 3));
  EXPECT_CALL(callback, OnClose(5));
  const auto handle = Accepted();

  socket->SetCallback(5, &callback);
  socket->SendData(u"ab");
  network.Tell(handle, SocketEvent::kWrite);
  network.Receives(handle, "abc");
  network.CloseByPeer(handle);

  EXPECT_TRUE(log.empty());
}

TEST_F(CSocketTest, ReportsErrorsAndConnectionsToItsCallback) {
  testing::StrictMock<Callback> callback;
  const testing::InSequence inOrder;
  EXPECT_CALL(callback, OnConnect(5));
  EXPECT_CALL(callback, OnError(5, 10053, testing::Eq(Text(u"Software caused connection abort.")),
                                0, TextView(u"1"), TextView(), 0, testing::Eq(false)));
  socket->SetCallback(5, &callback);
  socket->Connect(u"10.0.0.1", 80);

  const auto handle = socket->SocketHandle();
  network.Tell(handle, SocketEvent::kConnect);
  network.Tell(handle, SocketEvent::kRead, 10053);

  EXPECT_TRUE(log.empty());
}

TEST_F(CSocketTest, ForgetsTheIndexWithTheCallback) {
  testing::StrictMock<Callback> callback;
  const auto handle = Accepted();
  EXPECT_CALL(callback, OnDataArrival(0, 1));

  socket->SetCallback(5, nullptr);
  network.Receives(handle, "abc");
  EXPECT_THAT(log, ElementsAre("data 3"));
  Got();
  socket->SetCallback(0, &callback);
  network.Receives(handle, "x");
}

TEST_F(CSocketTest, HasNoIndexWithoutACallback) {
  testing::StrictMock<Callback> callback;
  EXPECT_EQ(socket->CallbackIndex(), 0);

  socket->SetCallback(5, &callback);
  EXPECT_EQ(socket->CallbackIndex(), 5);

  socket->SetCallback(6, nullptr);
  EXPECT_EQ(socket->CallbackIndex(), 0);
}

TEST_F(CSocketTest, OffersAConnectionToItsCallbackInsteadOfItsEvents) {
  testing::StrictMock<Callback> callback;
  socket->Events.OnConnectionRequest = [this](std::int32_t) { log.push_back("request"); };
  socket->SetCallback(5, &callback);
  socket->Bind(4999, u"");
  socket->Listen();
  EXPECT_CALL(callback, OnConnectionRequest(5, testing::_));

  network.Arrives(socket->SocketHandle());

  EXPECT_TRUE(log.empty());
}

TEST_F(CSocketTest, KnowsTheMachinesName) { EXPECT_EQ(socket->LocalHostName(), u"OWNNAME"); }

TEST_F(CSocketTest, MakesADatagramSocketOnFirstUse) {
  socket->protocol(platform::SocketProtocol::kUdp);

  socket->SendData(u"abc");

  EXPECT_EQ(network.sent[socket->SocketHandle()], "abc");
}

TEST_F(CSocketTest, SendsADatagramToItsPeer) {
  socket->protocol(platform::SocketProtocol::kUdp);
  socket->Connect(u"10.0.0.7", 80);

  socket->SendData(u"abc");

  ASSERT_EQ(network.offered.size(), 1u);
  const auto& sent = network.offered[0];
  EXPECT_EQ(sent.bytes, "abc");
  EXPECT_EQ(sent.socket, socket->SocketHandle());
  ASSERT_TRUE(sent.peer);
  EXPECT_EQ(sent.peer->ip, 0x0A000007u);
  EXPECT_EQ(sent.peer->port, 80);
}

TEST_F(CSocketTest, NamesNoPeerWhenItSendsOnAConnection) {
  Accepted();

  socket->SendData(u"abc");

  EXPECT_FALSE(network.offered.at(0).peer);
}

TEST_F(CSocketTest, RepliesToTheSenderOfADatagram) {
  socket->protocol(platform::SocketProtocol::kUdp);
  socket->Bind(4999, u"");
  const auto handle = socket->SocketHandle();
  network.incoming[handle] = {{"abc", 0, {0x0A000009, 1234}}};

  network.Tell(handle, SocketEvent::kRead);
  socket->SendData(u"reply");

  EXPECT_EQ(socket->RemoteHostIP(), u"10.0.0.9");
  EXPECT_EQ(socket->RemotePort(), 1234);
  EXPECT_EQ(network.offered.at(0).peer->ip, 0x0A000009u);
  EXPECT_EQ(network.offered.at(0).peer->port, 1234);
}

TEST_F(CSocketTest, IsConnectedAtOnceAsADatagramSocket) {
  socket->protocol(platform::SocketProtocol::kUdp);

  socket->Connect(u"10.0.0.7", 80);

  EXPECT_EQ(socket->State(), SocketState::kConnected);
}

TEST_F(CSocketTest, ReceivesDatagramsOfEverySizeAndStreamsInChunks) {
  network.properties.receiveBytes = 4000;
  const auto stream = Accepted();
  network.Tell(stream, SocketEvent::kRead);
  EXPECT_EQ(network.receiveBuffer, 4000u);

  socket->CloseSocket();
  socket->CloseSocket();
  socket->protocol(platform::SocketProtocol::kUdp);
  socket->Bind(4999, u"");
  network.Tell(socket->SocketHandle(), SocketEvent::kRead);
  EXPECT_EQ(network.receiveBuffer, 65467u);
}

TEST_F(CSocketTest, ReceivesNoMoreThanAMebibyteAtOnceAndAtLeastAByte) {
  network.properties.receiveBytes = 4 * 1024 * 1024;
  network.Tell(Accepted(), SocketEvent::kRead);
  EXPECT_EQ(network.receiveBuffer, 1024u * 1024);

  network.properties.receiveBytes = -1;  // the system does not tell
  network.Tell(Accepted(), SocketEvent::kRead);
  EXPECT_EQ(network.receiveBuffer, 1u);
}

}  // namespace
}  // namespace ostrel
