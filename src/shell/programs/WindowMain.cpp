// OstrelServer.exe: the gateway with its window, in front of the QuickBooks that is installed.
#include <memory>

#include "platform/ApplicationWindow.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/FolderNotification.h"
#include "quickbooks/RequestProcessor.h"
#include "shell/forms/Menus.h"
#include "shell/forms/Version.h"
#include "shell/frmMain.h"
#include "shell/modMain.h"
#include "transports/GatewaySocketServer.h"

namespace ostrel {
namespace {

constexpr TextView kNotice =
    u"This program should be running at all times.  If this program is not running, then the "
    u"MultiValue database will not be able to update Quickbooks.";

std::unique_ptr<SocketService> CreateSocketServer(SocketTransport& transport, Trace& trace) {
  return std::make_unique<GatewaySocketServer>(transport, trace);
}

void WireWindow(platform::ApplicationWindow& window, frmMain& form) {
  using platform::ApplicationWindow;
  window.MenuClick = [&form](platform::MenuId item) { form.MenuClick(item); };
  window.Resize = [&form] { form.Resize(); };
  window.CloseRequest = [&form](ApplicationWindow::CloseReason why) { form.CloseRequest(why); };
  window.RestoreRequest = [&form] { return form.Restore(); };
  window.StatusDoubleClick = [&form](TextView line) { form.lstStatus_DblClick(line); };
}

}  // namespace

int platform::RunWindowProgram(TextView commandLine) {
  const auto window = MakeApplicationWindow({.title = Text(kProgramName),
                                             .caption = Text(kProgramTitle),
                                             .notice = Text(kNotice),
                                             .menus = MainMenus()});
  const auto dialogs = MakeDialogs(*window);
  const auto processes = MakeProcesses();
  return modMain::Main({
      .surroundings = {.window = *window,
                       .frame = *window,
                       .dialogs = *dialogs,
                       .processes = *processes,
                       .createTextForm = MakeTextForm,
                       .createNotifyIcon = MakeNotifyIcon,
                       .clock = SystemClock(),
                       .createProcessor = MakeInstalledRequestProcessor,
                       .createSocketServer = CreateSocketServer,
                       .createFolderNotification = MakeFolderNotification,
                       .programFolder = ProgramFolder(),
                       .commandLine = Text(commandLine),
                       .unloaded = {}},
      .findPreviousInstance = [] { return FindMarkedWindow(frmMain::kWindowMark); },
      .activatePreviousInstance = ActivateWindow,
      .formCreated = [&window](frmMain& form) { WireWindow(*window, form); },
  });
}

}  // namespace ostrel
