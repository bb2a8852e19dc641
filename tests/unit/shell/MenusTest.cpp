#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "shell/forms/Menus.h"

namespace ostrel {
namespace {

using testing::ElementsAre;

std::vector<Text> CaptionsBelow(platform::MenuId parent) {
  std::vector<Text> captions;
  for (const auto& menu : MainMenus()) {
    if (menu.parent == parent) captions.emplace_back(menu.caption);
  }
  return captions;
}

TEST(Menus, StandOnTheBarInTheirOrder) {
  EXPECT_THAT(CaptionsBelow(0), ElementsAre(u"&File", u"Tools", u"&Communications", u"Help"));
}

TEST(Menus, HaveTheirItemsInOrder) {
  EXPECT_THAT(CaptionsBelow(mnuFile),
              ElementsAre(u"&Test Quickbooks Connection", u"&Close Quickbooks Connection", u"&Hide",
                          u"E&xit"));
  EXPECT_THAT(CaptionsBelow(mnuTools),
              ElementsAre(u"Settings", u"Default Quickbooks Database", u"Start Quickbooks", u"-",
                          u"Log History", u"Log Communication", u"-", u"Test Request"));
  EXPECT_THAT(CaptionsBelow(mnuHelp), ElementsAre(u"About"));
}

TEST(Menus, KeepTheSpellingOfTheFlavours) {
  // Kept: "Geater".
  EXPECT_THAT(CaptionsBelow(mnuCommunications),
              ElementsAre(u"Watch Folder", u"Socket", u"-", u"D3/Linux", u"D3/NT",
                          u"Universe 10 or Geater", u"OpenInsight 7.1 and Greater"));
}

TEST(Menus, StandBeforeTheirItemsAndOnce) {
  std::set<platform::MenuId> seen = {0};
  for (const auto& menu : MainMenus()) {
    EXPECT_TRUE(seen.contains(menu.parent)) << menu.id;
    EXPECT_TRUE(seen.insert(menu.id).second) << menu.id;
  }
}

}  // namespace
}  // namespace ostrel
