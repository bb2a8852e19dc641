#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "simulator/SimulatedRequestProcessor.h"
#include "tests/unit/simulator/Conversation.h"

namespace ostrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr char16_t kBooks[] = u"C:\\Books\\hale.qbw";
constexpr char16_t kOther[] = u"C:\\Books\\other.qbw";
constexpr char16_t kUsers[] = u"C:\\Program\\sample.qbw";
constexpr char16_t kHostQuery[] =
    u"<?qbxml version=\"3.0\"?><QBXML><QBXMLMsgsRq onError=\"stopOnError\"><HostQueryRq/>"
    u"</QBXMLMsgsRq></QBXML>";

class SimulatedRequestProcessorTest : public testing::Test {
 protected:
  SimulatedRequestProcessorTest() {
    oStorage.Files[kBooks] = kTwoCustomers;
    oStorage.Files[kOther] = "<Company name='Other'/>";
  }

  void Connect() { oProcessor.OpenConnection(u"ostrel", u"Ostrel"); }
  Text Begin(TextView file = kBooks, FileMode mode = FileMode::kDoNotCare) {
    return oProcessor.BeginSession(file, mode);
  }
  void Behave(TextView file, const std::string& attributes) {
    oStorage.Files[Text(file)] = "<Company><Behaviour " + attributes + "/></Company>";
  }

  // An action may put something else into its own place while it runs.
  static void RunCopy(const std::function<void()>& action) {
    const std::function<void()> copy = action;
    copy();
  }

  doubles::FakeCompanyStorage oStorage;
  doubles::FakeClock oClock;
  std::vector<std::int64_t> Delays;  // milliseconds
  int Deaths = 0;
  std::function<void()> DuringDelay = [] {};
  std::function<void()> Dispatch = [] {};
  simulator::QuickBooks oQuickBooks{{.storage = oStorage,
                                     .clock = oClock,
                                     .delay =
                                         [this](std::chrono::milliseconds time, const bool&) {
                                           Delays.push_back(time.count());
                                           RunCopy(DuringDelay);
                                         },
                                     .dispatch = [this] { RunCopy(Dispatch); },
                                     .die = [this] { ++Deaths; },
                                     .usersCompany = kUsers}};
  SimulatedRequestProcessor oProcessor{oQuickBooks};
  SimulatedRequestProcessor oSecond{oQuickBooks};
};

TEST_F(SimulatedRequestProcessorTest, RespondsWithinASession) {
  Connect();
  const Text ticket = Begin();

  EXPECT_THAT(ToUtf8(oProcessor.ProcessRequest(ticket, kHostQuery)), HasSubstr("<HostRet>"));
  EXPECT_EQ(oProcessor.GetCurrentCompanyFileName(ticket), kBooks);
  oProcessor.EndSession(ticket);
  oProcessor.CloseConnection();
}

TEST_F(SimulatedRequestProcessorTest, GivesTicketsOfTheFormOfAnIdentifier) {
  Connect();
  const Text first = Begin();
  oProcessor.EndSession(first);
  const Text second = Begin();

  EXPECT_NE(first, second);
  ASSERT_EQ(first.size(), 38u);
  EXPECT_EQ(first.front(), u'{');
  for (const std::size_t dash : {9u, 14u, 19u, 24u}) EXPECT_EQ(first[dash], u'-');
}

TEST_F(SimulatedRequestProcessorTest, RequiresAnApplicationName) {
  EXPECT_EQ(FailureOf([&] { oProcessor.OpenConnection(u"ostrel", u""); }), 0x80040415);
  EXPECT_EQ(FailureOf([&] { oProcessor.OpenConnection(u"", u"Ostrel"); }), 0u);
}

TEST_F(SimulatedRequestProcessorTest, OpensOneConnectionAtATime) {
  Connect();

  EXPECT_EQ(FailureOf([&] { Connect(); }), 0x80040412);
  oProcessor.CloseConnection();
  EXPECT_EQ(FailureOf([&] { Connect(); }), 0u);
}

