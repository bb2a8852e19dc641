#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include "platform/EventLoop.h"

namespace ostrel::platform {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// Dispatches events until the condition holds; false when it did not within ten seconds.
template <typename Condition>
bool Await(Condition condition) {
  const auto limit = steady_clock::now() + std::chrono::seconds(10);
  while (!condition() && steady_clock::now() < limit) DoEventsFor(milliseconds(5));
  return condition();
}

void BusyFor(milliseconds time) {
  const auto end = steady_clock::now() + time;
  while (steady_clock::now() < end) {
  }
}

TEST(Timer, IsDisabledWhenItIsMade) {
  int ticks = 0;
  Timer timer(milliseconds(1), [&] { ++ticks; });

  DoEventsFor(milliseconds(20));

  EXPECT_FALSE(timer.Enabled());
  EXPECT_EQ(ticks, 0);
}

TEST(Timer, TicksAgainAndAgain) {
  int ticks = 0;
  Timer timer(milliseconds(5), [&] { ++ticks; });

  timer.SetEnabled(true);

  EXPECT_TRUE(timer.Enabled());
  EXPECT_TRUE(Await([&] { return ticks >= 3; }));
}

TEST(Timer, WaitsItsIntervalBeforeEachTick) {
  const auto begin = steady_clock::now();
  std::optional<steady_clock::time_point> first, second;
  Timer timer(milliseconds(40), [&] { (first ? second : first) = steady_clock::now(); });

  timer.SetEnabled(true);
  ASSERT_TRUE(Await([&] { return second.has_value(); }));

  EXPECT_GE(*first - begin, milliseconds(40));
  EXPECT_GE(*second - *first, milliseconds(40));
}

TEST(Timer, KeepsItsNextTickWhenItIsEnabledAgain) {
  const auto begin = steady_clock::now();
  bool ticked = false;
  Timer timer(milliseconds(300), [&] { ticked = true; });
  timer.SetEnabled(true);

  const bool inTime = Await([&] {
    timer.SetEnabled(true);
    return ticked;
  });

  EXPECT_TRUE(inTime);
  EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(5));
}

TEST(Timer, MayDisableItselfInItsHandler) {
  int ticks = 0;
  std::unique_ptr<Timer> timer;
  timer = std::make_unique<Timer>(milliseconds(1), [&] {
    ++ticks;
    timer->SetEnabled(false);
  });

  timer->SetEnabled(true);
  ASSERT_TRUE(Await([&] { return ticks > 0; }));
  DoEventsFor(milliseconds(20));

  EXPECT_EQ(ticks, 1);
}

TEST(Timer, MayBeDestroyedByItsHandler) {
  int ticks = 0;
  std::unique_ptr<Timer> timer;
  timer = std::make_unique<Timer>(milliseconds(1), [&] {
    timer.reset();
    ++ticks;
  });

  timer->SetEnabled(true);
  ASSERT_TRUE(Await([&] { return ticks > 0; }));
  DoEventsFor(milliseconds(20));

  EXPECT_EQ(ticks, 1);
}

TEST(Timer, DoesNotTickInsideItsOwnHandlerWhileOthersDo) {
  int depth = 0, deepest = 0, others = 0;
  Timer other(milliseconds(2), [&] { ++others; });
  Timer timer(milliseconds(2), [&] {
    deepest = std::max(deepest, ++depth);
    const int before = others;
    Await([&] { return others > before + 2; });
    --depth;
  });

  timer.SetEnabled(true);
  other.SetEnabled(true);

  EXPECT_TRUE(Await([&] { return others > 10; }));
  EXPECT_EQ(deepest, 1);
}

TEST(Timer, TicksOnceForTheTimeTheLoopWasHeldUp) {
  int ticks = 0;
  Timer timer(milliseconds(200), [&] { ++ticks; });
  timer.SetEnabled(true);

  BusyFor(milliseconds(650));
  DoEvents();

  EXPECT_EQ(ticks, 1);
}

