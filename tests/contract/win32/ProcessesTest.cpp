#include <windows.h>
#include <gtest/gtest.h>

#include "platform/ApplicationWindow.h"
#include "platform/Processes.h"
#include "tests/contract/win32/DialogHands.h"

namespace ostrel::platform {
namespace {

class ProcessesTest : public testing::Test {
 protected:
  static void End(ProcessId process) {
    const HANDLE handle = OpenProcess(PROCESS_TERMINATE, FALSE, process);
    TerminateProcess(handle, 1);
    CloseHandle(handle);
  }

  std::unique_ptr<Processes> oProcesses = MakeProcesses();
};

TEST_F(ProcessesTest, StartedProgramRunsUntilItHasEnded) {
  const ProcessId editor = oProcesses->StartProgram(u"notepad.exe", 0);
  ASSERT_NE(editor, 0u);
  EXPECT_FALSE(oProcesses->HasEnded(editor));

  End(editor);

  EXPECT_TRUE(AwaitEvents([&] { return oProcesses->HasEnded(editor); }));
}

TEST_F(ProcessesTest, ArgumentsArriveAsOnACommandLine) {
  const ProcessId process = oProcesses->StartProgram(u"cmd.exe /c exit 3", 0);
  const HANDLE handle = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, process);

  ASSERT_TRUE(AwaitEvents([&] { return oProcesses->HasEnded(process); }));

  DWORD exitCode = 0;
  GetExitCodeProcess(handle, &exitCode);
  CloseHandle(handle);
  EXPECT_EQ(exitCode, 3u);
}

TEST_F(ProcessesTest, ProgramThatDoesNotExistIsNotStarted) {
  EXPECT_EQ(oProcesses->StartProgram(u"no-such-program.exe", 1), 0u);
  EXPECT_EQ(oProcesses->StartProgram(u"", 1), 0u);
}

TEST_F(ProcessesTest, ProcessThatNobodyHasSeenHasEnded) {
  EXPECT_TRUE(oProcesses->HasEnded(0));
  EXPECT_TRUE(oProcesses->HasEnded(0x7FFFFFF0));
}

TEST_F(ProcessesTest, DocumentThatDoesNotExistIsNotOpened) {
  EXPECT_FALSE(oProcesses->OpenDocument(u"C:\\no\\such\\company.qbw", {}, 0));
}

}  // namespace
}  // namespace ostrel::platform
