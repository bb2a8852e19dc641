// The hands of a person in front of a dialog, while the program waits for it to be answered: a
// timer moves them from inside the dialog's own loop.
#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <string>
#include <utility>

#include "platform/EventLoop.h"

namespace ostrel::platform {

/// The visible window of this title that belongs to this process; null when there is none.
inline HWND VisibleWindow(const wchar_t* title) {
  const HWND window = FindWindowW(nullptr, title);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  return process == GetCurrentProcessId() && IsWindowVisible(window) ? window : nullptr;
}

inline std::wstring TextOfWindow(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), 4096)));
  return text;
}

/// Acts once, as soon as the dialog of this title is seen.
class DialogHands {
 public:
  DialogHands(const wchar_t* title, std::function<void(HWND dialog)> action)
      : sTitle(title), Act(std::move(action)) {
    oTimer.SetEnabled(true);
  }

  bool HaveActed() const { return bActed; }

 private:
  void Look() {
    const HWND dialog = VisibleWindow(sTitle);
    if (dialog == nullptr) return;
    oTimer.SetEnabled(false);
    bActed = true;
    Act(dialog);
  }

  const wchar_t* sTitle;
  std::function<void(HWND)> Act;
  bool bActed = false;
  Timer oTimer{std::chrono::milliseconds(10), [this] { Look(); }};
};

inline std::function<void(HWND)> Press(int button) {
  return [button](HWND dialog) {
    PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(button),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
  };
}

/// Dispatches events until the condition holds; false when it did not within ten seconds.
template <typename Condition>
bool AwaitEvents(Condition condition) {
  using std::chrono::steady_clock;
  const auto limit = steady_clock::now() + std::chrono::seconds(10);
  while (!condition() && steady_clock::now() < limit) DoEventsFor(std::chrono::milliseconds(5));
  return condition();
}

}  // namespace ostrel::platform