TEST_F(SimulatedRequestProcessorTest, DoesNothingWithoutAConnection) {
  EXPECT_EQ(FailureOf([&] { Begin(); }), 0x8004040F);
  EXPECT_EQ(FailureOf([&] { oProcessor.ProcessRequest(u"", kHostQuery); }), 0x8004040F);
  EXPECT_EQ(FailureOf([&] { oProcessor.GetCurrentCompanyFileName(u""); }), 0x8004040F);
  EXPECT_EQ(FailureOf([&] { oProcessor.EndSession(u""); }), 0x8004040F);
  EXPECT_EQ(FailureOf([&] { oProcessor.CloseConnection(); }), 0x8004040F);
}

TEST_F(SimulatedRequestProcessorTest, DoesNothingWithoutASession) {
  Connect();

  EXPECT_EQ(FailureOf([&] { oProcessor.ProcessRequest(u"", kHostQuery); }), 0x8004040C);
  EXPECT_EQ(FailureOf([&] { oProcessor.GetCurrentCompanyFileName(u""); }), 0x8004040C);
  EXPECT_EQ(FailureOf([&] { oProcessor.EndSession(u""); }), 0x8004040C);
}

TEST_F(SimulatedRequestProcessorTest, RefusesAWrongTicket) {
  Connect();
  Begin();

  EXPECT_EQ(FailureOf([&] { oProcessor.ProcessRequest(u"wrong", kHostQuery); }), 0x8004040D);
  EXPECT_EQ(FailureOf([&] { oProcessor.GetCurrentCompanyFileName(u""); }), 0x8004040D);
  EXPECT_EQ(FailureOf([&] { oProcessor.EndSession(u"wrong"); }), 0x8004040D);
}

TEST_F(SimulatedRequestProcessorTest, BeginsOneSessionAtATime) {
  Connect();
  const Text ticket = Begin();

  EXPECT_EQ(FailureOf([&] { Begin(); }), 0x80040411);
  oProcessor.EndSession(ticket);
  EXPECT_EQ(FailureOf([&] { Begin(kOther); }), 0u);
}

TEST_F(SimulatedRequestProcessorTest, EndsTheSessionWithTheConnection) {
  Connect();
  const Text ticket = Begin();
  oProcessor.CloseConnection();
  Connect();

  EXPECT_EQ(FailureOf([&] { oProcessor.ProcessRequest(ticket, kHostQuery); }), 0x8004040C);
}

TEST_F(SimulatedRequestProcessorTest, RefusesAFileThatIsNotThere) {
  Connect();

  EXPECT_EQ(FailureOf([&] { Begin(u"C:\\none.qbw"); }), 0x80040403);
}

TEST_F(SimulatedRequestProcessorTest, RefusesAFileThatIsNoCompany) {
  oStorage.Files[kOther] = "MZ\x90";
  Connect();

  EXPECT_EQ(FailureOf([&] { Begin(kOther); }), 0x80040409);
}

TEST_F(SimulatedRequestProcessorTest, RefusesAnUnknownFileMode) {
  Connect();

  EXPECT_EQ(FailureOf([&] { Begin(kBooks, static_cast<FileMode>(3)); }), 0x80040425);
}

TEST_F(SimulatedRequestProcessorTest, OpensTheUsersCompanyWithoutAName) {
  oStorage.Files[kUsers] = "<Company/>";
  Connect();

  EXPECT_EQ(oProcessor.GetCurrentCompanyFileName(Begin(u"")), kUsers);
}

TEST_F(SimulatedRequestProcessorTest, NeedsANameWhenNoCompanyIsOpen) {
  Connect();

  EXPECT_EQ(FailureOf([&] { Begin(u""); }), 0x80040416);
}

TEST_F(SimulatedRequestProcessorTest, KeepsOneCompanyOpenForAllClients) {
  Connect();
  const Text ticket = Begin();
  oSecond.OpenConnection(u"", u"Second");

  EXPECT_EQ(FailureOf([&] { oSecond.BeginSession(kOther, FileMode::kDoNotCare); }), 0x8004040A);
  oProcessor.EndSession(ticket);
  EXPECT_EQ(FailureOf([&] { oSecond.BeginSession(kOther, FileMode::kDoNotCare); }), 0u);
}

TEST_F(SimulatedRequestProcessorTest, SharesTheOpenCompanyHoweverItsPathIsWritten) {
  Connect();
  Begin();
  oSecond.OpenConnection(u"", u"Second");

  const Text ticket = oSecond.BeginSession(u"c:/books/HALE.QBW", FileMode::kDoNotCare);

  EXPECT_EQ(oSecond.GetCurrentCompanyFileName(ticket), kBooks);
  oSecond.EndSession(ticket);
  EXPECT_EQ(oSecond.GetCurrentCompanyFileName(oSecond.BeginSession(u"", FileMode::kDoNotCare)),
            kBooks);
}

