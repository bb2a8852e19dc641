#include "transports/clsWatchFolder.h"

#include <chrono>
#include <utility>

#include "platform/FileSystem.h"

namespace ostrel {
namespace {

using WaitResult = platform::FolderNotification::WaitResult;

constexpr std::chrono::milliseconds kRound{100};
constexpr int kRoundsUntilNextTry = 20;

Text PathInFolder(TextView folder, TextView fileName) {
  const bool separated = folder.ends_with(u'\\') || folder.ends_with(u'/');
  return Text(folder) + (separated ? u"" : u"\\") + Text(fileName);
}

}  // namespace

/// The state of a watch while it is on the stack, however it ends.
class clsWatchFolder::Watch {
 public:
  explicit Watch(clsWatchFolder& watcher) : oWatcher(watcher) {
    oWatcher.bWatching = true;
    oWatcher.bStop = false;
  }
  ~Watch() {
    oWatcher.bWatching = false;
    oWatcher.oNotification->Close();
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

 private:
  clsWatchFolder& oWatcher;
};

clsWatchFolder::clsWatchFolder(std::unique_ptr<platform::FolderNotification> notification)
    : oNotification(std::move(notification)) {}

clsWatchFolder::~clsWatchFolder() { WatchStop(); }

void clsWatchFolder::WatchFile(TextView folder, TextView fileName) {
  if (bWatching) return;
  const Text path(folder);
  const Text file = PathInFolder(folder, fileName);
  const Watch watch(*this);
  if (!Begin(path)) return;

  auto lastSeen = platform::ModifiedTime(file);
  Run(path, [&] {
    const auto modified = platform::ModifiedTime(file);
    if (modified <= lastSeen) return;
    lastSeen = modified;
    if (FileChanged) FileChanged();
  });
}

void clsWatchFolder::WatchFolder(TextView path) {
  if (bWatching) return;
  const Text folder(path);
  const Watch watch(*this);
  if (!Begin(folder)) return;

  Run(folder, [&] {
    if (FolderChanged) FolderChanged(folder);
  });
}

void clsWatchFolder::WatchStop() {
  bStop = true;
  if (!oNotification->IsOpen()) return;
  DoEvents();
  oNotification->Close();
}

bool clsWatchFolder::IsFolderThere(TextView folder) {
  return oNotification->IsOpen() ? oNotification->LookAtFolder() : platform::FolderExists(folder);
}

bool clsWatchFolder::Begin(const Text& folder) {
  if (oNotification->Open(folder) == 0) return true;
  if (ShowMessage) ShowMessage(u"Fatal Error: Unable to start watching the folder: " + folder);
  return false;
}

/// Armed again before the event is told: what changes meanwhile is told by the next wait.
void clsWatchFolder::Run(const Text& folder, const std::function<void()>& changed) {
  bool armed = true;
  while (armed ? WaitForChange() : WaitForReturn(folder)) {
    armed = !armed || oNotification->Rearm() == 0;  // opened afresh, it is armed already
    changed();
    DoEvents();
  }
}

bool clsWatchFolder::WaitForChange() {
  auto result = WaitResult::kTimePassed;
  while (!bStop && result == WaitResult::kTimePassed) {
    result = oNotification->WaitWithEvents(kRound);
  }
  return result == WaitResult::kChanged;
}

bool clsWatchFolder::WaitForReturn(const Text& folder) {
  auto result = WaitResult::kTimePassed;
  for (int round = 1; !bStop && result == WaitResult::kTimePassed; ++round) {
    result = oNotification->WaitWithEvents(kRound);
    const bool tryNow = result == WaitResult::kTimePassed && round % kRoundsUntilNextTry == 0;
    if (tryNow && oNotification->Open(folder) == 0) return true;
  }
  return false;
}

}  // namespace ostrel
