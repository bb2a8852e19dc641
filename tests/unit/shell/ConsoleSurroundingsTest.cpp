#include <gtest/gtest.h>

#include "shell/programs/ConsoleSurroundings.h"

namespace ostrel {
namespace {

TEST(ConsoleSurroundings, AnswerEveryQuestionWithCancel) {
  ConsoleDialogs dialogs;

  testing::internal::CaptureStderr();
  EXPECT_EQ(dialogs.AskYesNoCancel(u"Really?"), platform::Answer::kCancel);
  EXPECT_EQ(dialogs.AskText(u"Request", u"QUICKBOOKSINFO"), std::nullopt);
  EXPECT_EQ(dialogs.AskForFile({u"*.QBW", {}, {}}), std::nullopt);

  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Really? (nobody can answer)\nRequest (nobody can answer)\n"
            "*.QBW (nobody can answer)\n");
}

TEST(ConsoleSurroundings, PrintAFormLineByLine) {
  const auto form = MakeConsoleForm({});
  form->SetCaption(u"Log File");
  form->SetText(u"one\r\n\r\ntwo\x1B[2J");

  testing::internal::CaptureStderr();
  form->Show();

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Log File\none\n\ntwo [2J\n");
  EXPECT_FALSE(form->IsOpen());
}

TEST(ConsoleSurroundings, StartNothing) {
  ConsoleProcesses processes;

  EXPECT_EQ(processes.StartProgram(u"notepad.exe", 1), 0u);
  EXPECT_FALSE(processes.OpenDocument(u"a.qbw", u"", 0));
  EXPECT_TRUE(processes.HasEnded(0));
}

TEST(ConsoleSurroundings, AreNeverMinimised) {
  ConsoleFrame frame;
  frame.SetState(platform::WindowState::kMinimised);

  EXPECT_EQ(frame.State(), platform::WindowState::kNormal);
}

TEST(ConsoleSurroundings, TakeAnyIconForShown) {
  const auto icon = MakeNoIcon();

  EXPECT_TRUE(icon->Notify(platform::NotifyIcon::Operation::kAdd, {}));
  EXPECT_EQ(icon->PopUpMenu({{u"&Open"}}, 0), -1);
}

}  // namespace
}  // namespace ostrel