TEST(Timer, GetsItsTurnBesideOneThatIsAlwaysDue) {
  int ticks = 0;
  Timer greedy(milliseconds(1), [] { BusyFor(milliseconds(3)); });
  Timer timer(milliseconds(10), [&] { ++ticks; });
  greedy.SetEnabled(true);
  timer.SetEnabled(true);

  EXPECT_TRUE(Await([&] { return ticks > 5; }));
}

TEST(Timer, TicksFirstWhenItHasWaitedLongest) {
  std::string ticks;
  Timer third(milliseconds(200), [&] { ticks += "third "; });
  Timer first(milliseconds(100), [&] { ticks += "first "; });
  Timer second(milliseconds(150), [&] { ticks += "second "; });
  third.SetEnabled(true);
  first.SetEnabled(true);
  second.SetEnabled(true);

  BusyFor(milliseconds(250));
  DoEvents();

  EXPECT_EQ(ticks, "first second third ");
}

TEST(Timer, TicksSoonWhenItIsTold) {
  int ticks = 0;
  Timer timer(std::chrono::hours(1), [&] { ++ticks; });
  timer.SetEnabled(true);

  timer.TickSoon();
  DoEvents();
  DoEvents();

  EXPECT_EQ(ticks, 1);
}

TEST(Timer, TicksAgainSoonWhenItsHandlerAsksForIt) {
  int ticks = 0;
  std::unique_ptr<Timer> timer;
  timer = std::make_unique<Timer>(std::chrono::hours(1), [&] {
    if (++ticks < 3) timer->TickSoon();
  });
  timer->SetEnabled(true);

  timer->TickSoon();

  EXPECT_TRUE(Await([&] { return ticks == 3; }));
}

TEST(Timer, ThatIsDisabledDoesNotTickSoon) {
  int ticks = 0;
  Timer timer(std::chrono::hours(1), [&] { ++ticks; });

  timer.TickSoon();
  DoEventsFor(milliseconds(20));

  EXPECT_EQ(ticks, 0);
}

TEST(Timer, ThatAlwaysTicksSoonLeavesOthersTheirTurn) {
  int ticks = 0;
  std::unique_ptr<Timer> greedy;
  greedy = std::make_unique<Timer>(std::chrono::hours(1), [&] { greedy->TickSoon(); });
  greedy->SetEnabled(true);
  Timer timer(milliseconds(5), [&] { ++ticks; });
  timer.SetEnabled(true);

  greedy->TickSoon();

  EXPECT_TRUE(Await([&] { return ticks > 5; }));
}

TEST(Timer, DoesNotTickInsideItsOwnHandlerThoughToldToTickSoon) {
  int depth = 0, deepest = 0, ticks = 0;
  std::unique_ptr<Timer> timer;
  timer = std::make_unique<Timer>(std::chrono::hours(1), [&] {
    deepest = std::max(deepest, ++depth);
    if (++ticks == 1) {
      timer->TickSoon();
      DoEventsFor(milliseconds(20));
    }
    --depth;
  });
  timer->SetEnabled(true);

  timer->TickSoon();

  EXPECT_TRUE(Await([&] { return ticks == 2; }));
  EXPECT_EQ(deepest, 1);
}

TEST(DoEvents, ReturnsAtOnceWhenNothingWaits) {
  Timer timer(std::chrono::hours(1), [] {});
  timer.SetEnabled(true);
  const auto begin = steady_clock::now();

  DoEvents();

  EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(5));
}

TEST(DoEventsFor, LastsAsLongAsItWasTold) {
  const auto begin = steady_clock::now();

  DoEventsFor(milliseconds(50));

  EXPECT_GE(steady_clock::now() - begin, milliseconds(50));
}

