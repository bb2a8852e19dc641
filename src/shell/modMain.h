// Where the program begins, with a window or without: once on a machine, and not a second time.
#pragma once

#include <functional>
#include <memory>

#include "platform/SingleInstance.h"
#include "shell/frmMain.h"
#include "util/Text.h"

namespace ostrel::modMain {

struct Program {
  /// `unloaded` is Main's own.
  frmMain::Surroundings surroundings;
  /// Brings the window of the running instance to the front; false when there is none to be found.
  std::function<bool()> activatePreviousInstance;
  /// The form exists and loads next: what the system tells can be wired to it.
  std::function<void(frmMain&)> formCreated;
  /// Whether this is the first instance: what it returns is held while the program runs.
  std::function<std::unique_ptr<platform::InstanceLock>(TextView name)> acquireInstanceLock =
      platform::AcquireInstanceLock;
};

/// Runs the program until its form has unloaded. Returns the exit code: 0, or 1 when it could not
/// start (another instance runs, or there is no settings file).
int Main(Program program);

}  // namespace ostrel::modMain
