#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>

#include "platform/EventLoop.h"
#include "platform/SocketNotifications.h"
#include "platform/Sockets.h"
#include "quickbooks/ErrorNumbers.h"
#include "tests/contract/quickbooks/Implementations.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel {
namespace {

using platform::DoEventsFor;
using platform::Timer;
using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using testing::HasSubstr;

Text Request(TextView message) {
  return u"<?xml version=\"1.0\"?><?qbxml version=\"3.0\"?><QBXML><QBXMLMsgsRq "
         u"onError=\"stopOnError\">" +
         Text(message) + u"</QBXMLMsgsRq></QBXML>";
}

/// The error with which an operation failed; number 0 when it did not.
RequestProcessorError FailureOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const RequestProcessorError& error) {
    return error;
  }
  return {0, u""};
}

std::uint32_t NumberOf(const RequestProcessorError& error) {
  return static_cast<std::uint32_t>(error.Number);
}

/// One client, and the company file that it opens.
class Client {
 public:
  explicit Client(const Implementation& implementation) : oProcessor(implementation.make()) {}

  void Begin(TextView companyFile) {
    oProcessor->OpenConnection(u"ostrel", u"Ostrel");
    sTicket = oProcessor->BeginSession(companyFile, FileMode::kDoNotCare);
  }
  Text Ask(TextView message) { return oProcessor->ProcessRequest(sTicket, Request(message)); }
  void End() {
    oProcessor->EndSession(sTicket);
    oProcessor->CloseConnection();
  }
  RequestProcessor* operator->() { return oProcessor.get(); }
  const Text& Ticket() const { return sTicket; }

 private:
  std::unique_ptr<RequestProcessor> oProcessor;
  Text sTicket;
};

class RequestProcessorTest : public testing::TestWithParam<Implementation> {
 protected:
  static Client Connect() { return Client(GetParam()); }
  /// The path of a company file.
  Text Company(std::string_view behaviour = {}, std::string_view content = {}) {
    oFolder.Write(u"company.qbw", "<Company name='Hale'><Behaviour " + std::string(behaviour) +
                                      "/>" + std::string(content) + "</Company>");
    return oFolder.Path(u"company.qbw");
  }

  ScratchFolder oFolder;
};

INSTANTIATE_TEST_SUITE_P(Each, RequestProcessorTest, testing::ValuesIn(Implementations()),
                         [](const auto& tested) { return tested.param.name; });

TEST_P(RequestProcessorTest, ProcessesARequestInASession) {
  const Text company = Company();
  Client client = Connect();
  client.Begin(company);

  EXPECT_EQ(client.Ticket().size(), 38u);
  EXPECT_EQ(client->GetCurrentCompanyFileName(client.Ticket()), company);
  EXPECT_THAT(ToUtf8(client.Ask(u"<HostQueryRq/>")), HasSubstr("<QBFileMode>SingleUser"));

  client.End();
  client.Begin(company);
  client.End();
}

TEST_P(RequestProcessorTest, OpensTheCompanyInTheModeAskedFor) {
  Client client = Connect();
  client->OpenConnection(u"", u"Ostrel");
  const Text ticket = client->BeginSession(Company(), FileMode::kMultiUser);

  EXPECT_THAT(ToUtf8(client->ProcessRequest(ticket, Request(u"<HostQueryRq/>"))),
              HasSubstr("<QBFileMode>MultiUser"));
}

TEST_P(RequestProcessorTest, CarriesNamesInAnyScript) {
  oFolder.Write(u"Müller & Söhne – Ωμέγα.qbw", "<Company/>");
  const Text path = oFolder.Path(u"Müller & Söhne – Ωμέγα.qbw");
  Client client = Connect();
  client.Begin(path);

  EXPECT_EQ(client->GetCurrentCompanyFileName(client.Ticket()), path);
}

// Its responses are 7-bit texts, as QuickBooks' own are.
TEST_P(RequestProcessorTest, CarriesLineBreaksAndLettersOfRequestsAndResponses) {
  Client client = Connect();
  client.Begin(Company({}, "<CompanyInfo><Addr1>Quay 1\nTown</Addr1></CompanyInfo>"));

  const Text response = client.Ask(
      u"\r\n<CustomerAddRq><CustomerAdd>\r\n<Name>Ångström™</Name></CustomerAdd></CustomerAddRq>"
      u"\r\n<CompanyQueryRq/>");

  EXPECT_THAT(ToUtf8(response), HasSubstr("<Name>&#197;ngstr&#246;m&#8482;</Name>"));
  EXPECT_THAT(ToUtf8(response), HasSubstr("<Addr1>Quay 1\nTown</Addr1>"));
}

