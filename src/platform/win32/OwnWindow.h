// A window whose messages are handled by a class of ours: the base of the main window and of the
// one that belongs to the icon in the notification area. A derived class has a table from message
// to member function.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <span>

#include "platform/win32/MessageLoop.h"

namespace ostrel::platform {

/// The result of a message; nothing leaves the message to the system.
using MessageResult = std::optional<LRESULT>;

template <typename Window>
struct MessageEntry {
  UINT message;
  MessageResult (Window::*handler)(WPARAM wParam, LPARAM lParam);
};

/// The result of the handler that the table has for the message; nothing when it has none.
template <typename Window>
MessageResult DispatchByTable(Window& window, std::span<const MessageEntry<Window>> table,
                              UINT message, WPARAM wParam, LPARAM lParam) {
  for (const auto& entry : table) {
    if (entry.message == message) return (window.*entry.handler)(wParam, lParam);
  }
  return std::nullopt;
}

class OwnWindow {
 public:
  OwnWindow(const OwnWindow&) = delete;
  OwnWindow& operator=(const OwnWindow&) = delete;

  HWND Handle() const { return hWindow; }

 protected:
  struct Frame {
    const wchar_t* className;
    const wchar_t* caption = L"";
    DWORD style = WS_POPUP;
    DWORD extendedStyle = 0;
  };

  OwnWindow() = default;
  virtual ~OwnWindow() { Destroy(); }

  /// Hidden, where and as large as the system likes. Raises std::runtime_error when the system has
  /// no window left.
  void Create(const Frame& frame);
  /// Parts the object from its window: from here on the system handles every message.
  void Detach();
  /// Harmless when repeated.
  void Destroy();

  /// May raise: the message is left to the system then.
  virtual MessageResult OnMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;

  /// Runs what the program does at a message that the system or its user has caused, as
  /// MessageLoop.h says. Nothing leaves it.
  void Raise(UINT message, HandlerRef handlers) const noexcept;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  HWND hWindow = nullptr;
};

/// Lets the message come from programs of lower rights as well, as the shell is to one that was
/// started by an administrator.
void AllowFromEverybody(HWND window, UINT message);

}  // namespace ostrel::platform