TEST_F(SimulatedRequestProcessorTest, OpensInTheModeAskedFor) {
  Connect();
  const Text ticket = Begin(kBooks, FileMode::kMultiUser);

  EXPECT_THAT(ToUtf8(oProcessor.ProcessRequest(ticket, kHostQuery)), HasSubstr("MultiUser"));
}

TEST_F(SimulatedRequestProcessorTest, RefusesAnotherModeThanTheOpenCompanys) {
  Connect();
  Begin(kBooks, FileMode::kMultiUser);
  oSecond.OpenConnection(u"", u"Second");

  EXPECT_EQ(FailureOf([&] { oSecond.BeginSession(kBooks, FileMode::kSingleUser); }), 0x80040410);
  EXPECT_EQ(FailureOf([&] { oSecond.BeginSession(kBooks, FileMode::kDoNotCare); }), 0u);
}

TEST_F(SimulatedRequestProcessorTest, ReadsTheFileAnewForEachSession) {
  Connect();
  oProcessor.EndSession(Begin());
  oStorage.Files[kBooks] = "<Company product='Changed'/>";

  EXPECT_THAT(ToUtf8(oProcessor.ProcessRequest(Begin(), kHostQuery)), HasSubstr("Changed"));
}

TEST_F(SimulatedRequestProcessorTest, DelaysAsTheCompanyAsks) {
  Behave(kUsers, "openConnectionSeconds='1'");
  Behave(kBooks, "beginSessionSeconds='2' processRequestSeconds='0.25'");

  Connect();
  oProcessor.ProcessRequest(Begin(), kHostQuery);

  EXPECT_THAT(Delays, ElementsAre(1000, 2000, 250));
}

TEST_F(SimulatedRequestProcessorTest, FailsAsTheCompanyAsks) {
  Behave(kBooks, "processRequestError='0x8004041C' companyFileNameError='0x8004040B'");
  Connect();
  const Text ticket = Begin();

  EXPECT_EQ(FailureOf([&] { oProcessor.ProcessRequest(ticket, kHostQuery); }), 0x8004041C);
  EXPECT_EQ(FailureOf([&] { oProcessor.GetCurrentCompanyFileName(ticket); }), 0x8004040B);
}

TEST_F(SimulatedRequestProcessorTest, FailsToConnectAsTheUsersCompanyAsks) {
  Behave(kUsers, "openConnectionError='0x80040401'");

  EXPECT_EQ(FailureOf([&] { Connect(); }), 0x80040401);
  EXPECT_EQ(FailureOf([&] { Begin(); }), 0x8004040F);
}

TEST_F(SimulatedRequestProcessorTest, LeavesNoCompanyOpenAfterAFailedSession) {
  Behave(kBooks, "beginSessionError='0x80040408'");
  Connect();

  EXPECT_EQ(FailureOf([&] { Begin(); }), 0x80040408);
  EXPECT_EQ(FailureOf([&] { Begin(kOther); }), 0u);
}

TEST_F(SimulatedRequestProcessorTest, GivesFailuresOfItsOwnTheirSentence) {
  Behave(kBooks, "beginSessionError='0x80040408'");
  Connect();

  try {
    Begin();
    ADD_FAILURE() << "the session has begun";
  } catch (const RequestProcessorError& error) {
    EXPECT_EQ(error.Description, u"Could not start QuickBooks.");
  }
}

TEST_F(SimulatedRequestProcessorTest, LocksTheCompanyWhileItIsOpen) {
  oStorage.Files[kUsers] = "<Company/>";
  Connect();
  EXPECT_THAT(oStorage.Locked, testing::IsEmpty());

  const Text ticket = Begin();
  EXPECT_THAT(oStorage.Locked, ElementsAre(kBooks));

  oProcessor.EndSession(ticket);
  EXPECT_THAT(oStorage.Locked, testing::IsEmpty());
  const Text users = Begin(u"");
  EXPECT_THAT(oStorage.Locked, ElementsAre(kUsers));
}

