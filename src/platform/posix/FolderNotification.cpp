// Folder changes over inotify. What the system reports is read as soon as it comes, in a wait or
// not, and only remembered here: a queue that is left alone would keep the loop awake.
#include "platform/FolderNotification.h"

#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "platform/FileSystem.h"
#include "platform/SystemError.h"
#include "platform/posix/ErrorNumbers.h"
#include "platform/posix/LoopWatch.h"
#include "platform/posix/Path.h"

namespace ostrel::platform {
namespace {

// Names of files, attributes and times of the last write. The time of a write counts when it is
// written and, for what a memory map has changed, when the file is closed.
constexpr std::uint32_t kChanges =
    IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_ATTRIB | IN_MODIFY | IN_CLOSE_WRITE;
constexpr std::uint32_t kFolderGone = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

/// The system's queue of what happened in one folder.
class ChangeQueue {
 public:
  ChangeQueue() : descriptor(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {}
  ~ChangeQueue() {
    oWatch.reset();
    if (descriptor >= 0) close(descriptor);
  }
  ChangeQueue(const ChangeQueue&) = delete;
  ChangeQueue& operator=(const ChangeQueue&) = delete;

  /// 0, or the error number.
  int Watch(std::string folder);
  /// Whether something has changed since the last call.
  bool TakeChanged() { return std::exchange(changed, false); }
  bool HasChanged() const { return changed; }
  /// Whether the folder is no longer the one at its path: removed, moved, or a folder above it was.
  bool FolderIsGone() const { return gone; }
  /// Whether there is a folder at the path; one that is not the watched one is a change.
  bool LookAtFolder();

 private:
  void Read();
  void Take(std::uint32_t what);
  bool StatusOfFolder(struct stat& status) const { return stat(oFolder.c_str(), &status) == 0; }

  int descriptor;
  std::string oFolder;
  struct stat oOpened {};
  bool changed = false;
  bool gone = false;
  std::optional<LoopWatch> oWatch;
};

int ChangeQueue::Watch(std::string folder) {
  if (descriptor < 0) return LastErrorNumber();
  oFolder = std::move(folder);
  if (inotify_add_watch(descriptor, oFolder.c_str(), kChanges | kFolderGone | IN_ONLYDIR) < 0) {
    // The user's limit for watches; no disk is full.
    return errno == ENOSPC ? kTooManyOpenFiles : RefineMissing(LastErrorNumber(), oFolder);
  }
  if (!StatusOfFolder(oOpened)) return RefineMissing(LastErrorNumber(), oFolder);
  oWatch.emplace(descriptor, POLLIN, [this](short) { Read(); });
  return 0;
}

/// One buffer full: what is left is reported again, after the other events.
void ChangeQueue::Read() {
  alignas(inotify_event) std::array<char, 16384> bytes;
  const ssize_t count = read(descriptor, bytes.data(), bytes.size());
  const char* const end = bytes.data() + std::max<ssize_t>(count, 0);
  for (const char* at = bytes.data(); at < end;) {
    inotify_event event;
    std::memcpy(&event, at, sizeof event);
    Take(event.mask);
    at += sizeof event + event.len;
  }
}

void ChangeQueue::Take(std::uint32_t what) {
  const bool goneNow = (what & kFolderGone) != 0;
  const bool ofSubfolder = (what & IN_ISDIR) != 0;
  gone = gone || goneNow;
  // Anything may have happened when the queue has run over, which has no other mark.
  changed = changed || goneNow || !ofSubfolder;
}

bool ChangeQueue::LookAtFolder() {
  struct stat now {};
  const bool exists = StatusOfFolder(now) && S_ISDIR(now.st_mode);
  const bool same = exists && now.st_dev == oOpened.st_dev && now.st_ino == oOpened.st_ino;
  if (!same) gone = changed = true;
  return exists;
}

class PosixFolderNotification final : public FolderNotification {
 public:
  int Open(TextView folder) override;
  void Close() override;
  bool IsOpen() const override { return open; }
  WaitResult WaitWithEvents(std::chrono::milliseconds time) override;
  int Rearm() override;
  bool LookAtFolder() override;

 private:
  bool HasChanged() const { return oQueue && oQueue->HasChanged(); }

  bool open = false;
  Text oPath;
  unsigned opening = 0;                 // changes whenever another folder, or none, is watched
  std::unique_ptr<ChangeQueue> oQueue;  // none after the folder has gone
};

int PosixFolderNotification::Open(TextView folder) try {
  auto queue = std::make_unique<ChangeQueue>();
  if (const int error = queue->Watch(ResolveFolder(folder))) return error;
  oPath = folder;
  oQueue = std::move(queue);
  open = true;
  ++opening;
  return 0;
} catch (const std::bad_alloc&) {
  return kOutOfMemory;
}

void PosixFolderNotification::Close() {
  oQueue.reset();
  open = false;
  ++opening;
}

FolderNotification::WaitResult PosixFolderNotification::WaitWithEvents(
    std::chrono::milliseconds time) {
  if (!open) return WaitResult::kClosed;

  const unsigned begun = opening;
  const auto deadline = std::chrono::steady_clock::now() + time;
  DoEventsUntil([&] { return opening != begun || HasChanged(); }, deadline);

  if (opening != begun) return WaitResult::kClosed;
  if (LoopIsToQuit()) return WaitResult::kLoopQuits;
  return oQueue && oQueue->TakeChanged() ? WaitResult::kChanged : WaitResult::kTimePassed;
}

int PosixFolderNotification::Rearm() {
  if (!open) return kInvalidHandle;
  if (oQueue && oQueue->FolderIsGone()) oQueue.reset();
  return oQueue ? 0 : kPathNotFound;
}

bool PosixFolderNotification::LookAtFolder() {
  return oQueue ? oQueue->LookAtFolder() : FolderExists(oPath);
}

}  // namespace

std::unique_ptr<FolderNotification> MakeFolderNotification() {
  return std::make_unique<PosixFolderNotification>();
}

}  // namespace ostrel::platform
