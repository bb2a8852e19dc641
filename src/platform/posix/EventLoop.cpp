// The event loop over poll. The set of descriptors is kept between rounds, so that a thousand idle
// connections cost one call a round and nothing more.
#include "platform/EventLoop.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <deque>
#include <optional>
#include <system_error>
#include <vector>

#include "platform/TimerList.h"
#include "platform/posix/LoopWatch.h"

namespace ostrel::platform {

struct WatchEntry {
  int descriptor;
  std::function<void(short)> handler;
  short events = 0;
  short reported = 0;    // by poll and not yet handed out; 0: not in the queue
  std::size_t slot = 0;  // in the poll set
  bool destroyed = false;
};

namespace {

constexpr auto kForEver = LoopClock::time_point::max();

class Loop {
 public:
  Loop();

  void Add(const std::shared_ptr<WatchEntry>& entry, short events);
  void Remove(WatchEntry& entry);
  void SetEvents(WatchEntry& entry, short events);

  void Round(LoopClock::time_point waitUntil);
  bool DispatchUntil(const std::function<bool()>& done, LoopClock::time_point deadline);

  TimerList oTimers;
  std::shared_ptr<LoopMailbox> oMailbox = std::make_shared<LoopMailbox>();
  std::optional<int> quitCode;

 private:
  void Poll(LoopClock::time_point waitUntil);
  void DispatchQueue() noexcept;

