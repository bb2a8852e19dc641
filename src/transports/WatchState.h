// What the folder transport tells of itself.
#pragma once

namespace ostrel {

struct WatchState {
  bool bFolderRunning = false;  // the folder is watched
  bool bWatchActive = false;    // the folder timer has set up its watcher
};

}  // namespace ostrel