TEST(DoEventsFor, DispatchesInsideAHandler) {
  int inner = 0;
  bool seenInside = false;
  Timer innerTimer(milliseconds(1), [&] { ++inner; });
  Timer outer(milliseconds(5), [&] {
    innerTimer.SetEnabled(true);
    seenInside = Await([&] { return inner > 2; });
  });

  outer.SetEnabled(true);

  EXPECT_TRUE(Await([&] { return seenInside; }));
}

TEST(QuitEventLoop, MakesTheLoopReturnItsCode) {
  Timer timer(milliseconds(1), [] { QuitEventLoop(7); });
  timer.SetEnabled(true);

  EXPECT_EQ(RunEventLoop(), 7);
}

TEST(QuitEventLoop, BeforeTheLoopHasBegunMakesItReturnAtOnce) {
  QuitEventLoop(3);

  EXPECT_EQ(RunEventLoop(), 3);
}

TEST(QuitEventLoop, EndsNestedWaitsOnItsWayOut) {
  const auto begin = steady_clock::now();
  Timer quit(milliseconds(5), [] { QuitEventLoop(1); });
  Timer waiting(milliseconds(1), [&] {
    quit.SetEnabled(true);
    DoEventsFor(std::chrono::minutes(5));
  });
  waiting.SetEnabled(true);

  const int code = RunEventLoop();

  EXPECT_EQ(code, 1);
  EXPECT_LT(steady_clock::now() - begin, std::chrono::minutes(1));
}

TEST(QuitEventLoop, HoldsForOneRunOnly) {
  QuitEventLoop(3);
  RunEventLoop();
  int ticks = 0;
  Timer timer(milliseconds(1), [&] { QuitEventLoop(++ticks); });
  timer.SetEnabled(true);

  EXPECT_EQ(RunEventLoop(), 1);
}

TEST(IsNestedHandler, IsFalseWithoutAHandler) { EXPECT_FALSE(IsNestedHandler()); }

TEST(IsNestedHandler, IsFalseInEveryHandlerOfTheOutermostLoop) {
  int ticks = 0, nested = 0;
  const auto count = [&] {
    ++ticks;
    nested += IsNestedHandler() ? 1 : 0;
  };
  Timer first(milliseconds(1), count), second(milliseconds(1), count);
  first.SetEnabled(true);
  second.SetEnabled(true);

  EXPECT_TRUE(Await([&] { return ticks > 100; }));

  EXPECT_EQ(nested, 0);
}

TEST(IsNestedHandler, IsTrueInAHandlerThatRunsWhileAnotherOneWaits) {
  std::optional<bool> inner, outerBefore, outerAfter;
  Timer innerTimer(milliseconds(1), [&] { inner = IsNestedHandler(); });
  Timer outer(milliseconds(1), [&] {
    outerBefore = IsNestedHandler();
    innerTimer.SetEnabled(true);
    Await([&] { return inner.has_value(); });
    innerTimer.SetEnabled(false);
    outerAfter = IsNestedHandler();
  });

  outer.SetEnabled(true);
  ASSERT_TRUE(Await([&] { return outerAfter.has_value(); }));

  EXPECT_EQ(inner, true);
  EXPECT_EQ(outerBefore, false);
  EXPECT_EQ(outerAfter, false);
}

TEST(IsNestedHandler, IsFalseAgainWhenTheOtherOneHasReturned) {
  int outerTicks = 0, ticksAfter = 0, nestedAfter = 0;
  Timer outer(milliseconds(1), [&] {
    ++outerTicks;
    DoEvents();
    outer.SetEnabled(false);
  });
  outer.SetEnabled(true);
  ASSERT_TRUE(Await([&] { return outerTicks == 1; }));
  Timer later(milliseconds(1), [&] {
    ++ticksAfter;
    nestedAfter += IsNestedHandler() ? 1 : 0;
  });

  later.SetEnabled(true);

  EXPECT_TRUE(Await([&] { return ticksAfter > 10; }));
  EXPECT_EQ(nestedAfter, 0);
}

}  // namespace
}  // namespace ostrel::platform
