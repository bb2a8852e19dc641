// Where the program begins, with a window or without: once on a machine, and not a second time.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/SingleInstance.h"
#include "platform/WindowFrame.h"
#include "shell/frmMain.h"
#include "util/Text.h"

namespace ostrel::modMain {

struct Program {
  /// `unloaded` is Main's own.
  frmMain::Surroundings surroundings;
  /// The window of the running instance; 0 when there is none to be found. A program without a
  /// window leaves this and the next one out.
  std::function<platform::WindowHandle()> findPreviousInstance = {};
  /// Brings that window to the front; false when it is about to end.
  std::function<bool(platform::WindowHandle window)> activatePreviousInstance = {};
  /// The form exists and loads next: what the system tells can be wired to it.
  std::function<void(frmMain&)> formCreated;
  /// Whether this is the first instance: what it returns is held while the program runs.
  std::function<std::unique_ptr<platform::InstanceLock>(TextView name)> acquireInstanceLock =
      platform::AcquireInstanceLock;
  /// The time that another instance which cannot be found has to end, or to show its window.
  std::chrono::milliseconds patience{2000};
  /// For a program that nobody can operate: it ends when nothing is served after its start.
  bool endUnlessServing = false;
};

/// Runs the program until its form has unloaded. Returns the exit code: 0, or 1 when it could not
/// start (another instance runs, there is no settings file, or nothing is served by a program that
/// is to end then). The lock is given back together with the window's mark, when the form unloads.
int Main(Program program);

}  // namespace ostrel::modMain
