#include <gtest/gtest.h>

#include "shell/commands/Logs.h"
#include "tests/unit/doubles/FakeWindow.h"

namespace ostrel {
namespace {

TEST(StatusList, PutsTheNewestLineOnTop) {
  doubles::FakeWindow window;
  StatusList list(window);

  list.Add(u"older");
  list.Add(u"newer");

  EXPECT_EQ(window.Status, (std::deque<Text>{u"newer", u"older"}));
}

TEST(StatusList, DropsTheOldestOfAHundredAndOneLines) {
  doubles::FakeWindow window;
  StatusList list(window);

  for (int i = 1; i <= 101; ++i) list.Add(ToText(std::int64_t{i}));

  EXPECT_EQ(window.Status.size(), 100u);
  EXPECT_EQ(window.Status.front(), u"101");
  EXPECT_EQ(window.Status.back(), u"2");
}

TEST(StatusList, NeverHoldsMoreThanAHundredLines) {
  doubles::FakeWindow window;
  StatusList list(window);

  for (int i = 1; i <= 250; ++i) {
    list.Add(u"line");
    ASSERT_LE(window.Status.size(), 100u);
  }

  EXPECT_EQ(window.Status.size(), 100u);
}

}  // namespace
}  // namespace ostrel
