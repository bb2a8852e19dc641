#include "shell/modMain.h"

#include <chrono>
#include <thread>
#include <utility>

#include "platform/EventLoop.h"

namespace ostrel::modMain {
namespace {

constexpr TextView kInstanceMutex = u"Ostrel_APPLICATION_MUTEX";
constexpr int kCouldNotStart = 1;

enum class Start { kFirst, kActivated, kNotFound };

// The first instance holds the lock for as long as it runs.
bool IsFirstInstance(const Program& program, std::unique_ptr<platform::InstanceLock>& lock) {
  lock = program.acquireInstanceLock(kInstanceMutex);
  return lock != nullptr;
}

platform::WindowHandle FindPreviousInstance(const Program& program) {
  return program.findPreviousInstance ? program.findPreviousInstance() : 0;
}

bool ActivatePreviousInstance(const Program& program, platform::WindowHandle hWnd) {
  return program.activatePreviousInstance(hWnd);
}

// An instance that is about to end, or that has only begun, holds the lock and shows no window: it
// is looked for until the program's patience has gone.
Start BeFirstOrActivate(const Program& program, std::unique_ptr<platform::InstanceLock>& lock) {
  using Steady = std::chrono::steady_clock;
  constexpr std::chrono::milliseconds kPause(50);
  for (const auto until = Steady::now() + program.patience;;) {
    if (IsFirstInstance(program, lock)) return Start::kFirst;
    const platform::WindowHandle hWnd = FindPreviousInstance(program);
    if (hWnd != 0 && ActivatePreviousInstance(program, hWnd)) return Start::kActivated;
    if (Steady::now() >= until) return Start::kNotFound;
    std::this_thread::sleep_for(kPause);
  }
}

}  // namespace

int Main(Program program) {
  std::unique_ptr<platform::InstanceLock> instance;
  const Start start = BeFirstOrActivate(program, instance);
  if (start == Start::kActivated) return 0;
  if (start == Start::kNotFound) {
    program.surroundings.window.ShowMessage(
        u"Windows is unable to find a previous instance of Ostrel Server, but still things there "
        u"is one running.  Please Reboot your system");
    return kCouldNotStart;
  }

  int exitCode = kCouldNotStart;  // until the form has loaded
  program.surroundings.unloaded = [&] {
    instance.reset();
    platform::QuitEventLoop(exitCode);
  };
  const bool endUnlessServing = program.endUnlessServing;
  frmMain form(std::move(program.surroundings));
  if (program.formCreated) program.formCreated(form);
  form.Load();
  if (endUnlessServing && !form.IsServing()) {
    form.AddStatus(u"Nothing is served: the program ends");
    form.Unload();
  } else {
    exitCode = 0;
  }
  return platform::RunEventLoop();
}

}  // namespace ostrel::modMain
