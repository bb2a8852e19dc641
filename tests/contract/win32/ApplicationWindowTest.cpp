#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>

#include "platform/ApplicationWindow.h"
#include "platform/win32/FrameWindow.h"
#include "tests/contract/win32/DialogHands.h"

namespace ostrel::platform {
namespace {

using testing::ElementsAre;
using CloseReason = ApplicationWindow::CloseReason;

enum Item : MenuId { kFile = 1, kOpen, kLine, kExit, kHelp, kAbout };

class ApplicationWindowTest : public testing::Test {
 protected:
  HWND Handle() { return Window.Handle(); }
  HWND List() { return FindWindowExW(Handle(), nullptr, L"LISTBOX", nullptr); }
  HWND Notice() { return FindWindowExW(Handle(), nullptr, L"STATIC", nullptr); }

  std::vector<std::wstring> Lines() {
    std::vector<std::wstring> lines;
    for (LRESULT i = 0; i < SendMessageW(List(), LB_GETCOUNT, 0, 0); ++i) {
      wchar_t line[10000];
      SendMessageW(List(), LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(line));
      lines.emplace_back(line);
    }
    return lines;
  }

  LRESULT Extent() { return SendMessageW(List(), LB_GETHORIZONTALEXTENT, 0, 0); }

  HMENU Menu(int position) { return GetSubMenu(GetMenu(Handle()), position); }

  static std::wstring Caption(HMENU menu, int position) {
    wchar_t caption[100] = L"";
    GetMenuStringW(menu, static_cast<UINT>(position), caption, 100, MF_BYPOSITION);
    return caption;
  }

  static UINT State(HMENU menu, int position) {
    return GetMenuState(menu, static_cast<UINT>(position), MF_BYPOSITION);
  }

  RECT PlaceOf(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return place;
  }

  void Choose(HMENU menu, int position) {
    PostMessageW(Handle(), WM_COMMAND, GetMenuItemID(menu, position), 0);
    DoEventsFor(std::chrono::milliseconds(20));
  }