  std::vector<pollfd> pollSet;
  std::vector<std::shared_ptr<WatchEntry>> entries;  // entries[i] stands behind pollSet[i]
  /// Shared by nested rounds: what an outer round has not handed out yet is the inner one's first.
  std::deque<std::shared_ptr<WatchEntry>> queue;
};

Loop& TheLoop() {
  static Loop loop;
  return loop;
}

Loop::Loop() {
  const auto entry = std::make_shared<WatchEntry>();
  entry->descriptor = oMailbox->Descriptor();
  entry->handler = [this](short) { oMailbox->RunTasks(); };
  Add(entry, POLLIN);
}

void Loop::Add(const std::shared_ptr<WatchEntry>& entry, short events) {
  entry->slot = entries.size();
  entries.push_back(entry);
  pollSet.push_back({entry->descriptor, 0, 0});
  SetEvents(*entry, events);
}

void Loop::Remove(WatchEntry& entry) {
  entry.destroyed = true;
  const std::size_t slot = entry.slot;
  std::swap(pollSet[slot], pollSet.back());
  std::swap(entries[slot], entries.back());
  entries[slot]->slot = slot;
  pollSet.pop_back();
  entries.pop_back();
}

void Loop::SetEvents(WatchEntry& entry, short events) {
  entry.events = events;
  pollfd& watched = pollSet[entry.slot];
  watched.events = events;
  // poll passes over negative numbers; with no events it would still report hang-ups for ever.
  watched.fd = events != 0 ? entry.descriptor : -1;
}

int MillisecondsUntil(LoopClock::time_point time) {
  using std::chrono::milliseconds;
  if (time == kForEver) {
    return -1;
  }
  const auto wait = std::chrono::ceil<milliseconds>(time - LoopClock::now()).count();
  constexpr milliseconds::rep longest = 1'000'000;
  return static_cast<int>(std::clamp<milliseconds::rep>(wait, 0, longest));
}

void Loop::Poll(LoopClock::time_point waitUntil) {
  const auto until = std::min(waitUntil, oTimers.NextDue());
  int ready = poll(pollSet.data(), pollSet.size(), MillisecondsUntil(until));
  for (std::size_t i = 0; i < pollSet.size() && ready > 0; ++i) {
    if (pollSet[i].revents == 0) {
      continue;
    }
    --ready;
    if (entries[i]->reported == 0) {
      queue.push_back(entries[i]);
    }
    entries[i]->reported = pollSet[i].revents;
  }
}

/// A handler that raises ends the program here: the callers above the seam catch everything.
void Loop::DispatchQueue() noexcept {
  oTimers.TickDue();
  while (!queue.empty()) {
    const std::shared_ptr<WatchEntry> entry = std::move(queue.front());
    queue.pop_front();
    const short reported = std::exchange(entry->reported, short{0});
    if (!entry->destroyed && entry->events != 0) {
      entry->handler(reported);
    }
    oTimers.TickDue();
  }
}

void Loop::Round(LoopClock::time_point waitUntil) {
  DispatchQueue();
  Poll(waitUntil);
  DispatchQueue();
}

bool Loop::DispatchUntil(const std::function<bool()>& done, LoopClock::time_point deadline) {
  while (!done()) {
    if (quitCode || LoopClock::now() >= deadline) {
      return false;
    }
    Round(deadline);
  }
  return true;
}

bool Never() { return false; }

}  // namespace

void DoEvents() { TheLoop().Round(LoopClock::time_point()); }

void DoEventsFor(std::chrono::milliseconds time) {
  TheLoop().DispatchUntil(Never, LoopClock::now() + time);
}

bool DoEventsUntil(const std::function<bool()>& done, LoopClock::time_point deadline) {
  return TheLoop().DispatchUntil(done, deadline);
}

int RunEventLoop() {
  Loop& loop = TheLoop();
  loop.DispatchUntil(Never, kForEver);
  const int code = loop.quitCode.value_or(0);
  loop.quitCode.reset();
  return code;
}

void QuitEventLoop(int exitCode) { TheLoop().quitCode = exitCode; }

Timer::Timer(std::chrono::milliseconds interval, std::function<void()> handler)
    : oEntry(TheLoop().oTimers.Add(interval, std::move(handler))) {}

Timer::~Timer() { TheLoop().oTimers.Remove(oEntry); }

bool Timer::Enabled() const { return oEntry->enabled; }

void Timer::SetEnabled(bool enabled) { TimerList::SetEnabled(*oEntry, enabled); }

LoopWatch::LoopWatch(int descriptor, short events, std::function<void(short)> handler)
    : oEntry(std::make_shared<WatchEntry>()) {
  oEntry->descriptor = descriptor;
  oEntry->handler = std::move(handler);
  TheLoop().Add(oEntry, events);
}

LoopWatch::~LoopWatch() { TheLoop().Remove(*oEntry); }

void LoopWatch::SetEvents(short events) { TheLoop().SetEvents(*oEntry, events); }

std::shared_ptr<LoopMailbox> TheMailbox() { return TheLoop().oMailbox; }

LoopMailbox::LoopMailbox() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
    throw std::system_error(errno, std::generic_category(), "event loop");
  }
  readEnd = ends[0];
  writeEnd = ends[1];
}

LoopMailbox::~LoopMailbox() {
  close(readEnd);
  close(writeEnd);
}

void LoopMailbox::Post(std::function<void()> task) {
  const std::lock_guard lock(oMutex);
  tasks.push_back(std::move(task));
  const char wake = 0;
  // A full pipe wakes the loop just as well.
  [[maybe_unused]] const auto written = write(writeEnd, &wake, 1);
}

bool LoopMailbox::Take(std::function<void()>& task) {
  const std::lock_guard lock(oMutex);
  if (tasks.empty()) {
    return false;
  }
  task = std::move(tasks.front());
  tasks.pop_front();
  return true;
}

/// One at a time, so that a task that dispatches events leaves the others to the inner round.
void LoopMailbox::RunTasks() {
  char drained[64];
  while (read(readEnd, drained, sizeof drained) > 0) {
  }
  std::size_t waiting;
  {
    const std::lock_guard lock(oMutex);
    waiting = tasks.size();
  }
  for (std::function<void()> task; waiting > 0 && Take(task); --waiting) {
    task();
  }
}

}  // namespace ostrel::platform