TEST_P(RequestProcessorTest, CarriesThreeMillionCharactersBothWays) {
  const std::string note = "<Notes>" + std::string(1'000'000, 'x') + "</Notes>";
  const std::string notes = note + "\n" + note + "\n" + note + "\n";
  Client client = Connect();
  client.Begin(Company({}, "<CompanyInfo>" + notes + "</CompanyInfo>"));

  const Text response = client.Ask(u"<!-- " + Text(3'000'000, u'y') + u" --><CompanyQueryRq/>");

  EXPECT_TRUE(Contains(response, FromAscii(notes)));
}

TEST_P(RequestProcessorTest, FailsWithNumberAndSentence) {
  const Text company = Company();
  Client client = Connect();
  const auto failure = [&](const std::function<void()>& operation) {
    const RequestProcessorError error = FailureOf(operation);
    return std::pair(NumberOf(error), ToUtf8(error.Description));
  };

  EXPECT_EQ(failure([&] { client->BeginSession(company, FileMode::kDoNotCare); }),
            std::pair(0x8004040Fu, std::string("The OpenConnection method has not been called.")));
  EXPECT_EQ(failure([&] { client.Begin(oFolder.Path(u"none.qbw")); }),
            std::pair(0x80040403u,
                      std::string("Could not open the specified QuickBooks company data file.")));
  client->CloseConnection();
  client.Begin(company);
  EXPECT_EQ(failure([&] { client->ProcessRequest(u"{none}", u"<QBXML/>"); }),
            std::pair(0x8004040Du, std::string("The ticket parameter is invalid.")));
  EXPECT_EQ(failure([&] { client->ProcessRequest(client.Ticket(), u"<QBXML"); }),
            std::pair(0x80040400u, std::string("QuickBooks found an error when parsing the "
                                               "provided XML text stream.")));
}

TEST_P(RequestProcessorTest, FailsWithoutASentenceWhereThereIsNone) {
  Client client = Connect();
  client.Begin(Company("processRequestError='0x8000ABCD'"));

  const RequestProcessorError error = FailureOf([&] { client.Ask(u"<HostQueryRq/>"); });

  EXPECT_EQ(NumberOf(error), 0x8000ABCD);
  EXPECT_EQ(error.Description, u"");
}

TEST_P(RequestProcessorTest, LetsTimersTickWhileQuickBooksIsSlow) {
  Client client = Connect();
  client.Begin(Company("processRequestSeconds='0.5'"));
  int ticks = 0;
  Timer timer(milliseconds(25), [&] { ++ticks; });
  timer.SetEnabled(true);

  client.Ask(u"<HostQueryRq/>");

  EXPECT_GE(ticks, 10);
}

class AcceptCounter final : public platform::SocketSink {
 public:
  void OnSocket(platform::SocketHandle, platform::SocketEvent event, int) noexcept override {
    if (event == platform::SocketEvent::kAccept) ++accepted;
  }
  void OnLookUp(platform::LookUpHandle, int, std::uint32_t) noexcept override {}

  int accepted = 0;
};

TEST_P(RequestProcessorTest, LetsSocketsBeServedWhileQuickBooksIsSlow) {
  constexpr std::uint32_t kLoopback = 0x7F000001;
  auto& sockets = platform::SystemSockets();
  auto& notifier = platform::SystemSocketNotifications();
  AcceptCounter sink;
  ASSERT_EQ(notifier.StartUp().error, 0);
  ASSERT_TRUE(notifier.ConnectSink(sink));
  const auto listener = sockets.Open(platform::SocketProtocol::kTcp).value;
  const auto caller = sockets.Open(platform::SocketProtocol::kTcp).value;
  ASSERT_EQ(notifier.Select(listener) + notifier.Select(caller), 0);
  ASSERT_EQ(sockets.Bind(listener, {kLoopback, 0}) + sockets.Listen(listener, 5), 0);
  Client client = Connect();
  client.Begin(Company("processRequestSeconds='0.5'"));
  Timer timer(milliseconds(25), [&] {
    timer.SetEnabled(false);
    sockets.Connect(caller, sockets.Properties(listener).value.local);
  });
  timer.SetEnabled(true);

  client.Ask(u"<HostQueryRq/>");

  EXPECT_EQ(sink.accepted, 1);
  sockets.Close(caller);
  sockets.Close(listener);
  notifier.DisconnectSink();
  notifier.CleanUp();
}

