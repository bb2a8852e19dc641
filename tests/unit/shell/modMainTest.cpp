#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "FormTest.h"
#include "platform/EventLoop.h"
#include "shell/Menus.h"
#include "shell/modMain.h"

namespace ostrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class modMainTest : public FormTest {
 protected:
  modMain::Program Program(Text commandLine = {}) {
    return {.surroundings = Surroundings(std::move(commandLine)),
            .activatePreviousInstance = [this] { return bWindowFound; },
            .formCreated =
                [this](frmMain& form) {
                  bFormCreated = true;
                  tmrExit = std::make_unique<platform::Timer>(
                      std::chrono::milliseconds(1), [&form] { form.MenuClick(mnuFileExit); });
                  tmrExit->SetEnabled(true);
                },
            .acquireInstanceLock = [this](TextView name) { return Acquire(name); }};
  }

  std::unique_ptr<platform::InstanceLock> Acquire(TextView name) {
    sLockName = name;
    if (bAnotherRuns) return nullptr;
    return std::make_unique<platform::InstanceLock>();
  }

  Text sLockName;
  bool bAnotherRuns = false;
  bool bWindowFound = false;
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

TEST_F(modMainTest, BringsTheRunningInstanceToTheFront) {
  bAnotherRuns = bWindowFound = true;

  EXPECT_EQ(modMain::Main(Program()), 0);

  EXPECT_FALSE(bFormCreated);
  EXPECT_THAT(Window.Messages, IsEmpty());
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
