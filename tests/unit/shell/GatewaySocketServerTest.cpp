#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/BorrowedSocketService.h"
#include "tests/unit/doubles/FakeSockets.h"
#include "tests/unit/doubles/FakeTrace.h"
#include "transports/GatewaySocketServer.h"

namespace ostrel {
namespace {

using doubles::SocketEvent;
using testing::ElementsAre;
using testing::IsEmpty;

class GatewaySocketServerTest : public testing::Test {
 protected:
  GatewaySocketServerTest() {
    Settings.lBlockSize = kDefaultBlockSize;
    Transport.DoEvents = [] {};
    Settings.lSocketPort = 4999;
    Transport.Start();
    Trace.Status.clear();
  }

  // A client's connection; the first has index 1.
  platform::SocketHandle Connect() {
    EXPECT_TRUE(Server.StartServer(4999));
    return Network.Arrives(Network.lastOpened);
  }

  doubles::FakeSockets Network;
  MSocketSupport Support{Network, Network, Network};
  doubles::FakeTrace Trace;
  TransportSettings Settings;
  RequestGate Gate;
  std::vector<Text> Requests;
  SocketTransport Transport{Settings, Trace, Gate,
                            [this](Text& request, Text& response) {
                              Requests.push_back(request);
                              response = u"ok";
                              return 0.0F;
                            },
                            BorrowedSocketService::Factory(Server)};
  GatewaySocketServer Server{Transport, Trace, Support};
};

TEST_F(GatewaySocketServerTest, TellsWhetherItHasStarted) {
  EXPECT_TRUE(Server.StartServer(4999));
  EXPECT_TRUE(Server.ServerStarted());
  EXPECT_EQ(Network.bound.port, 4999);
  EXPECT_EQ(Network.bound.ip, 0U);

  Network.errors.bind = 10048;
  EXPECT_FALSE(Server.StartServer(4999));
  EXPECT_FALSE(Server.ServerStarted());
}

TEST_F(GatewaySocketServerTest, TakesEveryPortThatThereIs) {
  EXPECT_TRUE(Server.StartServer(65535));
  EXPECT_TRUE(Server.StartServer(0));

  EXPECT_FALSE(Server.StartServer(65536));
  EXPECT_FALSE(Server.StartServer(-1));
}

TEST_F(GatewaySocketServerTest, BringsRequestsToTheTransportAndResponsesBack) {
  const auto client = Connect();

  Network.Receives(client, "request\x1F");
  Transport.tmrSocketProcess_Timer();

  EXPECT_THAT(Requests, ElementsAre(u"request"));
  EXPECT_EQ(Network.sent[client], "4\xFEok\x1F");
}

TEST_F(GatewaySocketServerTest, TellsTheTransportOfACloseAndOfTheNextConnection) {
  const auto first = Connect();
  Network.Receives(first, "waits\x1F");
  Network.CloseByPeer(first);

  Network.Receives(Network.Arrives(Network.listeningSocket), "next\x1F");
  Transport.tmrSocketProcess_Timer();
  Transport.tmrSocketProcess_Timer();

  EXPECT_THAT(Requests, ElementsAre(u"next"));
}

TEST_F(GatewaySocketServerTest, TellsTheTransportOfAnError) {
  const auto client = Connect();

  Network.Tell(client, SocketEvent::kRead, 10053);

  EXPECT_THAT(Trace.Status,
              ElementsAre(u"Socket Error 1 - 10053 - Software caused connection abort."));
}

TEST_F(GatewaySocketServerTest, TellsWhatTheClientHasNotTaken) {
  Connect();
  Network.room = {2};

  Server.SendData("abcde", 1);

  EXPECT_EQ(Server.BytesToSend(1), 3U);
  EXPECT_EQ(Server.BytesSent(1), 2U);
}

TEST_F(GatewaySocketServerTest, EndsItsListenerItsConnectionsAndOneOfThem) {
  const auto first = Connect();
  const auto second = Network.Arrives(Network.listeningSocket);

  Server.CloseSocket(1);
  EXPECT_TRUE(Network.shutDown.contains(first));
  EXPECT_FALSE(Network.shutDown.contains(second));
  Server.StopListening();
  EXPECT_EQ(Network.open.size(), 2U);
  Server.StopServer();

  EXPECT_THAT(Network.open, IsEmpty());
}

}  // namespace
}  // namespace ostrel
