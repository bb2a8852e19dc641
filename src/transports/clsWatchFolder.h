// Watches a folder, or one file in it, and tells of each change. Both waits block their caller
// until WatchStop and dispatch the program's events meanwhile: enter them at the bottom of the
// stack only.
#pragma once

#include <functional>
#include <memory>

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

  /// Raises FileChanged each time the file's modification time has become later than the last seen.
  void WatchFile(TextView folder, TextView fileName);
  /// Raises FolderChanged each time the folder has changed.
  void WatchFolder(TextView path);
  /// May be called from inside an event; harmless when nothing is watched.
  void WatchStop();

  std::function<void(TextView path)> FolderChanged;
  std::function<void()> FileChanged;
  /// A message box of the application.
  std::function<void(TextView text)> ShowMessage;

 private:
  std::unique_ptr<platform::FolderNotification> oNotification;
  bool bStop = false;
};

}  // namespace ostrel
