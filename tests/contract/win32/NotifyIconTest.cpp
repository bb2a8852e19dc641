#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/ApplicationWindow.h"
#include "platform/EventLoop.h"
#include "tests/contract/win32/DialogHands.h"

namespace ostrel::platform {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using Operation = NotifyIcon::Operation;

constexpr UINT kCallback = 0x200;
constexpr WPARAM kIconId = 1;

class NotifyIconTest : public testing::Test {
 protected:
  NotifyIconTest() {
    oIcon->Notified = [this](std::uint32_t code) { Codes.push_back(code); };
    oIcon->Notify(Operation::kAdd, {.tip = u"Ostrel Server"});
  }
  ~NotifyIconTest() override { oIcon->Notify(Operation::kDelete, {}); }

  static HWND Handle() { return FindWindowW(L"OstrelTrayIcon", nullptr); }
  static HWND PopUp() { return FindWindowW(L"#32768", nullptr); }

  /// As soon as a menu is open.
  struct MenuHands {
    explicit MenuHands(std::function<void()> action) : Act(std::move(action)) {
      oTimer.SetEnabled(true);
    }
    std::function<void()> Act;
    Timer oTimer{milliseconds(10), [this] {
                   if (!IsWindowVisible(PopUp())) return;
                   oTimer.SetEnabled(false);
                   Act();
                 }};
  };

  static void Keys(std::initializer_list<WPARAM> keys) {
    for (const WPARAM key : keys) PostMessageW(Handle(), WM_KEYDOWN, key, 0);
  }

  std::unique_ptr<NotifyIcon> oIcon = MakeNotifyIcon();
  std::vector<std::uint32_t> Codes;
  const std::vector<PopupItem> Items{{u"&Open"}, {u"-"}, {u"&Close"}};
};

TEST_F(NotifyIconTest, TellsTheCodesOfTheIconsMessages) {
  for (const LPARAM code : {0x200, 0x205, 0x203, 0x999}) {
    PostMessageW(Handle(), kCallback, kIconId, code);
  }

  AwaitEvents([&] { return Codes.size() >= 4; });

  EXPECT_THAT(Codes, ElementsAre(0x200u, 0x205u, 0x203u, 0x999u));
}

TEST_F(NotifyIconTest, MessagesOfAnotherIconAreNotTold) {
  SendMessageW(Handle(), kCallback, 77, 0x203);

  EXPECT_TRUE(Codes.empty());
}

TEST_F(NotifyIconTest, TellsThatTheShellHasStarted) {
  int starts = 0;
  oIcon->ShellStarted = [&] { ++starts; };

  SendMessageW(Handle(), RegisterWindowMessageA("TaskbarCreated"), 0, 0);

  EXPECT_EQ(starts, 1);
}

TEST_F(NotifyIconTest, ItsWindowIsHiddenAndHearsTheShell) {
  EXPECT_FALSE(IsWindowVisible(Handle()));
  EXPECT_EQ(GetAncestor(Handle(), GA_PARENT), GetDesktopWindow());
}

TEST_F(NotifyIconTest, WhatAHandlerRaisesDoesNotLeaveTheWindow) {
  oIcon->Notified = [](std::uint32_t) { throw 1; };

  SendMessageW(Handle(), kCallback, kIconId, 0x203);

  EXPECT_TRUE(IsWindow(Handle()));
}

TEST_F(NotifyIconTest, MenuReturnsTheChosenItem) {
  MenuHands hands([] { Keys({VK_DOWN, VK_DOWN, VK_RETURN}); });

  EXPECT_EQ(oIcon->PopUpMenu(Items, 0), 2);
}

TEST_F(NotifyIconTest, MenuLeftReturnsNone) {
  MenuHands hands([] { Keys({VK_ESCAPE}); });

  EXPECT_EQ(oIcon->PopUpMenu(Items, 0), -1);
}

TEST_F(NotifyIconTest, MenuHasItsDefaultItem) {
  UINT defaultItem = 99;
  MenuHands hands([&] {
    const auto menu = reinterpret_cast<HMENU>(SendMessageW(PopUp(), 0x1E1 /* MN_GETHMENU */, 0, 0));
    defaultItem = GetMenuDefaultItem(menu, TRUE, GMDI_USEDISABLED);
    Keys({VK_ESCAPE});
  });

  oIcon->PopUpMenu(Items, 2);

  EXPECT_EQ(defaultItem, 2u);
}

TEST_F(NotifyIconTest, DisabledItemCannotBeChosen) {
  MenuHands hands([] { Keys({VK_DOWN, VK_RETURN, VK_ESCAPE}); });

  EXPECT_EQ(oIcon->PopUpMenu({{u"&Open", false}, {u"-"}}, -1), -1);
}

TEST_F(NotifyIconTest, QuittingTheLoopClosesTheMenu) {
  MenuHands hands([] { QuitEventLoop(3); });

  EXPECT_EQ(oIcon->PopUpMenu(Items, 0), -1);

  EXPECT_EQ(RunEventLoop(), 3);
}

}  // namespace
}  // namespace ostrel::platform
