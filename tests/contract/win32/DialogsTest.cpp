#include <gtest/gtest.h>

#include <future>
#include <thread>

#include "platform/Dialogs.h"
#include "platform/EventLoop.h"
#include "platform/win32/FrameWindow.h"
#include "tests/contract/win32/DialogHands.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel::platform {
namespace {

using std::chrono::milliseconds;

constexpr int kMessageText = 65535;  // the number of a message box's text
constexpr int kInputText = 101;
constexpr int kFileName = 1148;

class DialogsTest : public testing::Test {
 protected:
  FrameWindow Window{
      {.title = u"Dialogs under test", .caption = u"Owner", .notice = u"", .menus = {}}};
  std::unique_ptr<Dialogs> oDialogs = MakeDialogs(Window);
  const wchar_t* const sTitle = L"Dialogs under test";
};

TEST_F(DialogsTest, MessageHasTheProgramsTitleAndItsText) {
  std::wstring text;
  DialogHands hands(sTitle, [&](HWND box) {
    text = TextOfWindow(GetDlgItem(box, kMessageText));
    Press(IDOK)(box);
  });

  Window.ShowMessage(u"One line\r\nand \u20AC another");

  EXPECT_EQ(text, L"One line\r\nand \u20AC another");
}

TEST_F(DialogsTest, QuestionIsAnsweredWithTheButtonPressed) {
  const auto answerTo = [&](int button) {
    DialogHands hands(sTitle, Press(button));
    return oDialogs->AskYesNoCancel(u"Well?");
  };

  EXPECT_EQ(answerTo(IDYES), Answer::kYes);
  EXPECT_EQ(answerTo(IDNO), Answer::kNo);
  EXPECT_EQ(answerTo(IDCANCEL), Answer::kCancel);
}

TEST_F(DialogsTest, TimersTickWhileAMessageIsOpen) {
  int ticks = 0;
  Timer timer(milliseconds(10), [&] {
    if (++ticks == 5) Press(IDOK)(VisibleWindow(sTitle));
  });
  timer.SetEnabled(true);

  Window.ShowMessage(u"Waiting");

  EXPECT_GE(ticks, 5);
}

TEST_F(DialogsTest, HandlersInsideAMessageKnowThatTheyAreNested) {
  bool nested = false;
  DialogHands hands(sTitle, [&](HWND box) {
    nested = IsNestedHandler();
    Press(IDOK)(box);
  });
  Timer opener(milliseconds(1), [&] {
    opener.SetEnabled(false);
    Window.ShowMessage(u"Waiting");
  });
  opener.SetEnabled(true);

  ASSERT_TRUE(AwaitEvents([&] { return hands.HaveActed() && VisibleWindow(sTitle) == nullptr; }));

  EXPECT_TRUE(nested);
}

TEST_F(DialogsTest, TextOfferedIsReturnedAsItWasChanged) {
  std::wstring offered;
  DialogHands hands(sTitle, [&](HWND box) {
    offered = TextOfWindow(GetDlgItem(box, kInputText));
    SetWindowTextW(GetDlgItem(box, kInputText), L"typed \u20AC");
    Press(IDOK)(box);
  });

  const auto answer = oDialogs->AskText(u"Request", u"QUICKBOOKSINFO");

  EXPECT_EQ(offered, L"QUICKBOOKSINFO");
  EXPECT_EQ(answer, u"typed \u20AC");
}

TEST_F(DialogsTest, CancelledTextIsNone) {
  DialogHands hands(sTitle, Press(IDCANCEL));

  EXPECT_FALSE(oDialogs->AskText(u"Request", u"offered"));
}

TEST_F(DialogsTest, ChosenFileIsItsWholePath) {
  const ScratchFolder folder;
  folder.Write(u"a company.qbw", "");
  const Text path = folder.Path(u"a company.qbw");
  const std::wstring typed(path.begin(), path.end());
  DialogHands hands(L"Open", [&](HWND box) {
    SendDlgItemMessageW(box, kFileName, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(typed.c_str()));
    Press(IDOK)(box);
  });

  const auto chosen = oDialogs->AskForFile({u"Companies (*.QBW)|*.QBW|All!*.*", {}, {}});

  EXPECT_EQ(chosen, path);
}

TEST_F(DialogsTest, CancelledFileIsNone) {
  DialogHands hands(L"Open", Press(IDCANCEL));

  EXPECT_FALSE(oDialogs->AskForFile({u"All|*.*", u"C:\\no\\such.qbw", {}}));
}

TEST_F(DialogsTest, OfferThatIsNoFileNameDoesNotKeepTheDialogAway) {
  DialogHands hands(L"Open", Press(IDCANCEL));

  oDialogs->AskForFile({u"All|*.*", u"<|>?*\"", {}});

  EXPECT_TRUE(hands.HaveActed());
}

TEST_F(DialogsTest, QuittingTheLoopClosesAMessage) {
  DialogHands hands(sTitle, [](HWND) { QuitEventLoop(7); });

  EXPECT_EQ(oDialogs->AskYesNoCancel(u"Well?"), Answer::kCancel);

  EXPECT_EQ(RunEventLoop(), 7);
}

TEST_F(DialogsTest, QuittingTheLoopClosesAnInputBox) {
  DialogHands hands(sTitle, [](HWND) { QuitEventLoop(8); });

  EXPECT_FALSE(oDialogs->AskText(u"Request", u"offered"));

  EXPECT_EQ(RunEventLoop(), 8);
}

TEST_F(DialogsTest, QuittingFromALoopInsideADialogClosesTheDialog) {
  DialogHands hands(sTitle, [](HWND) {
    Timer quit(milliseconds(1), [] { QuitEventLoop(9); });
    quit.SetEnabled(true);
    DoEventsFor(milliseconds(5000));
  });

  Window.ShowMessage(u"Waiting");

  EXPECT_EQ(RunEventLoop(), 9);
}

TEST_F(DialogsTest, LoopRunsAgainAfterItWasQuit) {
  QuitEventLoop(1);
  RunEventLoop();
  Timer quit(milliseconds(10), [] { QuitEventLoop(2); });
  quit.SetEnabled(true);

  EXPECT_EQ(RunEventLoop(), 2);
}

TEST_F(DialogsTest, TextIsOnTheClipboard) {
  ASSERT_TRUE(oDialogs->CopyToClipboard(u"Ostrel Server:\r\n\u20AC"));

  ASSERT_TRUE(OpenClipboard(nullptr));
  const HANDLE data = GetClipboardData(CF_UNICODETEXT);
  const std::wstring text = data == nullptr ? L"" : static_cast<wchar_t*>(GlobalLock(data));
  CloseClipboard();
  EXPECT_EQ(text, L"Ostrel Server:\r\n\u20AC");
}

TEST_F(DialogsTest, ClipboardThatIsHeldElsewhereIsTold) {
  std::promise<void> held, done;
  std::thread other([&] {
    const HWND window =
        CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    OpenClipboard(window);
    held.set_value();
    done.get_future().wait();
    CloseClipboard();
    DestroyWindow(window);
  });
  held.get_future().wait();

  const bool copied = oDialogs->CopyToClipboard(u"text");
  done.set_value();
  other.join();

  EXPECT_FALSE(copied);
}

}  // namespace
}  // namespace ostrel::platform
