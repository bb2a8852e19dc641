#include "shell/modMain.h"

#include <utility>

#include "platform/EventLoop.h"

namespace ostrel::modMain {
namespace {

constexpr TextView kInstanceMutex = u"Ostrel_APPLICATION_MUTEX";
constexpr int kCouldNotStart = 1;

int LeaveToPreviousInstance(const Program& program) {
  if (program.activatePreviousInstance()) return 0;
  program.surroundings.window.ShowMessage(
      u"Windows is unable to find a previous instance of Ostrel Server, but still things there is "
      u"one running.  Please Reboot your system");
  return kCouldNotStart;
}

}  // namespace

int Main(Program program) {
  const auto instance = program.acquireInstanceLock(kInstanceMutex);
  if (instance == nullptr) return LeaveToPreviousInstance(program);

  program.surroundings.unloaded = [] { platform::QuitEventLoop(0); };
  frmMain form(std::move(program.surroundings));
  if (program.formCreated) program.formCreated(form);
  form.Load();
  if (form.IsUnloaded()) return kCouldNotStart;
  return platform::RunEventLoop();
}

}  // namespace ostrel::modMain
