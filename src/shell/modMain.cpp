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

  int exitCode = kCouldNotStart;  // until the form has loaded
  program.surroundings.unloaded = [&exitCode] { platform::QuitEventLoop(exitCode); };
  frmMain form(std::move(program.surroundings));
  if (program.formCreated) program.formCreated(form);
  form.Load();
  exitCode = 0;
  return platform::RunEventLoop();
}

}  // namespace ostrel::modMain
