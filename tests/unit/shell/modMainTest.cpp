#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "platform/EventLoop.h"
#include "shell/forms/Menus.h"
#include "shell/modMain.h"
#include "tests/unit/shell/FormTest.h"

namespace ostrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class modMainTest : public FormTest {
 protected:
  modMain::Program Program(Text commandLine = {}) {
    return {.surroundings = Surroundings(std::move(commandLine)),
            .findPreviousInstance = [this] { return bWindowFound ? kWindow : 0; },
            .activatePreviousInstance =
                [this](platform::WindowHandle window) {
                  EXPECT_EQ(window, kWindow);
                  return !bWindowEnds;
                },
            .formCreated =
                [this](frmMain& form) {
                  bFormCreated = true;
                  tmrExit = std::make_unique<platform::Timer>(
                      std::chrono::milliseconds(1), [&form] { form.MenuClick(mnuFileExit); });
                  tmrExit->SetEnabled(true);
                },
            .acquireInstanceLock = [this](TextView name) { return Acquire(name); },
            .patience = std::chrono::milliseconds(0)};
  }

  std::unique_ptr<platform::InstanceLock> Acquire(TextView name) {
    sLockName = name;
    if (bAnotherRuns || iAttemptsInVain-- > 0) return nullptr;
    return std::make_unique<Lock>(*this);
  }

  struct Lock : platform::InstanceLock {
    explicit Lock(modMainTest& test) : oTest(test) { ++oTest.iLocksHeld; }
    ~Lock() override {
      --oTest.iLocksHeld;
      oTest.bMarkedAtRelease = !oTest.Frame.Marks.empty();
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    modMainTest& oTest;
  };

  static constexpr platform::WindowHandle kWindow = 4711;

  Text sLockName;
  int iAttemptsInVain = 0;
  int iLocksHeld = 0;
  bool bMarkedAtRelease = false;
  bool bAnotherRuns = false;
  bool bWindowFound = false;
  bool bWindowEnds = false;
  bool bFormCreated = false;
  std::unique_ptr<platform::Timer> tmrExit;
};

TEST_F(modMainTest, RunsUntilTheFormUnloads) {
  EXPECT_EQ(modMain::Main(Program()), 0);

  EXPECT_EQ(sLockName, u"Ostrel_APPLICATION_MUTEX");
  EXPECT_TRUE(HasStatus(u"Listenning on Socket 4999"));
  EXPECT_EQ(Network.iServersAlive, 0);
}

TEST_F(modMainTest, FailsWithoutASettingsFile) {
  EXPECT_EQ(modMain::Main(Program(u"-ini " + Folder.Path(u"missing.ini"))), 1);

  EXPECT_EQ(Network.iServersCreated, 0);
}

TEST_F(modMainTest, GivesTheLockBackWithTheMarkWhenTheFormUnloads) {
  int locksWhileLoaded = 0;
  auto program = Program();
  program.formCreated = [&](frmMain& form) {
    tmrExit = std::make_unique<platform::Timer>(std::chrono::milliseconds(1), [&] {
      if (form.IsUnloaded()) return;
      locksWhileLoaded = iLocksHeld;
      form.Unload();
      EXPECT_EQ(iLocksHeld, 0);
      EXPECT_THAT(Frame.Marks, IsEmpty());
    });
    tmrExit->SetEnabled(true);
  };

  EXPECT_EQ(modMain::Main(std::move(program)), 0);

  EXPECT_EQ(locksWhileLoaded, 1);
  EXPECT_FALSE(bMarkedAtRelease);
}

TEST_F(modMainTest, StartsWhenAnotherInstanceEndsWithinItsPatience) {
  iAttemptsInVain = 2;
  auto program = Program();
  program.patience = std::chrono::seconds(30);

  EXPECT_EQ(modMain::Main(std::move(program)), 0);

  EXPECT_TRUE(bFormCreated);
  EXPECT_THAT(Window.Messages, IsEmpty());
}

TEST_F(modMainTest, GoesOnWithNothingServedWhereSomebodyCanOperateIt) {
  Ini("[Communication]\r\nFolder=0\r\nSocket=0\r\n");

  EXPECT_EQ(modMain::Main(Program()), 0);
}

TEST_F(modMainTest, EndsWhenNothingIsServedAndNobodyCanOperateIt) {
  for (const char* settings :
       {"[Communication]\r\nFolder=0\r\nSocket=0\r\n", "[Communication]\r\nSocketPort=many\r\n"}) {
    Ini(settings);
    auto program = Program();
    program.endUnlessServing = true;
    program.formCreated = {};

    EXPECT_EQ(modMain::Main(std::move(program)), 1) << settings;

    EXPECT_TRUE(HasStatus(u"Nothing is served: the program ends")) << settings;
    EXPECT_EQ(iLocksHeld, 0);
    Window.Status.clear();
  }
}

TEST_F(modMainTest, EndsWhenThePortIsTakenAndNobodyCanOperateIt) {
  Network.bPortTaken = true;
  auto program = Program();
  program.endUnlessServing = true;
  program.formCreated = {};

  EXPECT_EQ(modMain::Main(std::move(program)), 1);
}

TEST_F(modMainTest, GoesOnWithOneWayServed) {
  auto program = Program();
  program.endUnlessServing = true;

  EXPECT_EQ(modMain::Main(std::move(program)), 0);
}

TEST_F(modMainTest, BringsTheRunningInstanceToTheFront) {
  bAnotherRuns = bWindowFound = true;

  EXPECT_EQ(modMain::Main(Program()), 0);

  EXPECT_FALSE(bFormCreated);
  EXPECT_THAT(Window.Messages, IsEmpty());
}

TEST_F(modMainTest, DoesNotCountOnAWindowThatIsAboutToEnd) {
  bAnotherRuns = bWindowFound = bWindowEnds = true;

  EXPECT_EQ(modMain::Main(Program()), 1);

  EXPECT_THAT(Window.Messages, SizeIs(1));
}

TEST_F(modMainTest, TellsThatTheRunningInstanceCannotBeFound) {
  bAnotherRuns = true;

  EXPECT_EQ(modMain::Main(Program()), 1);

  EXPECT_FALSE(bFormCreated);
  EXPECT_THAT(Window.Messages,
              ElementsAre(u"Windows is unable to find a previous instance of Ostrel Server, but "
                          u"still things there is one running.  Please Reboot your system"));
}

}  // namespace
}  // namespace ostrel
