#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/forms/TrayMenu.h"
#include "tests/unit/doubles/FakeNotifyIcon.h"
#include "tests/unit/doubles/FakeTrace.h"

namespace ostrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class TrayMenuTest : public testing::Test {
 protected:
  TrayMenuTest() {
    Menu.MenuClick = [this](TextView key) {
      if (!key.empty()) Chosen.emplace_back(key);
    };
    Menu.SysTrayDoubleClick = [this](std::int16_t) { Chosen.emplace_back(u"open"); };
    Menu.SysTrayMouseDown = [this](std::int16_t button) {
      if (button == frmSysTray::kRightButton) Menu.ShowMenu();
    };
  }

  doubles::FakeTrace Trace;
  doubles::FakeTray Tray;
  TrayMenu Menu{Tray.Factory(), Trace};
  std::vector<Text> Chosen;
};

TEST_F(TrayMenuTest, ShowsTheWindowsIconWithItsTip) {
  Menu.Show(5);

  ASSERT_THAT(Tray.Calls, SizeIs(1));
  EXPECT_EQ(Tray.Calls[0].oRecord.icon, 5);
  EXPECT_EQ(Tray.Calls[0].oRecord.tip, u"Ostrel Server - MultiValue QuickBooks Gateway");
  EXPECT_TRUE(Tray.bIconThere);
}

TEST_F(TrayMenuTest, OffersOpenAndClose) {
  Menu.Show(5);
  Tray.Notify(516);

  ASSERT_THAT(Tray.Menus, SizeIs(1));
  ASSERT_THAT(Tray.Menus[0], SizeIs(3));
  EXPECT_EQ(Tray.Menus[0][0].caption, u"&Open");
  EXPECT_EQ(Tray.Menus[0][1].caption, u"-");
  EXPECT_EQ(Tray.Menus[0][2].caption, u"&Close");
  for (const auto& item : Tray.Menus[0]) EXPECT_TRUE(item.enabled);
  EXPECT_THAT(Tray.Defaults, ElementsAre(0));
}

TEST_F(TrayMenuTest, TellsWhatWasChosen) {
  Menu.Show(5);
  for (const int item : {0, 1, 2}) {
    Tray.iChosen = item;
    Tray.Notify(516);
  }

  EXPECT_THAT(Chosen, ElementsAre(u"open", u"close"));
}

TEST_F(TrayMenuTest, OpensByADoubleClick) {
  Menu.Show(5);
  Tray.Notify(515);

  EXPECT_THAT(Chosen, ElementsAre(u"open"));
}

TEST_F(TrayMenuTest, ShowsOneIconHoweverOften) {
  Menu.Show(5);
  Menu.Show(5);

  ASSERT_THAT(Tray.Calls, SizeIs(2));
  EXPECT_EQ(Tray.Calls[1].iOperation, platform::NotifyIcon::Operation::kModify);
}

TEST_F(TrayMenuTest, TakesTheIconAwayForGood) {
  Menu.Remove();
  Menu.Show(5);

  EXPECT_THAT(Tray.Calls, IsEmpty());
}

TEST_F(TrayMenuTest, SurvivesItsRemovalWhileItsMenuIsOpen) {
  Menu.Show(5);
  Tray.iChosen = 0;
  Tray.DuringMenu = [this] { Menu.Remove(); };

  Tray.Notify(516);

  EXPECT_FALSE(Tray.bIconThere);
  EXPECT_THAT(Chosen, IsEmpty());
}

}  // namespace
}  // namespace ostrel