  FrameWindow Window{{.title = u"Title",
                      .caption = u"Frame under test",
                      .notice = u"A notice of some length, which stands below the list.",
                      .menus = {{kFile, 0, u"&File"},
                                {kOpen, kFile, u"&Open"},
                                {kLine, kFile, u"-"},
                                {kExit, kFile, u"E&xit"},
                                {kHelp, 0, u"Help"},
                                {kAbout, kHelp, u"About"}}}};
};

TEST_F(ApplicationWindowTest, IsCreatedHidden) {
  EXPECT_FALSE(IsWindowVisible(Handle()));
  EXPECT_EQ(Window.State(), WindowState::kNormal);
  EXPECT_EQ(TextOfWindow(Handle()), L"Frame under test");
}

TEST_F(ApplicationWindowTest, ListsStatusLinesWhereTheyWereInserted) {
  Window.InsertStatusLine(0, u"first");
  Window.InsertStatusLine(0, u"second \u20AC");
  Window.InsertStatusLine(0, u"third");

  Window.RemoveStatusLine(2);

  EXPECT_THAT(Lines(), ElementsAre(L"third", L"second \u20AC"));
}

TEST_F(ApplicationWindowTest, ListScrollsSidewaysAsFarAsItsLongestLine) {
  Window.InsertStatusLine(0, u"short");
  const auto narrow = Extent();
  Window.InsertStatusLine(0, Text(300, u'W'));
  const auto wide = Extent();
  Window.RemoveStatusLine(0);

  EXPECT_GT(narrow, 0);
  EXPECT_GT(wide, 300 * 5);
  EXPECT_EQ(Extent(), narrow);
}

TEST_F(ApplicationWindowTest, ListKeepsWhatIsReadInItsPlace) {
  for (int i = 0; i < 100; ++i) Window.InsertStatusLine(0, ToText(std::int64_t{i}));
  SendMessageW(List(), LB_SETTOPINDEX, 40, 0);

  Window.InsertStatusLine(0, u"newest");

  EXPECT_EQ(SendMessageW(List(), LB_GETTOPINDEX, 0, 0), 41);
}

TEST_F(ApplicationWindowTest, ListStaysAtTheNewestLineWhenThatIsSeen) {
  for (int i = 0; i < 100; ++i) Window.InsertStatusLine(0, ToText(std::int64_t{i}));

  EXPECT_EQ(SendMessageW(List(), LB_GETTOPINDEX, 0, 0), 0);
}

TEST_F(ApplicationWindowTest, LineOfAnyLengthIsTaken) {
  Window.InsertStatusLine(0, Text(1 << 20, u'x'));

  EXPECT_EQ(Lines().size(), 1u);
}

TEST_F(ApplicationWindowTest, ShowsTheMenusInOrder) {
  EXPECT_EQ(Caption(GetMenu(Handle()), 0), L"&File");
  EXPECT_EQ(Caption(GetMenu(Handle()), 1), L"Help");
  EXPECT_EQ(GetMenuItemCount(Menu(0)), 3);
  EXPECT_EQ(Caption(Menu(0), 0), L"&Open");
  EXPECT_TRUE(State(Menu(0), 1) & MF_SEPARATOR);
  EXPECT_EQ(Caption(Menu(0), 2), L"E&xit");
}

TEST_F(ApplicationWindowTest, ChecksAndGreysMenuItems) {
  Window.SetMenuChecked(kOpen, true);
  Window.SetMenuEnabled(kExit, false);
  EXPECT_TRUE(State(Menu(0), 0) & MF_CHECKED);
  EXPECT_TRUE(State(Menu(0), 2) & MF_GRAYED);

  Window.SetMenuChecked(kOpen, false);
  Window.SetMenuEnabled(kExit, true);
  EXPECT_FALSE(State(Menu(0), 0) & MF_CHECKED);
  EXPECT_FALSE(State(Menu(0), 2) & MF_GRAYED);
}

TEST_F(ApplicationWindowTest, HiddenItemComesBackInItsPlaceWithItsState) {
  Window.SetMenuChecked(kOpen, true);
  Window.SetMenuVisible(kOpen, false);
  Window.SetMenuVisible(kLine, false);
  ASSERT_EQ(GetMenuItemCount(Menu(0)), 1);

  Window.SetMenuVisible(kLine, true);
  Window.SetMenuVisible(kOpen, true);

  EXPECT_EQ(GetMenuItemCount(Menu(0)), 3);
  EXPECT_EQ(Caption(Menu(0), 0), L"&Open");
  EXPECT_TRUE(State(Menu(0), 0) & MF_CHECKED);
}

TEST_F(ApplicationWindowTest, HidesAWholeMenu) {
  Window.SetMenuVisible(kFile, false);
  EXPECT_EQ(Caption(GetMenu(Handle()), 0), L"Help");

  Window.SetMenuVisible(kFile, true);
  EXPECT_EQ(Caption(Menu(0), 2), L"E&xit");
}

TEST_F(ApplicationWindowTest, TellsWhichItemWasChosen) {
  std::vector<MenuId> chosen;
  Window.MenuClick = [&](MenuId item) { chosen.push_back(item); };

  Choose(Menu(0), 2);
  Choose(Menu(1), 0);

  EXPECT_THAT(chosen, ElementsAre(kExit, kAbout));
}

TEST_F(ApplicationWindowTest, TellsThatAMenuOnTheBarOpens) {
  std::vector<MenuId> opened;
  Window.MenuClick = [&](MenuId item) { opened.push_back(item); };

  SendMessageW(Handle(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(Menu(1)), 1);

  EXPECT_THAT(opened, ElementsAre(kHelp));
}

TEST_F(ApplicationWindowTest, EnterAndDoubleClickTellTheSelectedLine) {
  std::vector<Text> lines;
  Window.StatusDoubleClick = [&](TextView line) { lines.emplace_back(line); };
  Window.InsertStatusLine(0, u"old");
  Window.InsertStatusLine(0, u"new");
  SendMessageW(List(), LB_SETCURSEL, 1, 0);

  SendMessageW(List(), WM_KEYDOWN, VK_RETURN, 0);
  SendMessageW(Handle(), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(List()), LBN_DBLCLK),
               reinterpret_cast<LPARAM>(List()));

  EXPECT_THAT(lines, ElementsAre(u"old", u"old"));
}

TEST_F(ApplicationWindowTest, ArrowKeysMoveThroughTheList) {
  Window.InsertStatusLine(0, u"old");
  Window.InsertStatusLine(0, u"new");
  SendMessageW(List(), LB_SETCURSEL, 0, 0);

  SendMessageW(List(), WM_KEYDOWN, VK_DOWN, 0);

  EXPECT_EQ(SendMessageW(List(), LB_GETCURSEL, 0, 0), 1);
}

TEST_F(ApplicationWindowTest, NoLineIsToldWhenNoneIsSelected) {
  bool told = false;
  Window.StatusDoubleClick = [&](TextView) { told = true; };

  SendMessageW(List(), WM_KEYDOWN, VK_RETURN, 0);

  EXPECT_FALSE(told);
}

TEST_F(ApplicationWindowTest, TellsWhoWantsItClosed) {
  std::vector<CloseReason> reasons;
  Window.CloseRequest = [&](CloseReason reason) {
    reasons.push_back(reason);
    if (reason == CloseReason::kSystemEnds) QuitEventLoop(0);
  };

  SendMessageW(Handle(), WM_SYSCOMMAND, SC_CLOSE, 0);
  SendMessageW(Handle(), WM_CLOSE, 0, 0);
  EXPECT_TRUE(SendMessageW(Handle(), WM_QUERYENDSESSION, 0, 0));
  SendMessageW(Handle(), WM_ENDSESSION, FALSE, 0);
  SendMessageW(Handle(), WM_ENDSESSION, TRUE, 0);
  RunEventLoop();

  EXPECT_THAT(reasons,
              ElementsAre(CloseReason::kCloseBox, CloseReason::kOther, CloseReason::kSystemEnds));
  EXPECT_TRUE(IsWindow(Handle()));
}

TEST_F(ApplicationWindowTest, TheSystemWaitsForTheProgramsEndOnAnotherThread) {
  auto window = std::make_unique<FrameWindow>(
      ApplicationWindowDescription{.title = u"T", .caption = u"T", .notice = u"", .menus = {}});
  HWND delaying = nullptr;
  ASSERT_TRUE(AwaitEvents([&] {
    // That of the window just made is the topmost.
    return (delaying = FindWindowW(L"OstrelSessionEnd", nullptr)) != nullptr &&
           GetWindowLongPtrW(delaying, GWLP_USERDATA) != 0;
  }));
  bool told = false;
  window->CloseRequest =
      Window.CloseRequest = [&](CloseReason reason) { told = reason == CloseReason::kSystemEnds; };
  std::atomic<bool> answered = false;
  std::thread system([&] {
    SendMessageW(delaying, WM_ENDSESSION, TRUE, 0);
    answered = true;
  });

  EXPECT_TRUE(AwaitEvents([&] { return told; }));
  EXPECT_FALSE(answered);

  window.reset();
  EXPECT_TRUE(AwaitEvents([&] { return answered.load(); }));
  system.join();
}

TEST_F(ApplicationWindowTest, HasAMaximiseBox) {
  EXPECT_TRUE(GetWindowLongW(Handle(), GWL_STYLE) & WS_MAXIMIZEBOX);
  EXPECT_TRUE(GetWindowLongW(Handle(), GWL_STYLE) & WS_MINIMIZEBOX);
}

TEST_F(ApplicationWindowTest, FitsTheListAboveTheNotice) {
  Window.Resize = [&] { Window.FitStatusList(); };
  Window.Show();

  SetWindowPos(Handle(), nullptr, 0, 0, 700, 500, SWP_NOMOVE | SWP_NOZORDER);

  const RECT list = PlaceOf(List()), notice = PlaceOf(Notice()), whole = PlaceOf(Handle());
  EXPECT_GT(list.right - list.left, 600);
  EXPECT_LT(list.bottom, notice.top);
  EXPECT_LT(notice.bottom, whole.bottom);
  EXPECT_GT(list.bottom - list.top, 250);
}

TEST_F(ApplicationWindowTest, CannotBecomeTooSmallForItsContents) {
  MINMAXINFO limits{};

  SendMessageW(Handle(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));

  EXPECT_GE(limits.ptMinTrackSize.x, 300);
  EXPECT_GE(limits.ptMinTrackSize.y, 200);
}

TEST_F(ApplicationWindowTest, IsShownInTheStateThatItWasGivenWhileHidden) {
  Window.SetState(WindowState::kMinimised);
  EXPECT_EQ(Window.State(), WindowState::kMinimised);
  Window.SetState(WindowState::kNormal);

  Window.Show();

  EXPECT_TRUE(IsWindowVisible(Handle()));
  EXPECT_FALSE(IsIconic(Handle()));
}

TEST_F(ApplicationWindowTest, TellsThatItWasMinimised) {
  Window.Show();
  std::vector<WindowState> states;
  Window.Resize = [&] { states.push_back(Window.State()); };

  SendMessageW(Handle(), WM_SYSCOMMAND, SC_MINIMIZE, 0);

  EXPECT_THAT(states, testing::Contains(WindowState::kMinimised));
}

TEST_F(ApplicationWindowTest, HiddenWhileMinimisedComesBackNormal) {
  Window.Show();
  Window.Resize = [&] {
    if (Window.State() != WindowState::kMinimised) return;
    Window.Hide();
    Window.SetState(WindowState::kNormal);
  };
  SendMessageW(Handle(), WM_SYSCOMMAND, SC_MINIMIZE, 0);
  ASSERT_FALSE(IsWindowVisible(Handle()));

  Window.Show();

  EXPECT_TRUE(IsWindowVisible(Handle()));
  EXPECT_FALSE(IsIconic(Handle()));
}

TEST_F(ApplicationWindowTest, MarkIsAPropertyOfTheWindow) {
  Window.SetMark(u"Ostrel_TEST");
  EXPECT_EQ(GetPropA(Handle(), "Ostrel_TEST"), reinterpret_cast<HANDLE>(INT_PTR{1}));

  Window.RemoveMark(u"Ostrel_TEST");
  EXPECT_EQ(GetPropA(Handle(), "Ostrel_TEST"), nullptr);
}

TEST_F(ApplicationWindowTest, AnotherInstanceAsksTheMarkedWindowToBeSeen) {
  Window.SetMark(u"Ostrel_TEST");
  int asked = 0;
  Window.RestoreRequest = [&] {
    ++asked;
    Window.Show();
    return true;
  };

  ASSERT_EQ(FindMarkedWindow(u"Ostrel_TEST"), reinterpret_cast<WindowHandle>(Handle()));
  EXPECT_TRUE(ActivateWindow(FindMarkedWindow(u"Ostrel_TEST")));

  EXPECT_EQ(asked, 1);
  EXPECT_TRUE(IsWindowVisible(Handle()));
}

TEST_F(ApplicationWindowTest, AWindowThatIsAboutToEndIsNotActivated) {
  Window.SetMark(u"Ostrel_TEST");
  Window.RestoreRequest = [] { return false; };

  EXPECT_FALSE(ActivateWindow(FindMarkedWindow(u"Ostrel_TEST")));

  EXPECT_FALSE(IsWindowVisible(Handle()));
}

TEST_F(ApplicationWindowTest, AnotherInstanceRestoresTheMinimisedWindow) {
  Window.SetMark(u"Ostrel_TEST");
  Window.RestoreRequest = [] { return true; };
  Window.Show();
  Window.SetState(WindowState::kMinimised);
  ASSERT_TRUE(IsIconic(Handle()));

  ASSERT_EQ(FindMarkedWindow(u"Ostrel_TEST"), reinterpret_cast<WindowHandle>(Handle()));
  EXPECT_TRUE(ActivateWindow(FindMarkedWindow(u"Ostrel_TEST")));

  EXPECT_TRUE(AwaitEvents([&] { return !IsIconic(Handle()); }));
}

TEST_F(ApplicationWindowTest, AWindowWithoutTheMarkIsNotFound) {
  Window.SetMark(u"Ostrel_OTHER");

  EXPECT_EQ(FindMarkedWindow(u"Ostrel_TEST"), 0);
}

TEST_F(ApplicationWindowTest, WhatAHandlerRaisesDoesNotLeaveTheWindow) {
  Window.MenuClick = [](MenuId) { throw std::runtime_error("a handler's"); };
  Window.Resize = [] { throw 1; };

  Choose(Menu(0), 0);
  SendMessageW(Handle(), WM_SIZE, 0, 0);

  EXPECT_TRUE(IsWindow(Handle()));
}

TEST_F(ApplicationWindowTest, NonsenseIsHarmless) {
  int told = 0;
  Window.MenuClick = [&](MenuId) { ++told; };
  Window.StatusDoubleClick = [&](TextView) { ++told; };

  for (const int message : {WM_COMMAND, WM_INITMENUPOPUP, WM_VKEYTOITEM, WM_SYSCOMMAND,
                            WM_GETMINMAXINFO, WM_DPICHANGED, WM_SETTINGCHANGE}) {
    for (const WPARAM wParam : {WPARAM{0}, WPARAM{0x7FFF}, WPARAM{0xFFFF0FFF}}) {
      SendMessageW(Handle(), static_cast<UINT>(message), wParam, 0);
    }
  }

  EXPECT_EQ(told, 0);
  EXPECT_TRUE(IsWindow(Handle()));
}

TEST_F(ApplicationWindowTest, HasAnIconForTheNotificationArea) { EXPECT_NE(Window.Icon(), 0); }

}  // namespace
}  // namespace ostrel::platform
