#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

#include "shell/forms/frmSysTray.h"
#include "tests/unit/doubles/FakeNotifyIcon.h"
#include "tests/unit/doubles/FakeTrace.h"

namespace ostrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Operation = platform::NotifyIcon::Operation;

class frmSysTrayTest : public testing::Test {
 protected:
  frmSysTrayTest() {
    Form.SysTrayMouseDown = [this](int button) { Note(u"Down", button); };
    Form.SysTrayMouseUp = [this](int button) { Note(u"Up", button); };
    Form.SysTrayMouseMove = [this] { Events.emplace_back(u"Move"); };
    Form.SysTrayDoubleClick = [this](int button) { Note(u"Double", button); };
    Form.MenuClick = [this](int index, TextView key) { Note(u"Click " + Text(key), index); };
  }

  void Note(const Text& event, int number) {
    Events.push_back(event + u" " + ToText(std::int64_t{number}));
  }
  void AddUsualItems() {
    Form.AddMenuItem(u"&Open", u"open", true, true);
    Form.AddMenuItem(u"-", u"", false, true);
    Form.AddMenuItem(u"&Close", u"close", false, true);
  }
  std::vector<Operation> Operations() const {
    std::vector<Operation> made;
    for (const auto& call : Tray.Calls) made.push_back(call.iOperation);
    return made;
  }

  doubles::FakeTrace Trace;
  doubles::FakeTray Tray;
  frmSysTray Form{Tray.Factory()(), Trace};
  std::vector<Text> Events;
};

TEST_F(frmSysTrayTest, AddsTheIconWithEverythingInIt) {
  Form.ToolTip(u"tip");
  Form.IconHandle(5);
  Form.ShowIcon();

  ASSERT_THAT(Operations(), ElementsAre(Operation::kAdd));
  EXPECT_EQ(Tray.Calls[0].oRecord.flags, 7u);
  EXPECT_EQ(Tray.Calls[0].oRecord.callbackMessage, 512u);
  EXPECT_EQ(Tray.Calls[0].oRecord.icon, 5);
  EXPECT_EQ(Tray.Calls[0].oRecord.tip, u"tip");
}

TEST_F(frmSysTrayTest, ModifiesAnIconThatIsThere) {
  Form.ShowIcon();
  Form.ShowIcon();

  EXPECT_THAT(Operations(), ElementsAre(Operation::kAdd, Operation::kModify));
}

TEST_F(frmSysTrayTest, AddsTheIconAgainAfterItWasHidden) {
  Form.ShowIcon();
  Form.HideIcon();
  Form.ShowIcon();

  EXPECT_THAT(Operations(), ElementsAre(Operation::kAdd, Operation::kDelete, Operation::kAdd));
}

TEST_F(frmSysTrayTest, HidesOnce) {
  Form.HideIcon();
  Form.ShowIcon();
  Form.HideIcon();
  Form.HideIcon();

  EXPECT_THAT(Operations(), ElementsAre(Operation::kAdd, Operation::kDelete));
}

TEST_F(frmSysTrayTest, TellsTheShellOfAnotherTipAlone) {
  Form.ShowIcon();
  Form.ToolTip(u"other");

  ASSERT_THAT(Operations(), ElementsAre(Operation::kAdd, Operation::kModify));
  EXPECT_EQ(Tray.Calls[1].oRecord.flags, 4u);
  EXPECT_EQ(Tray.Calls[1].oRecord.tip, u"other");
}

TEST_F(frmSysTrayTest, TellsTheShellOfAnotherIconAlone) {
  Form.ShowIcon();
  Form.IconHandle(9);

  ASSERT_THAT(Operations(), ElementsAre(Operation::kAdd, Operation::kModify));
  EXPECT_EQ(Tray.Calls[1].oRecord.flags, 2u);
  EXPECT_EQ(Tray.Calls[1].oRecord.icon, 9);
}

TEST_F(frmSysTrayTest, DoesNotTouchTheShellForTheSameTipOrIcon) {
  Form.ToolTip(u"tip");
  Form.IconHandle(5);
  Form.ShowIcon();
  Form.ToolTip(u"tip");
  Form.IconHandle(5);

  EXPECT_THAT(Operations(), ElementsAre(Operation::kAdd));
}