TEST_F(SimulatedRequestProcessorTest, LocksACompanyOnceForAllClients) {
  Connect();
  Begin();
  oSecond.OpenConnection(u"", u"Second");

  oSecond.BeginSession(kBooks, FileMode::kDoNotCare);
  EXPECT_THAT(oStorage.Locked, ElementsAre(kBooks));
  oProcessor.CloseConnection();

  EXPECT_THAT(oStorage.Locked, ElementsAre(kBooks));
}

TEST_F(SimulatedRequestProcessorTest, RefusesACompanyThatAnotherProcessHasOpen) {
  oStorage.iLockError = platform::kSharingViolation;
  Connect();

  EXPECT_EQ(FailureOf([&] { Begin(); }), 0x8004041B);

  EXPECT_THAT(Delays, testing::SizeIs(9));
}

TEST_F(SimulatedRequestProcessorTest, WaitsAMomentForAProcessThatIsClosingTheCompany) {
  oStorage.iLockError = platform::kSharingViolation;
  Connect();
  DuringDelay = [&] { oStorage.iLockError = Delays.size() == 3 ? 0 : oStorage.iLockError; };

  EXPECT_EQ(FailureOf([&] { Begin(); }), 0u);

  EXPECT_THAT(Delays, testing::SizeIs(3));
}

TEST_F(SimulatedRequestProcessorTest, SharesWhatAnotherClientHasOpenedWhileItWaited) {
  oStorage.iLockError = platform::kSharingViolation;
  Connect();
  oSecond.OpenConnection(u"", u"Second");
  DuringDelay = [&] {
    oStorage.iLockError = 0;
    oSecond.BeginSession(kBooks, FileMode::kDoNotCare);
    oStorage.iLockError = platform::kSharingViolation;
    DuringDelay = [] {};
  };

  EXPECT_EQ(FailureOf([&] { Begin(); }), 0u);

  EXPECT_THAT(oStorage.Locked, ElementsAre(kBooks));
}

TEST_F(SimulatedRequestProcessorTest, GivesUpWaitingForAnotherProcess) {
  oStorage.iLockError = platform::kSharingViolation;
  Connect();
  DuringDelay = [&] { oProcessor.GiveUp(); };

  EXPECT_EQ(FailureOf([&] { Begin(); }), 0x80010002);

  EXPECT_THAT(Delays, testing::SizeIs(1));
}

TEST_F(SimulatedRequestProcessorTest, OpensACompanyInAFolderWhereNothingCanBeWritten) {
  oStorage.iLockError = platform::kAccessDenied;
  Connect();

  EXPECT_EQ(FailureOf([&] { oProcessor.ProcessRequest(Begin(), kHostQuery); }), 0u);
}

