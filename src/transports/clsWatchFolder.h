// Watches a folder, or one file in it, and tells of each change. Both waits block their caller
// until WatchStop or the loop's end and dispatch the program's events meanwhile: enter them at the
// bottom of the stack only. A folder that goes away while it is watched is watched again when it is
// back, which is told as a change.
#pragma once

#include <functional>
#include <memory>

#include "platform/EventLoop.h"
#include "platform/FolderNotification.h"
#include "util/Text.h"

namespace ostrel {

class clsWatchFolder {
 public:
  explicit clsWatchFolder(std::unique_ptr<platform::FolderNotification> notification =
                              platform::MakeFolderNotification());
  /// Stops. Must not run while a wait is on the stack: keep the object alive until that returned.
  ~clsWatchFolder();
  clsWatchFolder(const clsWatchFolder&) = delete;
  clsWatchFolder& operator=(const clsWatchFolder&) = delete;

  /// Calls FileChanged each time the file's modification time has become later than the last seen:
  /// at first the one that it has now, none when it is missing.
  void WatchFile(TextView folder, TextView fileName);
  /// Calls FolderChanged each time the folder has changed. A second watch of the object while one
  /// is on the stack does nothing.
  void WatchFolder(TextView path);
  /// Dispatches the events that wait before the folder is let go. May be called from inside an
  /// event; harmless when nothing is watched.
  void WatchStop();
  /// Asks the system, once, whether the folder is there: the one that is watched, when one is. One
  /// that has been moved away is told as a change then. For every few seconds: a network share that
  /// no longer responds holds the caller up, so the rounds of the waits ask nothing.
  bool IsFolderThere(TextView folder);

  std::function<void(TextView path)> FolderChanged;
  std::function<void()> FileChanged;
  /// A message box of the application.
  std::function<void(TextView text)> ShowMessage;
  /// Gives other events their turn between rounds; a test may put its own in place.
  std::function<void()> DoEvents = platform::DoEvents;

 private:
  class Watch;

  bool Begin(const Text& folder);
  void Run(const Text& folder, const std::function<void()>& changed);
  // False when the watch is over.
  bool WaitForChange();
  bool WaitForReturn(const Text& folder);

  std::unique_ptr<platform::FolderNotification> oNotification;
  bool bStop = false;
  bool bWatching = false;  // a watch is on the stack
};

}  // namespace ostrel