TEST_F(frmSysTrayTest, LeavesTheShellAloneWhileTheIconIsHidden) {
  Form.ToolTip(u"tip");
  Form.IconHandle(5);

  EXPECT_THAT(Tray.Calls, IsEmpty());
}

TEST_F(frmSysTrayTest, CutsATipToItsField) {
  Form.ToolTip(Text(63, u'a') + u"b");
  Form.ShowIcon();
  Form.ToolTip(Text(63, u'a') + u"c");

  ASSERT_THAT(Tray.Calls, SizeIs(1));
  EXPECT_EQ(Tray.Calls[0].oRecord.tip, Text(63, u'a'));
}

TEST_F(frmSysTrayTest, BringsTheIconBackWhenTheShellRestarts) {
  Form.ShowIcon();
  Tray.ShellStarts();

  EXPECT_TRUE(Tray.bIconThere);
  EXPECT_THAT(Operations(), ElementsAre(Operation::kAdd, Operation::kAdd));
}

TEST_F(frmSysTrayTest, LeavesAHiddenIconHiddenWhenTheShellRestarts) {
  Form.ShowIcon();
  Form.HideIcon();
  Tray.ShellStarts();

  EXPECT_FALSE(Tray.bIconThere);
}

TEST_F(frmSysTrayTest, ShowsARefusedIconOnceTheShellRuns) {
  Tray.bShellRuns = false;
  Form.ShowIcon();
  Form.ToolTip(u"meanwhile");
  Tray.ShellStarts();

  EXPECT_THAT(Operations(), ElementsAre(Operation::kAdd, Operation::kAdd));
  EXPECT_EQ(Tray.Calls[1].oRecord.flags, 7u);
  EXPECT_EQ(Tray.Calls[1].oRecord.tip, u"meanwhile");
  EXPECT_TRUE(Tray.bIconThere);
}

TEST_F(frmSysTrayTest, TriesARefusedIconAgainWithTheNextShow) {
  Tray.bShellRuns = false;
  Form.ShowIcon();
  Tray.bShellRuns = true;
  Form.ShowIcon();

  EXPECT_THAT(Operations(), ElementsAre(Operation::kAdd, Operation::kAdd));
}

TEST_F(frmSysTrayTest, TakesTheIconAwayWithItself) {
  doubles::FakeTray tray;
  { frmSysTray(tray.Factory()(), Trace).ShowIcon(); }

  EXPECT_FALSE(tray.bIconThere);
}

TEST_F(frmSysTrayTest, DecodesTheShellsNotifications) {
  Form.ShowMenuOnRightClick = false;

  for (std::uint32_t code = 511; code < 520; ++code) Tray.Notify(code);

  // Kept: the left button is "down" when it is released.
  EXPECT_THAT(Events,
              ElementsAre(u"Move", u"Down 1", u"Double 1", u"Down 2", u"Up 2", u"Double 2"));
}

TEST_F(frmSysTrayTest, RaisesDownWhenTheLeftButtonIsReleased) {
  Tray.Notify(513);
  const auto afterPress = Events;
  Tray.Notify(514);

  EXPECT_THAT(afterPress, IsEmpty());
  EXPECT_THAT(Events, ElementsAre(u"Down 1"));
}

TEST_F(frmSysTrayTest, IgnoresUnknownCodes) {
  for (const std::uint32_t code : {0u, 1u, 511u, 519u, 0xFFFFFFFFu}) Tray.Notify(code);

  EXPECT_THAT(Events, IsEmpty());
}

TEST_F(frmSysTrayTest, OpensTheMenuByARightPressWithoutAnEvent) {
  AddUsualItems();

  Tray.Notify(516);

  EXPECT_THAT(Tray.Menus, SizeIs(1));
  EXPECT_THAT(Events, IsEmpty());
}

