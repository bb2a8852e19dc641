// The timers and the times at which they tick: the part of the event loop that is the same on every
// system. For the twins of EventLoop.cpp only.
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace ostrel::platform {

using LoopClock = std::chrono::steady_clock;

struct TimerEntry {
  std::chrono::milliseconds interval;
  std::function<void()> handler;
  bool enabled = false;
  bool ticking = false;  // the handler is on the stack
  bool soon = false;     // asked for from the handler: the next tick is due when that returns
  LoopClock::time_point due = {};
};

class TimerList {
 public:
  std::shared_ptr<TimerEntry> Add(std::chrono::milliseconds interval,
                                  std::function<void()> handler) {
    const auto least = std::chrono::milliseconds(1);
    return oTimers.emplace_back(std::make_shared<TimerEntry>(
        TimerEntry{std::max(interval, least), std::move(handler), {}, {}, {}, {}}));
  }

  void Remove(const std::shared_ptr<TimerEntry>& timer) {
    timer->enabled = false;
    std::erase(oTimers, timer);
  }

  static void SetEnabled(TimerEntry& timer, bool enabled) {
    if (enabled && !timer.enabled) timer.due = LoopClock::now() + timer.interval;
    timer.enabled = enabled;
  }

  static void TickSoon(TimerEntry& timer) {
    if (timer.ticking) {
      timer.soon = true;
    } else if (timer.enabled) {
      timer.due = std::min(timer.due, LoopClock::now());
    }
  }

  /// The next tick of all enabled timers; the clock's maximum without any.
  LoopClock::time_point NextDue() const {
    auto next = LoopClock::time_point::max();
    for (const auto& timer : oTimers) next = timer->enabled ? std::min(next, timer->due) : next;
    return next;
  }

  /// Gives each timer that is due one tick, the longest waiting first. True when one was due.
  bool TickDue() {
    const auto now = LoopClock::now();
    bool ticked = false;
    while (const std::shared_ptr<TimerEntry> timer = FirstDue(now)) {
      ticked = true;
      if (timer->ticking) {
        Skip(*timer);
      } else {
        Tick(*timer);
      }
    }
    return ticked;
  }

 private:
  std::shared_ptr<TimerEntry> FirstDue(LoopClock::time_point now) const {
    std::shared_ptr<TimerEntry> first;
    for (const auto& timer : oTimers) {
      if (timer->enabled && timer->due <= now && (!first || timer->due < first->due)) first = timer;
    }
    return first;
  }

  /// Leaves out the ticks that came due while the handler was on the stack.
  static void Skip(TimerEntry& timer) {
    const auto late = LoopClock::now() - timer.due;
    if (late >= LoopClock::duration::zero()) {
      timer.due += timer.interval * (late / timer.interval + 1);
    }
  }

  static void Tick(TimerEntry& timer) {
    timer.due = LoopClock::now() + timer.interval;
    timer.ticking = true;
    timer.handler();
    timer.ticking = false;
    if (std::exchange(timer.soon, false)) {
      TickSoon(timer);
    } else {
      Skip(timer);
    }
  }

  std::vector<std::shared_ptr<TimerEntry>> oTimers;
};

}  // namespace ostrel::platform
