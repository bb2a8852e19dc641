// The event loop over epoll: the system keeps the set of descriptors, so that a thousand idle
// connections cost nothing. The events to be watched for change several times while an event is
// handled; the system is told once, before the next wait.
//
// A handler may dispatch events itself. Rounds therefore nest, and share one queue of reported
// descriptors: an event that an outer round has not handed out yet is handed out by the inner one,
// so that no event overtakes an older one. A handler may also destroy any watch, its own included;
// entries are kept alive until the round has passed them.
#include "platform/EventLoop.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <deque>
#include <new>
#include <optional>
#include <system_error>
#include <vector>

#include "platform/detail/TimerList.h"
#include "platform/posix/LoopWatch.h"

namespace ostrel::platform {

struct WatchEntry : std::enable_shared_from_this<WatchEntry> {
  int descriptor = -1;
  std::function<void(short)> handler;
  short events = 0;
  short told = 0;        // the events that the system watches for
  bool changed = false;  // in the list of changes
  short reported = 0;    // by the system and not yet handed out; 0: not in the queue
  bool destroyed = false;
};

namespace {

static_assert(EPOLLIN == POLLIN && EPOLLOUT == POLLOUT && EPOLLRDHUP == POLLRDHUP &&
              EPOLLHUP == POLLHUP && EPOLLERR == POLLERR);

constexpr auto kForEver = LoopClock::time_point::max();

class Loop {
 public:
  Loop();
  ~Loop();
  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;

  void Add(WatchEntry& entry, short events);
  void Remove(WatchEntry& entry);
  void SetEvents(WatchEntry& entry, short events);

  void Round(LoopClock::time_point waitUntil);
  bool DispatchUntil(const std::function<bool()>& done, LoopClock::time_point deadline);

  TimerList oTimers;
  std::shared_ptr<LoopMailbox> oMailbox = std::make_shared<LoopMailbox>();
  std::optional<int> quitCode;
  int handlers = 0;  // on the stack

 private:
  void TickDue();
  void RunHandler(const WatchEntry& entry, short reported);
  bool TellSystem(WatchEntry& entry) const;
  void TellChanges();
  void Wait(LoopClock::time_point waitUntil);
  void DispatchQueue() noexcept;