TEST_F(frmSysTrayTest, ShowsTheItemsInTheirOrder) {
  AddUsualItems();
  Form.EnableMenu(2, false);

  Form.ShowMenu();

  ASSERT_THAT(Tray.Menus, SizeIs(1));
  ASSERT_THAT(Tray.Menus[0], SizeIs(3));
  EXPECT_EQ(Tray.Menus[0][0].caption, u"&Open");
  EXPECT_EQ(Tray.Menus[0][1].caption, u"-");
  EXPECT_EQ(Tray.Menus[0][2].caption, u"&Close");
  EXPECT_TRUE(Tray.Menus[0][0].enabled);
  EXPECT_FALSE(Tray.Menus[0][2].enabled);
  EXPECT_THAT(Tray.Defaults, ElementsAre(0));
}

TEST_F(frmSysTrayTest, TellsWhichItemWasChosen) {
  AddUsualItems();
  Tray.iChosen = 2;

  Form.ShowMenu();

  EXPECT_THAT(Events, ElementsAre(u"Click close 2"));
}

TEST_F(frmSysTrayTest, RaisesNothingWhenNoItemWasChosen) {
  AddUsualItems();
  for (const int chosen : {-1, 3}) {
    Tray.iChosen = chosen;
    Form.ShowMenu();
  }

  EXPECT_THAT(Events, IsEmpty());
}

TEST_F(frmSysTrayTest, MakesAnotherItemTheDefault) {
  AddUsualItems();
  Form.DefaultMenuIndex(2);
  Form.ShowMenu();

  EXPECT_EQ(Form.DefaultMenuIndex(), 2);
  EXPECT_THAT(Tray.Defaults, ElementsAre(2));
}

TEST_F(frmSysTrayTest, HasNoDefaultUntilOneIsGiven) {
  Form.AddMenuItem(u"&Open", u"open", false, true);

  EXPECT_EQ(Form.DefaultMenuIndex(), -1);
}

TEST_F(frmSysTrayTest, MovesItemsUpWhenOneIsRemoved) {
  AddUsualItems();
  Form.DefaultMenuIndex(2);
  Form.RemoveMenuItem(1);
  Tray.iChosen = 1;
  Form.ShowMenu();

  EXPECT_EQ(Form.DefaultMenuIndex(), 1);
  EXPECT_THAT(Events, ElementsAre(u"Click close 1"));
}

TEST_F(frmSysTrayTest, HasNoDefaultOnceItIsRemoved) {
  AddUsualItems();

  Form.RemoveMenuItem(0);

  EXPECT_EQ(Form.DefaultMenuIndex(), -1);
}

TEST_F(frmSysTrayTest, IgnoresIndexesThatAreNone) {
  AddUsualItems();
  for (const int index : {-1, 3, 1000}) {
    Form.EnableMenu(index, false);
    Form.RemoveMenuItem(index);
    Form.DefaultMenuIndex(index);
  }
  Form.ShowMenu();

  EXPECT_EQ(Form.DefaultMenuIndex(), 0);
  EXPECT_THAT(Tray.Menus[0], SizeIs(3));
}

TEST_F(frmSysTrayTest, ShowsNoEmptyMenu) {
  Form.ShowMenu();

  EXPECT_THAT(Tray.Menus, IsEmpty());
}

TEST_F(frmSysTrayTest, OpensOneMenuAtATime) {
  AddUsualItems();
  Tray.DuringMenu = [this] { Tray.Notify(516); };

  Tray.Notify(516);
  Tray.DuringMenu = nullptr;
  Tray.Notify(516);

  EXPECT_THAT(Tray.Menus, SizeIs(2));
}

TEST_F(frmSysTrayTest, ToleratesThatNobodyListens) {
  Form.SysTrayMouseDown = nullptr;

  Tray.Notify(514);

  EXPECT_THAT(Trace.Status, IsEmpty());
}

TEST_F(frmSysTrayTest, TurnsWhatAHandlerRaisesIntoAStatusLine) {
  Form.SysTrayMouseDown = [](int) { throw std::bad_alloc(); };

  Tray.Notify(514);

  EXPECT_THAT(Trace.Status, ElementsAre(u"frmSysTray: Out of memory"));
}

}  // namespace
}  // namespace ostrel
