// Ends a running stand-in from outside, at once: for its clients it is as if QuickBooks had been
// ended in the middle of their work. A process that was simply killed would leave COM with a class
// that nobody serves.
#pragma once

#include <windows.h>

#include <functional>

namespace ostrel::simulator {

/// The server's side. `stop` runs on the event loop of the thread that made it.
class StopWindow {
 public:
  explicit StopWindow(std::function<void()> stop);
  ~StopWindow();
  StopWindow(const StopWindow&) = delete;
  StopWindow& operator=(const StopWindow&) = delete;

 private:
  static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  std::function<void()> oStop;
  HWND oWindow;
};

/// Stops every running server of this user's session and waits for their ends; false when one has
/// not ended within 10 seconds.
bool StopServers();

}  // namespace ostrel::simulator
