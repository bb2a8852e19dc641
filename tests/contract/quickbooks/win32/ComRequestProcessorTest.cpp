#include <gtest/gtest.h>

#include "platform/EventLoop.h"
#include "quickbooks/ErrorNumbers.h"
#include "quickbooks/RequestProcessor.h"
#include "quickbooks/win32/BusyServerFilter.h"
#include "quickbooks/win32/ComRequestProcessor.h"
#include "tests/contract/quickbooks/win32/StandInServer.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel::platform {
namespace {

TEST(ComRequestProcessor, FailsWhenTheClassIsNotInstalled) {
  constexpr CLSID absent = {0x0B5E7A10, 0x4C3D, 0x4E55, {0x8F, 1, 2, 3, 4, 5, 6, 7}};

  try {
    ComRequestProcessor(absent, kRequestProcessorInterface).Create();
    ADD_FAILURE() << "there is one";
  } catch (const RequestProcessorError& error) {
    EXPECT_EQ(error.Number, REGDB_E_CLASSNOTREG);
    EXPECT_EQ(error.Description, u"QuickBooks' request processor is not installed.");
  }
}

TEST(ComRequestProcessor, FailsWhenTheClassLacksTheInterface) {
  ASSERT_EQ(RunStandIn(u"/regserver"), 0);
  constexpr IID absent = {0x0B5E7A11, 0x4C3D, 0x4E55, {0x8F, 1, 2, 3, 4, 5, 6, 7}};

  try {
    ComRequestProcessor(kRequestProcessorClass, absent).Create();
    ADD_FAILURE() << "it has it";
  } catch (const RequestProcessorError& error) {
    EXPECT_EQ(error.Number, E_NOINTERFACE);
    EXPECT_FALSE(error.Description.empty());
  }
}

TEST(ComRequestProcessor, EndsItsCallWhenTheLoopIsToQuit) {
  ASSERT_EQ(RunStandIn(u"/regserver"), 0);
  const ScratchFolder folder;
  folder.Write(u"company.qbw", "<Company><Behaviour beginSessionSeconds='0.5'/></Company>");
  const auto processor = MakeInstalledRequestProcessor();
  processor->Create();
  processor->OpenConnection(u"", u"Ostrel");
  Timer timer(std::chrono::milliseconds(25), [] { QuitEventLoop(7); });
  timer.SetEnabled(true);

  const Text ticket = processor->BeginSession(folder.Path(u"company.qbw"), FileMode::kDoNotCare);

  EXPECT_EQ(ticket.size(), 38u);
  EXPECT_EQ(RunEventLoop(), 7);
}

// The call is stopped from outside, as by a user who ends QuickBooks in the task manager.
TEST(ComRequestProcessor, FailsAtOnceWhenQuickBooksIsEndedInTheMiddleOfACall) {
  ASSERT_EQ(RunStandIn(u"/regserver"), 0);
  const ScratchFolder folder;
  folder.Write(u"company.qbw", "<Company><Behaviour beginSessionSeconds='60'/></Company>");
  const auto processor = MakeInstalledRequestProcessor();
  processor->Create();
  processor->OpenConnection(u"", u"Ostrel");
  int exitCode = -1;
  Timer timer(std::chrono::milliseconds(100), [&] { exitCode = RunStandIn(u"/stop"); });
  timer.SetEnabled(true);

  try {
    processor->BeginSession(folder.Path(u"company.qbw"), FileMode::kDoNotCare);
    ADD_FAILURE() << "the session has begun";
  } catch (const RequestProcessorError& error) {
    EXPECT_TRUE(IsServerGone(error.Number)) << std::hex << error.Number;
    EXPECT_EQ(error.Description, u"QuickBooks has ended, or the connection to it is lost.");
  }
  EXPECT_EQ(exitCode, 0);
}

TEST(BusyServerFilter, TriesAgainAfterGrowingPauses) {
  const Apartment apartment;
  BusyServerFilter filter;

  EXPECT_EQ(filter.RetryRejectedCall(nullptr, 0, SERVERCALL_RETRYLATER), 100u);
  EXPECT_EQ(filter.RetryRejectedCall(nullptr, 600, SERVERCALL_RETRYLATER), 300u);
  EXPECT_EQ(filter.RetryRejectedCall(nullptr, 59'999, SERVERCALL_REJECTED), 1000u);
}

TEST(BusyServerFilter, GivesUpAfterAMinute) {
  const Apartment apartment;
  BusyServerFilter filter;

  EXPECT_EQ(filter.RetryRejectedCall(nullptr, 60'000, SERVERCALL_RETRYLATER), DWORD(-1));
}

TEST(BusyServerFilter, IsTheFilterOfItsThreadWhileItLives) {
  const Apartment apartment;
  IMessageFilter* found = nullptr;
  {
    BusyServerFilter filter;
    CoRegisterMessageFilter(nullptr, &found);
    EXPECT_EQ(found, &filter);
    CoRegisterMessageFilter(found, nullptr);
  }
  CoRegisterMessageFilter(nullptr, &found);
  EXPECT_EQ(found, nullptr);
}

}  // namespace
}  // namespace ostrel::platform
