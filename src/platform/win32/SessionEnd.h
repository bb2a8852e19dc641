// Keeps the system from ending this process while it ends in order with the user's session. The
// system takes a process away when all of its windows have answered WM_ENDSESSION. The main window
// must answer at once, since a request in work goes on only when its procedure has returned; so a
// hidden window on a thread of its own answers last.
#pragma once

#include <windows.h>

#include <thread>

#include "platform/win32/Signal.h"

namespace ostrel::platform {

class SessionEnd {
 public:
  SessionEnd() = default;
  /// The process may be taken away from here on.
  ~SessionEnd();
  SessionEnd(const SessionEnd&) = delete;
  SessionEnd& operator=(const SessionEnd&) = delete;

  /// From here on, until it is destroyed or the system's patience is at its end. `mainWindow` gets
  /// WM_ENDSESSION posted, in case that this window is asked first.
  void Delay(HWND mainWindow);

 private:
  void Run();
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  HWND oMainWindow = nullptr;
  Signal oEnded;  // the wait is over
  std::thread oThread;
};

}  // namespace ostrel::platform