// A request that takes long enough for events to have their turn.
Text ManyQueries() {
  Text request = u"<?qbxml version=\"3.0\"?><QBXML><QBXMLMsgsRq onError=\"stopOnError\">";
  for (int i = 0; i < 100'000; ++i) request += u"<CustomerQueryRq/>";
  return request + u"</QBXMLMsgsRq></QBXML>";
}

TEST_F(SimulatedRequestProcessorTest, GivesUpWhatItComputes) {
  Connect();
  const Text ticket = Begin();
  Dispatch = [&] { oProcessor.GiveUp(); };

  EXPECT_EQ(FailureOf([&] { oProcessor.ProcessRequest(ticket, ManyQueries()); }), 0x80010002);
}

TEST_F(SimulatedRequestProcessorTest, LetsNoOtherRequestInWhileItComputes) {
  Connect();
  const Text ticket = Begin();
  oSecond.OpenConnection(u"", u"Second");
  const Text second = oSecond.BeginSession(kBooks, FileMode::kDoNotCare);
  int turns = 0;
  Dispatch = [&] {
    ++turns;
    EXPECT_EQ(FailureOf([&] { oSecond.ProcessRequest(second, kHostQuery); }), 0x80010001);
    EXPECT_EQ(FailureOf([&] { oProcessor.ProcessRequest(ticket, kHostQuery); }), 0x80010001);
    oSecond.EndSession(second);
    EXPECT_EQ(FailureOf([&] { oSecond.BeginSession(kBooks, FileMode::kDoNotCare); }), 0x80010001);
    Dispatch = [] {};
  };

  EXPECT_EQ(FailureOf([&] { oProcessor.ProcessRequest(ticket, ManyQueries()); }), 0u);

  EXPECT_EQ(turns, 1);
  EXPECT_EQ(FailureOf([&] { oSecond.BeginSession(kBooks, FileMode::kDoNotCare); }), 0u);
}

TEST_F(SimulatedRequestProcessorTest, SurvivesItsSessionsEndWhileItComputes) {
  Connect();
  const Text ticket = Begin();
  Dispatch = [&] {
    oProcessor.CloseConnection();
    Dispatch = [] {};
  };

  EXPECT_EQ(FailureOf([&] { oProcessor.ProcessRequest(ticket, ManyQueries()); }), 0u);

  EXPECT_THAT(oStorage.Locked, testing::IsEmpty());
}

// The changes before it are whole, and safe in the journal; it is not folded, which may take long.
TEST_F(SimulatedRequestProcessorTest, KeepsWhatWasDoneBeforeItWasGivenUp) {
  Connect();
  const Text ticket = Begin();
  const Text journal = Text(kBooks) + u".journal";
  Dispatch = [&] {
    if (oStorage.Files.contains(journal)) oProcessor.GiveUp();
  };
  Text request = ManyQueries();
  request.insert(request.find(u"<CustomerQ"),
                 u"<CustomerAddRq><CustomerAdd><Name>Jo</Name></CustomerAdd></CustomerAddRq>");

  EXPECT_EQ(FailureOf([&] { oProcessor.ProcessRequest(ticket, request); }), 0x80010002);
  oProcessor.CloseConnection();

  EXPECT_THAT(oStorage.Files[journal], HasSubstr("<Name>Jo</Name>"));
}

TEST_F(SimulatedRequestProcessorTest, GivesUpACompanyThatIsLargeToRead) {
  std::string company = "<Company>";
  for (int i = 0; i < 60'000; ++i) {
    company += "<Class><Name>" + std::to_string(i) + "</Name></Class>";
  }
  oStorage.Files[kBooks] = company + "</Company>";
  Connect();
  Dispatch = [&] { oProcessor.GiveUp(); };

  EXPECT_EQ(FailureOf([&] { Begin(); }), 0x80010002);

  EXPECT_THAT(oStorage.Locked, testing::IsEmpty());
}

// Events are dispatched while QuickBooks is slow; a client may hang up then.
TEST_F(SimulatedRequestProcessorTest, SeesThatTheConnectionWasClosedWhileItWaited) {
  Behave(kBooks, "beginSessionSeconds='1'");
  Connect();
  DuringDelay = [&] { oProcessor.CloseConnection(); };

  EXPECT_EQ(FailureOf([&] { Begin(); }), 0x8004040F);
}

TEST_F(SimulatedRequestProcessorTest, SeesThatTheSessionWasEndedWhileItWaited) {
  Behave(kBooks, "processRequestSeconds='1'");
  Connect();
  const Text ticket = Begin();
  DuringDelay = [&] { oProcessor.EndSession(ticket); };

  EXPECT_EQ(FailureOf([&] { oProcessor.ProcessRequest(ticket, kHostQuery); }), 0x8004040C);
}

TEST_F(SimulatedRequestProcessorTest, FailsWhatIsGivenUpWhileItWaits) {
  Behave(kBooks, "processRequestSeconds='60'");
  Connect();
  const Text ticket = Begin();
  DuringDelay = [&] { oProcessor.GiveUp(); };

  EXPECT_EQ(FailureOf([&] { oProcessor.ProcessRequest(ticket, kHostQuery); }), 0x80010002);
}

TEST_F(SimulatedRequestProcessorTest, TakesNoNoticeOfGivingUpNothing) {
  oProcessor.GiveUp();
  Connect();
  const Text ticket = Begin();
  oProcessor.GiveUp();

  EXPECT_EQ(FailureOf([&] { oProcessor.ProcessRequest(ticket, kHostQuery); }), 0u);
}

TEST_F(SimulatedRequestProcessorTest, DiesInTheMiddleOfARequestAsTheCompanyAsks) {
  Behave(kBooks, "processRequestSeconds='1' processRequestDies='1'");
  Connect();
  const Text ticket = Begin();
  DuringDelay = [&] { EXPECT_EQ(Deaths, 0); };

  EXPECT_EQ(FailureOf([&] { oProcessor.ProcessRequest(ticket, kHostQuery); }), 0x800706BE);
  EXPECT_EQ(Deaths, 1);
}

}  // namespace
}  // namespace ostrel
