// A kernel event that stays raised until it is lowered.
#pragma once

#include <windows.h>

#include <chrono>
#include <system_error>

namespace ostrel::platform {

class Signal {
 public:
  /// Raises std::system_error.
  Signal() : hEvent(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    if (hEvent == nullptr) {
      throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "event");
    }
  }
  ~Signal() { CloseHandle(hEvent); }
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;

  HANDLE Get() const { return hEvent; }
  void Raise() const { SetEvent(hEvent); }
  void Lower() const { ResetEvent(hEvent); }
  /// Waits without dispatching anything; false when the time has passed.
  bool Await(std::chrono::milliseconds time) const {
    return WaitForSingleObject(hEvent, static_cast<DWORD>(time.count())) == WAIT_OBJECT_0;
  }

 private:
  HANDLE hEvent;
};

}  // namespace ostrel::platform
