// The event loop's side for the POSIX files: descriptors to watch, tasks from other threads, and a
// wait for a condition of their own while events are dispatched. Not for code above the seam.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace ostrel::platform {

struct WatchEntry;

/// Watches a descriptor for as long as the object lives; destroy it before the descriptor is
/// closed. The handler runs on the loop with what poll reported, and may destroy the watch.
class LoopWatch {
 public:
  /// events: poll's, POLLIN and so on. 0 leaves the descriptor out altogether, hang-ups included.
  LoopWatch(int descriptor, short events, std::function<void(short reported)> handler);
  ~LoopWatch();
  LoopWatch(const LoopWatch&) = delete;
  LoopWatch& operator=(const LoopWatch&) = delete;

  void SetEvents(short events);

 private:
  std::shared_ptr<WatchEntry> oEntry;
};

/// Tasks for the loop from any thread, run in the order in which they were posted.
class LoopMailbox {
 public:
  LoopMailbox();
  ~LoopMailbox();
  LoopMailbox(const LoopMailbox&) = delete;
  LoopMailbox& operator=(const LoopMailbox&) = delete;

  /// Any thread.
  void Post(std::function<void()> task);

  /// For the loop: readable while tasks wait.
  int Descriptor() const { return iReadEnd; }
  /// For the loop: runs the tasks that wait at this moment.
  void RunTasks();

 private:
  bool Take(std::function<void()>& task);

  std::mutex oMutex;
  std::deque<std::function<void()>> tasks;
  int iReadEnd = -1;
  int iWriteEnd = -1;
};

/// The loop's mailbox. A thread that may outlive the loop keeps the pointer; what is posted after
/// the loop's end is never run.
std::shared_ptr<LoopMailbox> TheMailbox();

/// Dispatches events as they come until `done` holds (true), or this time has passed or the loop
/// was told to quit (false). `done` is asked before the first wait and after every round of events.
bool DoEventsUntil(const std::function<bool()>& done,
                   std::chrono::steady_clock::time_point deadline);

/// Whether the loop was told to quit and has not returned yet.
bool LoopIsToQuit();

}  // namespace ostrel::platform