TEST_P(RequestProcessorTest, ServesTwoClientsAtATime) {
  const Text company = Company("processRequestSeconds='0.3'");
  Client first = Connect();
  Client second = Connect();
  first.Begin(company);
  second.Begin(company);
  Text responseToSecond;
  Timer timer(milliseconds(25), [&] {
    timer.SetEnabled(false);
    responseToSecond = second.Ask(u"<HostQueryRq/>");
  });
  timer.SetEnabled(true);

  const Text response = first.Ask(u"<CompanyQueryRq/>");

  EXPECT_THAT(ToUtf8(response), HasSubstr("<CompanyRet>"));
  EXPECT_THAT(ToUtf8(responseToSecond), HasSubstr("<HostRet>"));
  EXPECT_NE(first.Ticket(), second.Ticket());
}

TEST_P(RequestProcessorTest, TakesACallFromAnEventThatComesDuringAnother) {
  const Text company = Company("processRequestSeconds='0.3'");
  Client client = Connect();
  client.Begin(company);
  Text name;
  Timer timer(milliseconds(25), [&] {
    timer.SetEnabled(false);
    name = client->GetCurrentCompanyFileName(client.Ticket());
  });
  timer.SetEnabled(true);

  const Text response = client.Ask(u"<HostQueryRq/>");

  EXPECT_THAT(ToUtf8(response), HasSubstr("<HostRet>"));
  EXPECT_EQ(name, company);
}

TEST_P(RequestProcessorTest, FailsWhenQuickBooksDiesAndIsBackAfterwards) {
  {
    Client client = Connect();
    client.Begin(Company("processRequestSeconds='0.1' processRequestDies='1'"));

    const RequestProcessorError error = FailureOf([&] { client.Ask(u"<HostQueryRq/>"); });

    EXPECT_TRUE(IsServerGone(error.Number)) << std::hex << error.Number;
  }
  Client next = Connect();
  next.Begin(Company());
  EXPECT_THAT(ToUtf8(next.Ask(u"<HostQueryRq/>")), HasSubstr("<HostRet>"));
}

TEST_P(RequestProcessorTest, OpensItsConnectionEvenIfQuickBooksHasEndedSinceItWasMade) {
  Client waiting = Connect();
  {
    Client client = Connect();
    client.Begin(Company("processRequestDies='1'"));
    FailureOf([&] { client.Ask(u"<HostQueryRq/>"); });
  }

  waiting.Begin(Company());

  EXPECT_THAT(ToUtf8(waiting.Ask(u"<HostQueryRq/>")), HasSubstr("<HostRet>"));
}

/// Whether a session can be begun before ten seconds have passed.
bool CanBegin(const Implementation& implementation, const Text& company) {
  const auto limit = steady_clock::now() + seconds(10);
  while (steady_clock::now() < limit) {
    const auto attempt = [&] { Client(implementation).Begin(company); };
    if (FailureOf(attempt).Number == 0) return true;
    DoEventsFor(milliseconds(100));
  }
  return false;
}

// Where QuickBooks is another program, it works on at what was given up, with the company open:
// here until it dies.
TEST_P(RequestProcessorTest, EndsAtOnceWhatIsGivenUp) {
  {
    Client client = Connect();
    client.Begin(Company("processRequestSeconds='3' processRequestDies='1'"));
    Timer timer(milliseconds(25), [&] { client->GiveUp(); });
    timer.SetEnabled(true);
    const auto begun = steady_clock::now();

    const RequestProcessorError error = FailureOf([&] { client.Ask(u"<HostQueryRq/>"); });

    EXPECT_EQ(NumberOf(error), 0x80010002);
    EXPECT_EQ(error.Description, u"The call to QuickBooks was given up.");
    EXPECT_EQ(NumberOf(FailureOf([&] { client.Ask(u"<HostQueryRq/>"); })), 0x80010002);
    timer.SetEnabled(false);
    client = Connect();
    EXPECT_LT(steady_clock::now() - begun, seconds(2));
  }
  oFolder.Write(u"other.qbw", "<Company/>");
  EXPECT_TRUE(CanBegin(GetParam(), oFolder.Path(u"other.qbw")));
}

TEST_P(RequestProcessorTest, TakesNoNoticeOfGivingUpNothing) {
  Client client = Connect();
  client->GiveUp();
  client.Begin(Company());
  client->GiveUp();

  EXPECT_THAT(ToUtf8(client.Ask(u"<HostQueryRq/>")), HasSubstr("<HostRet>"));
}

}  // namespace
}  // namespace ostrel
