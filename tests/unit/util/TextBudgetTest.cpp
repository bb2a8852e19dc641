#include <gtest/gtest.h>

#include <new>
#include <utility>

#include "tests/support/TextBudgetLimit.h"
#include "util/TextBudget.h"

namespace ostrel {
namespace {

std::size_t Held() { return ProcessTextBudget().Held(); }

TEST(TextBudget, GivesASmallAddressSpaceHalf) {
  constexpr std::size_t mebibyte = 1024 * 1024;

  EXPECT_EQ(ProcessTextBudget().Limit(), (sizeof(void*) == 4 ? 512 : 1024) * mebibyte);
}

TEST(TextBudget, CountsWhatIsHeld) {
  TextBudget::Share first, second;
  first.Resize(100);
  second.Resize(30);
  first.Resize(50);

  EXPECT_EQ(Held(), 80u);
  EXPECT_EQ(first.Size(), 50u);
}

TEST(TextBudget, GetsBackWhatItsHoldersLeave) {
  {
    TextBudget::Share share;
    share.Resize(100);
  }
  TextBudget::Share released;
  released.Resize(100);
  released.Release();

  EXPECT_EQ(Held(), 0u);
  EXPECT_EQ(released.Size(), 0u);
}

TEST(TextBudget, MayBeUsedUpButNotPassed) {
  const TextBudgetLimit limit(100);
  TextBudget::Share first, second;
  first.Resize(60);
  second.Resize(40);

  EXPECT_THROW(second.Resize(41), std::bad_alloc);
  EXPECT_THROW(second.Resize(101), std::bad_alloc);
  EXPECT_THROW(second.Resize(static_cast<std::size_t>(-1)), std::bad_alloc);

  EXPECT_EQ(second.Size(), 40u);
  EXPECT_EQ(Held(), 100u);
}

TEST(TextBudget, AlwaysTakesBack) {
  TextBudget::Share first, second;
  first.Resize(100);
  second.Resize(100);
  const TextBudgetLimit limit(10);

  first.Resize(50);

  EXPECT_EQ(Held(), 150u);
}

TEST(TextBudget, ASharePassesFromHandToHand) {
  TextBudget::Share first;
  first.Resize(100);

  TextBudget::Share second = std::move(first);
  EXPECT_EQ(second.Size(), 100u);
  TextBudget::Share third;
  third.Resize(7);
  third = std::move(second);

  EXPECT_EQ(third.Size(), 100u);
  EXPECT_EQ(Held(), 100u);
}

}  // namespace
}  // namespace ostrel
