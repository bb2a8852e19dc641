// Tells that something in a folder has changed: a file came, went, was renamed or written, or its
// attributes changed. What it was is not told, subfolders do not count, and changes that come close
// together may be told once. Error numbers as in platform/Files.h.
#pragma once

#include <chrono>
#include <memory>

#include "util/Text.h"

namespace ostrel::platform {

class FolderNotification {
 public:
  virtual ~FolderNotification() = default;

  /// Begins to watch, whatever was watched before. 0, or the error number and nothing has changed.
  /// Use one place in the loop only: a wait must not be entered while another of the same object is
  /// on the stack.
  virtual int Open(TextView folder) = 0;
  /// Harmless when repeated. A wait that is on the stack ends; the object itself must outlive it.
  virtual void Close() = 0;
  virtual bool IsOpen() const = 0;

  enum class WaitResult { kChanged, kTimePassed, kClosed, kLoopQuits };
  /// Dispatches events as they come until the folder has changed or this time has passed; a closed
  /// notification or a loop that was told to quit ends it at once. A wait asks nothing of the
  /// folder itself, which may be on a network share that no longer responds.
  virtual WaitResult WaitWithEvents(std::chrono::milliseconds time) = 0;
  /// To be called after kChanged and before the next wait. Changes between kChanged and this call
  /// are told by the next wait. 0, or the error number when the folder can no longer be watched (it
  /// has been removed, say): from then on waits only let the time pass, until Open or Close.
  virtual int Rearm() = 0;
  /// Asks the system, once, whether there is a folder at the path that was opened last; for every
  /// few seconds, since a dead network share holds the caller up. Systems do not tell of a folder
  /// that was moved, or one above it: when the folder is no longer the one that is watched, the
  /// wait tells of it as a change after this call, and Rearm fails.
  virtual bool LookAtFolder() = 0;
};

std::unique_ptr<FolderNotification> MakeFolderNotification();

}  // namespace ostrel::platform
