#include <gtest/gtest.h>

#include "gateway/IdleClose.h"
#include "tests/unit/doubles/FakeClock.h"

namespace ostrel {
namespace {

using doubles::FakeClock;
using std::chrono::milliseconds;
using std::chrono::seconds;

TEST(IdleClose, IsDueOnceTheTimeHasPassed) {
  FakeClock clock;
  IdleClose idleClose;

  idleClose.Extend(clock.SteadyNow(), 300);
  clock.Advance(seconds(300));
  EXPECT_FALSE(idleClose.IsDue(clock.SteadyNow(), 300));

  clock.Advance(milliseconds(1));
  EXPECT_TRUE(idleClose.IsDue(clock.SteadyNow(), 300));
}

TEST(IdleClose, IsPushedAheadByEachUse) {
  FakeClock clock;
  IdleClose idleClose;
  idleClose.Extend(clock.SteadyNow(), 300);

  clock.Advance(seconds(299));
  idleClose.Extend(clock.SteadyNow(), 300);
  clock.Advance(seconds(299));

  EXPECT_FALSE(idleClose.IsDue(clock.SteadyNow(), 300));
}

TEST(IdleClose, IsNeverDueWithoutATimeout) {
  FakeClock clock;
  IdleClose idleClose;

  EXPECT_FALSE(idleClose.IsDue(clock.SteadyNow(), 0));
}

TEST(IdleClose, IsNeverDueWhilePinned) {
  FakeClock clock;
  IdleClose idleClose;
  idleClose.bAutoClose = false;

  EXPECT_FALSE(idleClose.IsDue(clock.SteadyNow(), 300));
}

TEST(IdleClose, StaysWhereItIsWithATimeoutOfZeroOrLess) {
  FakeClock clock;
  IdleClose idleClose;
  idleClose.Extend(clock.SteadyNow(), 300);
  const auto before = idleClose.dCloseAt;

  clock.Advance(seconds(10));
  idleClose.Extend(clock.SteadyNow(), 0);
  idleClose.Extend(clock.SteadyNow(), -5);

  EXPECT_EQ(idleClose.dCloseAt, before);
}

}  // namespace
}  // namespace ostrel
