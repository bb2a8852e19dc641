#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "shell/commands/modShellandWait.h"
#include "tests/unit/doubles/FakeClock.h"
#include "tests/unit/doubles/FakeProcesses.h"

namespace ostrel {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using testing::IsEmpty;
using testing::SizeIs;

class ShellAndWait : public testing::Test {
 protected:
  // Each round of events takes a second; the process ends after this many.
  void EndsAfter(int rounds) { iEndsAfter = rounds; }
  // In rounds of events.
  static constexpr int kNever = 1'000'000;

  bool Wait(std::int32_t timeout, TextView command = u"notepad.exe C:\\osl.ini") {
    const auto round = [this] {
      ++iRounds;
      Clock.Advance(seconds(1));
      Processes.bEnded = iRounds >= iEndsAfter;
      return iRounds < iProgramEndsAfter;
    };
    return modShellandWait::ShellAndWait({Processes, Clock, round}, command, timeout, 1, u"open");
  }

  doubles::FakeProcesses Processes;
  doubles::FakeClock Clock;
  int iEndsAfter = kNever;
  int iProgramEndsAfter = kNever;
  int iRounds = 0;
};

TEST_F(ShellAndWait, StartsAProgramInTheWindowStyleAskedFor) {
  EndsAfter(3);

  EXPECT_TRUE(Wait(5000));

  ASSERT_THAT(Processes.Programs, SizeIs(1));
  EXPECT_EQ(Processes.Programs[0].sCommand, u"notepad.exe C:\\osl.ini");
  EXPECT_EQ(Processes.Programs[0].iWindowStyle, 1);
  EXPECT_EQ(iRounds, 3);
}

TEST_F(ShellAndWait, KnowsAProgramInAnyCase) {
  EndsAfter(1);

  EXPECT_TRUE(Wait(5000, u"C:\\NOTEPAD.EXE"));

  EXPECT_THAT(Processes.Programs, SizeIs(1));
  EXPECT_THAT(Processes.Documents, IsEmpty());
}

TEST_F(ShellAndWait, OpensADocumentWithoutWaiting) {
  EXPECT_TRUE(Wait(5000, u"C:\\osl.ini"));

  ASSERT_THAT(Processes.Documents, SizeIs(1));
  EXPECT_EQ(Processes.Documents[0].sFile, u"C:\\osl.ini");
  EXPECT_EQ(Processes.Documents[0].sVerb, u"open");
  EXPECT_EQ(Processes.Documents[0].iShowCommand, 5);
  EXPECT_EQ(iRounds, 0);
}

TEST_F(ShellAndWait, FailsWhenNothingCanBeStarted) {
  Processes.bCanStart = false;

  EXPECT_FALSE(Wait(5000));
  EXPECT_FALSE(Wait(5000, u"C:\\osl.ini"));

  EXPECT_EQ(iRounds, 0);
}

TEST_F(ShellAndWait, GivesUpWhenTheLimitHasPassed) {
  EXPECT_FALSE(Wait(10));

  EXPECT_EQ(iRounds, 11);
}

TEST_F(ShellAndWait, TakesAnEndWithinTheLimit) {
  EndsAfter(10);

  EXPECT_TRUE(Wait(10));
}

TEST_F(ShellAndWait, WaitsAcrossMidnight) {
  Clock.dNow += hours(14) + minutes(56) + seconds(43);  // 23:59:50
  EndsAfter(60);

  EXPECT_TRUE(Wait(100));
}

TEST_F(ShellAndWait, GivesUpAfterMidnight) {
  Clock.dNow += hours(14) + minutes(56) + seconds(43);

  EXPECT_FALSE(Wait(100));

  EXPECT_EQ(iRounds, 101);
}

TEST_F(ShellAndWait, CountsADeadlineAtMidnightAsTomorrows) {
  Clock.dNow += hours(14) + minutes(56) + seconds(43);

  EXPECT_FALSE(Wait(10));

  EXPECT_EQ(iRounds, 11);
}

TEST_F(ShellAndWait, GivesUpWithinADayWhateverTheLimit) {
  for (const int days : {1, 2}) {
    iRounds = 0;

    EXPECT_FALSE(Wait(days * 86400));

    EXPECT_EQ(iRounds, 86399);
  }
}

TEST_F(ShellAndWait, EndsWithTheProgram) {
  iProgramEndsAfter = 5;

  EXPECT_FALSE(Wait(5000));

  EXPECT_EQ(iRounds, 5);
}

}  // namespace
}  // namespace ostrel
