// The main window's frame: whether it is seen, and in which state. Its contents are
// platform/MainWindow.h.
#pragma once

#include <cstdint>

#include "util/Text.h"

namespace ostrel::platform {

enum class WindowState { kNormal, kMinimised, kMaximised };

/// An icon of the system, as windows and the notification area share it; 0: none.
using IconHandle = std::intptr_t;
using WindowHandle = std::intptr_t;  // of any program; 0: none

class WindowFrame {
 public:
  virtual ~WindowFrame() = default;

  /// Marks the window with a property of this name and the value 1, by which another instance
  /// finds it; and takes the mark away.
  virtual void SetMark(TextView name) = 0;
  virtual void RemoveMark(TextView name) = 0;

  /// Shows it in the state it has.
  virtual void Show() = 0;
  virtual void Hide() = 0;
  virtual WindowState State() const = 0;
  /// For a hidden window, sets the state in which it is shown next.
  virtual void SetState(WindowState state) = 0;
  virtual void BringToFront() = 0;
  virtual IconHandle Icon() const = 0;
};

}  // namespace ostrel::platform
