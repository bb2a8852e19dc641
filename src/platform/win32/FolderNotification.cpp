// Folder changes over the system's change notifications.
#include "platform/FolderNotification.h"

#include <windows.h>

#include <utility>

#include "platform/FileSystem.h"
#include "platform/SystemError.h"
#include "platform/win32/MessageLoop.h"
#include "platform/win32/Path.h"

namespace ostrel::platform {
namespace {

constexpr DWORD kChanges =
    FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_ATTRIBUTES | FILE_NOTIFY_CHANGE_LAST_WRITE;
static_assert(kChanges == 0x15);

/// Shared by the object and the wait on the stack, which a handler may close.
using Notification = std::shared_ptr<void>;

/// None, and the thread's last error, when the folder cannot be watched.
Notification Begin(TextView folder) {
  const HANDLE found = FindFirstChangeNotificationW(SystemPath(folder).c_str(), FALSE, kChanges);
  if (found == INVALID_HANDLE_VALUE) return nullptr;
  return Notification(found, [](HANDLE handle) { FindCloseChangeNotification(handle); });
}

class Win32FolderNotification final : public FolderNotification {
 public:
  int Open(TextView folder) override;
  void Close() override;
  bool IsOpen() const override { return open; }
  WaitResult WaitWithEvents(std::chrono::milliseconds time) override;
  int Rearm() override;
  bool LookAtFolder() override;

 private:
  void ArmAgain();
  bool WatchesGone() const { return oNotification && gone; }

  bool open = false;
  unsigned opening = 0;  // changes whenever another folder, or none, is watched
  Text oFolder;
  Notification oNotification;  // none after the folder has gone
  bool gone = false;
};

int Win32FolderNotification::Open(TextView folder) {
  Notification notification = Begin(folder);
  if (!notification) return LastErrorNumber();
  oFolder = folder;
  oNotification = std::move(notification);
  open = true;
  gone = false;
  ++opening;
  return 0;
}

void Win32FolderNotification::Close() {
  oNotification.reset();
  open = false;
  ++opening;
}

FolderNotification::WaitResult Win32FolderNotification::WaitWithEvents(
    std::chrono::milliseconds time) {
  if (!open) return WaitResult::kClosed;

  const unsigned begun = opening;
  const Notification waitedFor = oNotification;
  const auto deadline = std::chrono::steady_clock::now() + time;
  const bool changed = DoEventsUntilSignalled(waitedFor.get(), deadline,
                                              [&] { return opening != begun || WatchesGone(); });

  if (opening != begun) return WaitResult::kClosed;
  if (LoopIsToQuit()) return WaitResult::kLoopQuits;
  if (changed) ArmAgain();
  return changed || WatchesGone() ? WaitResult::kChanged : WaitResult::kTimePassed;
}

/// Before the change is told, so that nothing is missed: Wine forgets what happens meanwhile.
void Win32FolderNotification::ArmAgain() {
  gone = !FindNextChangeNotification(oNotification.get());
}

/// A folder that was removed keeps its name in use until it is let go here.
int Win32FolderNotification::Rearm() {
  if (!open) return kInvalidHandle;
  if (gone) oNotification.reset();
  return oNotification ? 0 : kPathNotFound;
}

/// The system does not tell of a folder that was moved.
bool Win32FolderNotification::LookAtFolder() {
  const bool exists = FolderExists(oFolder);
  gone = gone || !exists;
  return exists;
}

}  // namespace

std::unique_ptr<FolderNotification> MakeFolderNotification() {
  return std::make_unique<Win32FolderNotification>();
}

}  // namespace ostrel::platform