  int iEpoll;
  std::vector<epoll_event> oFound;  // room for one event of each entry
  std::vector<std::shared_ptr<WatchEntry>> oChanges;
  /// Shared by nested rounds: what an outer round has not handed out yet is the inner one's first.
  std::deque<std::shared_ptr<WatchEntry>> oQueue;
  std::shared_ptr<WatchEntry> oMailboxEntry = std::make_shared<WatchEntry>();
};

Loop& TheLoop() {
  static Loop loop;
  return loop;
}

Loop::Loop() : iEpoll(epoll_create1(EPOLL_CLOEXEC)) {
  if (iEpoll < 0) throw std::system_error(errno, std::generic_category(), "event loop");
  oMailboxEntry->descriptor = oMailbox->Descriptor();
  oMailboxEntry->handler = [this](short) { oMailbox->RunTasks(); };
  Add(*oMailboxEntry, POLLIN);
}

Loop::~Loop() { close(iEpoll); }

void Loop::Add(WatchEntry& entry, short events) {
  oFound.emplace_back();
  oChanges.reserve(oFound.capacity());  // SetEvents must not raise
  entry.events = events;
  if (!TellSystem(entry)) {
    oFound.pop_back();
    throw std::bad_alloc();
  }
}

void Loop::Remove(WatchEntry& entry) {
  entry.destroyed = true;
  entry.events = 0;
  TellSystem(entry);
  std::erase(oChanges, entry.shared_from_this());
  oFound.pop_back();
}

void Loop::SetEvents(WatchEntry& entry, short events) {
  entry.events = events;
  if (!entry.changed) {
    oChanges.push_back(entry.shared_from_this());
    entry.changed = true;
  }
}

/// False when the system has no memory for it. A descriptor without events is taken out: the system
/// would go on reporting its hang-up.
bool Loop::TellSystem(WatchEntry& entry) const {
  if (entry.events == entry.told) return true;
  const int change = entry.events == 0 ? EPOLL_CTL_DEL
                     : entry.told == 0 ? EPOLL_CTL_ADD
                                       : EPOLL_CTL_MOD;
  epoll_event wanted{};
  wanted.events = static_cast<std::uint32_t>(entry.events);
  wanted.data.ptr = &entry;
  if (epoll_ctl(iEpoll, change, entry.descriptor, &wanted) != 0) return false;
  entry.told = entry.events;
  return true;
}

/// Changes for which the system has no memory are told again in the next round.
void Loop::TellChanges() {
  std::erase_if(oChanges, [this](const std::shared_ptr<WatchEntry>& entry) {
    entry->changed = !TellSystem(*entry);
    return !entry->changed;
  });
}

int MillisecondsUntil(LoopClock::time_point time) {
  using std::chrono::milliseconds;
  if (time == kForEver) return -1;
  const auto wait = std::chrono::ceil<milliseconds>(time - LoopClock::now()).count();
  constexpr milliseconds::rep longest = 1'000'000;
  return static_cast<int>(std::clamp<milliseconds::rep>(wait, 0, longest));
}

void Loop::Wait(LoopClock::time_point waitUntil) {
  TellChanges();
  const auto until = std::min(waitUntil, oTimers.NextDue());
  const int ready =
      epoll_wait(iEpoll, oFound.data(), static_cast<int>(oFound.size()), MillisecondsUntil(until));
  for (int i = 0; i < ready; ++i) {
    const epoll_event& event = oFound[static_cast<std::size_t>(i)];
    auto& entry = *static_cast<WatchEntry*>(event.data.ptr);
    if (entry.reported == 0) oQueue.push_back(entry.shared_from_this());
    entry.reported = static_cast<short>(event.events);
  }
}

void Loop::TickDue() {
  ++handlers;
  oTimers.TickDue();
  --handlers;
}

void Loop::RunHandler(const WatchEntry& entry, short reported) {
  ++handlers;
  entry.handler(reported);
  --handlers;
}

/// A handler that raises ends the program here: the callers above the seam catch everything.
void Loop::DispatchQueue() noexcept {
  TickDue();
  while (!oQueue.empty()) {
    const std::shared_ptr<WatchEntry> entry = std::move(oQueue.front());
    oQueue.pop_front();
    const short reported = std::exchange(entry->reported, short{0});
    if (!entry->destroyed && entry->events != 0) RunHandler(*entry, reported);
    TickDue();
  }
}

void Loop::Round(LoopClock::time_point waitUntil) {
  DispatchQueue();
  Wait(waitUntil);
  DispatchQueue();
}

bool Loop::DispatchUntil(const std::function<bool()>& done, LoopClock::time_point deadline) {
  while (!done()) {
    if (quitCode || LoopClock::now() >= deadline) return false;
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

bool LoopIsToQuit() { return TheLoop().quitCode.has_value(); }

bool IsNestedHandler() { return TheLoop().handlers > 1; }

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

void Timer::TickSoon() { TimerList::TickSoon(*oEntry); }

LoopWatch::LoopWatch(int descriptor, short events, std::function<void(short)> handler)
    : oEntry(std::make_shared<WatchEntry>()) {
  oEntry->descriptor = descriptor;
  oEntry->handler = std::move(handler);
  TheLoop().Add(*oEntry, events);
}

LoopWatch::~LoopWatch() { TheLoop().Remove(*oEntry); }

void LoopWatch::SetEvents(short events) { TheLoop().SetEvents(*oEntry, events); }

std::shared_ptr<LoopMailbox> TheMailbox() { return TheLoop().oMailbox; }

LoopMailbox::LoopMailbox() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
    throw std::system_error(errno, std::generic_category(), "event loop");
  }
  iReadEnd = ends[0];
  iWriteEnd = ends[1];
}

LoopMailbox::~LoopMailbox() {
  close(iReadEnd);
  close(iWriteEnd);
}

void LoopMailbox::Post(std::function<void()> task) {
  const std::lock_guard lock(oMutex);
  tasks.push_back(std::move(task));
  const char wake = 0;
  // A full pipe wakes the loop just as well.
  [[maybe_unused]] const auto written = write(iWriteEnd, &wake, 1);
}

bool LoopMailbox::Take(std::function<void()>& task) {
  const std::lock_guard lock(oMutex);
  if (tasks.empty()) return false;
  task = std::move(tasks.front());
  tasks.pop_front();
  return true;
}

/// One at a time, so that a task that dispatches events leaves the others to the inner round.
void LoopMailbox::RunTasks() {
  char drained[64];
  while (read(iReadEnd, drained, sizeof drained) > 0) {
  }
  std::size_t waiting;
  {
    const std::lock_guard lock(oMutex);
    waiting = tasks.size();
  }
  for (std::function<void()> task; waiting > 0 && Take(task); --waiting) task();
}

}  // namespace ostrel::platform
