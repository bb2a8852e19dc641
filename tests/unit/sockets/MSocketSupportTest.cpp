#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <utility>

#include "sockets/MSocketSupport.h"
#include "sockets/SocketErrorText.h"
#include "tests/unit/doubles/FakeSockets.h"
#include "util/RunTimeError.h"

namespace ostrel {
namespace {

using doubles::FakeSockets;
using doubles::SocketEvent;

class Owner final : public SocketOwner {
 public:
  void OnNotification(SocketEvent event, int error) override {
    events.emplace_back(event, error);
    if (onNotification) onNotification();
  }
  void PostGetHostEvent(int error, std::uint32_t ip) override { hosts.emplace_back(error, ip); }
  void OnException(const std::exception_ptr&) override {
    ++exceptions;
    throw std::runtime_error("the report fails too");
  }

  std::vector<std::pair<SocketEvent, int>> events;
  std::vector<std::pair<int, std::uint32_t>> hosts;
  int exceptions = 0;
  std::function<void()> onNotification;
};

class MSocketSupportTest : public testing::Test {
 protected:
  MSocketSupportTest() { Err.Clear(); }

  FakeSockets network;
  MSocketSupport support{network, network, network};
  std::shared_ptr<Owner> owner = std::make_shared<Owner>();
};

TEST_F(MSocketSupportTest, StartsTheServiceOnce) {
  support.InitWinsockService();
  support.InitWinsockService();

  EXPECT_EQ(network.starts, 1);
  EXPECT_TRUE(support.Started());
  EXPECT_EQ(support.LargestDatagram(), 65467);
}

TEST_F(MSocketSupportTest, MayBeStartedAgainAfterItsCleanup) {
  support.InitWinsockService();
  support.Cleanup();
  support.Cleanup();
  support.InitWinsockService();

  EXPECT_EQ(network.cleanUps, 1);
  EXPECT_EQ(network.starts, 2);
}

TEST_F(MSocketSupportTest, IsToldOfSocketsAgainAfterItsCleanup) {
  support.InitWinsockService();
  ASSERT_TRUE(support.RegisterSocket(7, *owner));
  ASSERT_TRUE(support.RegisterSocket(8, *owner));
  EXPECT_EQ(network.sinksConnected, 1);

  support.Cleanup();
  network.Tell(7, SocketEvent::kRead);
  EXPECT_TRUE(owner->events.empty());
  ASSERT_TRUE(support.RegisterSocket(9, *owner));
  network.Tell(9, SocketEvent::kRead);

  EXPECT_EQ(network.sinksConnected, 2);
  EXPECT_EQ(owner->events.size(), 1u);
}

struct StartUpFailure {
  int number;
  TextView description;
};

class StartUpFails : public MSocketSupportTest,
                     public testing::WithParamInterface<StartUpFailure> {};

TEST_P(StartUpFails, WithItsText) {
  network.errors.startUp = GetParam().number;

  try {
    support.InitWinsockService();
    FAIL();
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Number, GetParam().number);
    EXPECT_EQ(error.Source, u"MSocketSupport.InitWinsockService");
    EXPECT_EQ(error.Description, GetParam().description);
  }
  EXPECT_FALSE(support.Started());
}

INSTANTIATE_TEST_SUITE_P(
    MSocketSupport, StartUpFails,
    testing::Values(
        StartUpFailure{10092,
                       u"The version of Windows Sockets API support requested is not provided by "
                       u"this particular Windows Sockets implementation."},
        StartUpFailure{10022,
                       u"The Windows Sockets version specified by the application is not supported "
                       u"by this DLL."},
        StartUpFailure{10091,
                       u"The underlying network subsystem is not ready for network "
                       u"communication."},
        StartUpFailure{10067, u"Too many processes."}));

TEST_F(MSocketSupportTest, HandsANotificationToTheOwnerOfItsSocket) {
  ASSERT_TRUE(support.RegisterSocket(7, *owner));

  network.Tell(7, SocketEvent::kRead, 0);
  network.Tell(7, SocketEvent::kClose, 10053);

  EXPECT_THAT(owner->events, testing::ElementsAre(std::pair(SocketEvent::kRead, 0),
                                                  std::pair(SocketEvent::kClose, 10053)));
}

TEST_F(MSocketSupportTest, CannotRegisterWithoutTheWindow) {
  network.sinkCanBeHad = false;

  EXPECT_FALSE(support.RegisterSocket(7, *owner));

  EXPECT_EQ(Err.Number, 10004);
  EXPECT_EQ(Err.Description, u"The operation was canceled.");
  EXPECT_EQ(Err.Source, u"MSocketSupport.RegisterSocket");
}

TEST_F(MSocketSupportTest, CannotLookUpWithoutTheWindow) {
  network.sinkCanBeHad = false;

  EXPECT_EQ(support.ResolveHost(u"server", *owner), 0);

  EXPECT_EQ(network.lookedUp, "");
  EXPECT_EQ(Err.Number, 10004);
  EXPECT_EQ(Err.Source, u"MSocketSupport.ResolveHost");
}

TEST_F(MSocketSupportTest, LeavesAFailedRegistrationInThePendingError) {
  network.errors.select = 10038;

  EXPECT_FALSE(support.RegisterSocket(7, *owner));
  network.Tell(7, SocketEvent::kRead);

  EXPECT_EQ(Err.Number, 10038);
  EXPECT_EQ(Err.Description, u"Socket operation on nonsocket.");
  EXPECT_EQ(Err.Source, u"MSocketSupport.RegisterSocket");
  EXPECT_TRUE(owner->events.empty());
}

TEST_F(MSocketSupportTest, DropsANotificationForASocketThatIsNotRegistered) {
  support.RegisterSocket(7, *owner);
  EXPECT_TRUE(support.UnregisterSocket(7));

  network.Tell(7, SocketEvent::kRead);
  network.Tell(8, SocketEvent::kRead);

  EXPECT_TRUE(owner->events.empty());
  EXPECT_FALSE(support.UnregisterSocket(7));
}

TEST_F(MSocketSupportTest, KeepsSocketsAndLookUpsOfTheSameNumberApart) {
  const auto waiting = std::make_shared<Owner>();
  const auto lookUp = support.ResolveHost(u"server", *waiting);
  support.RegisterSocket(lookUp, *owner);

  network.Tell(lookUp, SocketEvent::kRead);
  network.TellLookUp(lookUp, 0, 0x01020304);

  EXPECT_EQ(owner->events.size(), 1u);
  EXPECT_TRUE(owner->hosts.empty());
  EXPECT_THAT(waiting->hosts, testing::ElementsAre(std::pair(0, 0x01020304u)));
}

TEST_F(MSocketSupportTest, FinishesALookUpOnce) {
  const auto lookUp = support.ResolveHost(u"server", *owner);

  network.TellLookUp(lookUp, 11001, 0);
  network.TellLookUp(lookUp, 0, 1);

  EXPECT_EQ(network.lookedUp, "server");
  EXPECT_THAT(owner->hosts, testing::ElementsAre(std::pair(11001, 0u)));
}

TEST_F(MSocketSupportTest, LeavesALookUpThatCannotStartInThePendingError) {
  network.errors.lookUp = 10055;

  EXPECT_EQ(support.ResolveHost(u"server", *owner), 0);

  EXPECT_EQ(Err.Number, 10055);
  EXPECT_EQ(Err.Description, u"No buffer space available.");
  EXPECT_EQ(Err.Source, u"MSocketSupport.ResolveHost");
}

TEST_F(MSocketSupportTest, TellsNothingOfACancelledLookUp) {
  const auto lookUp = support.ResolveHost(u"server", *owner);

  support.CancelResolve(lookUp);
  network.TellLookUp(lookUp, 0, 1);

  EXPECT_EQ(network.cancelled, lookUp);
  EXPECT_TRUE(owner->hosts.empty());
}

TEST_F(MSocketSupportTest, KeepsAnOwnerAliveWhileItIsBeingTold) {
  support.RegisterSocket(7, *owner);
  const std::weak_ptr<Owner> watched = owner;
  bool aliveInside = false;
  owner->onNotification = [&] {
    support.UnregisterSocket(7);
    owner.reset();
    aliveInside = !watched.expired();
  };

  network.Tell(7, SocketEvent::kRead);

  EXPECT_TRUE(aliveInside);
  EXPECT_TRUE(watched.expired());
}

TEST_F(MSocketSupportTest, KeepsAnExceptionAwayFromTheSystem) {
  support.RegisterSocket(7, *owner);
  owner->onNotification = [] { throw std::bad_alloc(); };

  network.Tell(7, SocketEvent::kRead);

  EXPECT_EQ(owner->exceptions, 1);
}

TEST_F(MSocketSupportTest, TakesADottedAddressAsItIsAndAsksForAName) {
  EXPECT_EQ(support.AddressOf(u"1.2.3.4"), 0x01020304u);
  EXPECT_EQ(network.lookedUp, "");

  EXPECT_EQ(support.AddressOf(u"server"), 0x0A000002u);
  EXPECT_EQ(network.lookedUp, "server");

  network.hostAddress.reset();
  EXPECT_EQ(support.AddressOf(u"server"), 0xFFFFFFFFu);
}

constexpr std::pair<int, TextView> kTexts[] = {
    {10004, u"Interrupted function call."},
    {10013, u"Permission denied."},
    {10014, u"Bad address."},
    {10022, u"Invalid argument."},
    {10024, u"Too many open files."},
    {10035, u"Resource temporarily unavailable."},
    {10036, u"Operation now in progress."},
    {10037, u"Operation already in progress."},
    {10038, u"Socket operation on nonsocket."},
    {10039, u"Destination address required."},
    {10040, u"Message too long."},
    {10041, u"Protocol wrong type for socket."},
    {10042, u"Bad protocol option."},
    {10043, u"Protocol not supported."},
    {10044, u"Socket type not supported."},
    {10045, u"Operation not supported."},
    {10046, u"Protocol family not supported."},
    {10047, u"Address family not supported by protocol family."},
    {10048, u"Address already in use."},
    {10049, u"Cannot assign requested address."},
    {10050, u"Network is down."},
    {10051, u"Network is unreachable."},
    {10052, u"Network dropped connection on reset."},
    {10053, u"Software caused connection abort."},
    {10054, u"Connection closed by Remote server."},
    {10055, u"No buffer space available."},
    {10056, u"Socket is already connected."},
    {10057, u"Socket is not connected."},
    {10058, u"Cannot send after socket shutdown."},
    {10060, u"Connection timed out."},
    {10061, u"Connection refused."},
    {10064, u"Host is down."},
    {10065, u"No route to host."},
    {10067, u"Too many processes."},
    {10091, u"Network subsystem is unavailable."},
    {10092, u"Winsock.dll version out of range."},
    {10093, u"Successful WSAStartup not yet performed."},
    {10101, u"Graceful shutdown in progress."},
    {10107, u"System call failure."},
    {10109, u"Class type not found."},
    {11001, u"Host not found."},
    {11002, u"Nonauthoritative host not found."},
    {11003, u"This is a nonrecoverable error."},
    {11004, u"Valid name, no data record of requested type."},
};

TEST(SocketErrorText, KnowsFortyFourTextsAndNoOther) {
  std::map<int, TextView> texts(std::begin(kTexts), std::end(kTexts));
  EXPECT_EQ(texts.size(), 44u);

  for (int number = 9'999; number <= 11'100; ++number) {
    const auto known = texts.find(number);
    EXPECT_EQ(SocketErrorText(number), known == texts.end() ? u"Unknown error." : known->second)
        << number;
  }
}

TEST(SocketErrorText, KnowsTheTextOfEachNumber) {
  EXPECT_EQ(SocketErrorText(10004), u"Interrupted function call.");
  EXPECT_EQ(SocketErrorText(10035), u"Resource temporarily unavailable.");
  EXPECT_EQ(SocketErrorText(10048), u"Address already in use.");
  EXPECT_EQ(SocketErrorText(10053), u"Software caused connection abort.");
  EXPECT_EQ(SocketErrorText(11004), u"Valid name, no data record of requested type.");
}

TEST(SocketErrorText, NamesTheRemoteServerForAReset) {  // Kept: people know it from the status list
  EXPECT_EQ(SocketErrorText(10054), u"Connection closed by Remote server.");
}

TEST(SocketErrorText, IsTheSameForEveryOtherNumber) {
  EXPECT_EQ(SocketErrorText(12345), u"Unknown error.");
  EXPECT_EQ(SocketErrorText(0), u"Unknown error.");
}

}  // namespace
}  // namespace ostrel
