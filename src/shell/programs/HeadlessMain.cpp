// ostrel-server: the gateway without a window, with the QuickBooks stand-in built in.
#include <exception>
#include <memory>

#include "platform/Clock.h"
#include "platform/Console.h"
#include "platform/FileSystem.h"
#include "shell/forms/Menus.h"
#include "shell/forms/Version.h"
#include "shell/modMain.h"
#include "shell/programs/ConsoleSurroundings.h"
#include "shell/programs/HeadlessOptions.h"
#include "simulator/SimulatedRequestProcessor.h"
#include "transports/GatewaySocketServer.h"

namespace ostrel {
namespace {

constexpr int kUsageError = 64;

constexpr TextView kHelp =
    u"Usage: ostrel-server [-ini FILE] [-debug] [-commmenu false]\n"
    u"\n"
    u"The MultiValue QuickBooks gateway without a window. It answers requests over TCP and in "
    u"files\n"
    u"as its settings file says, with QuickBooks played by the built-in stand-in.\n"
    u"\n"
    u"  -ini FILE        settings file; without it, osl.ini beside the program\n"
    u"  -debug           as the product's debug mode\n"
    u"  -commmenu false  as the product's switch; without effect here\n"
    u"  --help           this text\n"
    u"  --version        the program's version\n"
    u"\n"
    u"SIGINT, SIGTERM and SIGHUP end it as File/Exit does, once the request in work has ended and\n"
    u"the responses have gone out; a second one gives these up. SIGUSR1 switches the "
    u"communication\n"
    u"log.\n";

Text NameAndVersion() { return Text(kProgramName) + u" " + ProgramVersion(); }

void WireSignals(frmMain& form) {
  using platform::ConsoleSignal;
  using CloseReason = platform::ApplicationWindow::CloseReason;
  platform::OnConsoleSignal(ConsoleSignal::kExit, [&form] { form.MenuClick(mnuFileExit); });
  platform::OnConsoleSignal(ConsoleSignal::kSystemEnds,
                            [&form] { form.CloseRequest(CloseReason::kSystemEnds); });
  platform::OnConsoleSignal(ConsoleSignal::kUser, [&form] { form.MenuClick(mnuToolsCommLog); });
}

std::unique_ptr<SocketService> CreateSocketServer(SocketTransport& transport, Trace& trace) {
  return std::make_unique<GatewaySocketServer>(transport, trace);
}

int Run(const HeadlessOptions& options) {
  ConsoleSurroundings console;
  const auto formCreated = [&](frmMain& form) {
    console.oView.InsertStatusLine(0,
                                   NameAndVersion() + u", settings file " + options.sSettingsFile);
    WireSignals(form);
  };
  return modMain::Main({
      .surroundings = {.window = console.oView,
                       .frame = console.oFrame,
                       .dialogs = console.oDialogs,
                       .processes = console.oProcesses,
                       .createTextForm = MakeConsoleForm,
                       .createNotifyIcon = MakeNoIcon,
                       .clock = platform::SystemClock(),
                       .createProcessor = MakeSimulatedRequestProcessor,
                       .createSocketServer = CreateSocketServer,
                       .createFolderNotification = platform::MakeFolderNotification,
                       .programFolder = platform::ProgramFolder(),
                       .commandLine = options.sCommandLine,
                       .unloaded = {}},
      .formCreated = formCreated,
      .endUnlessServing = true,
  });
}

int Main(const std::vector<Text>& arguments) {
  const HeadlessOptions options = ReadHeadlessOptions(arguments);
  if (options.bHelp || options.bVersion) {
    platform::WriteStandardOutput(options.bHelp ? Text(kHelp) : NameAndVersion() + u"\n");
    return 0;
  }
  if (!options.sUnknown.empty()) {
    platform::WriteStandardError(u"ostrel-server: unknown argument: " + options.sUnknown +
                                 u"\nTry ostrel-server --help.\n");
    return kUsageError;
  }
  return Run(options);
}

}  // namespace
}  // namespace ostrel

int main(int argc, char* argv[]) {
  try {
    return ostrel::Main(ostrel::platform::ProgramArguments(argc, argv));
  } catch (const std::exception& error) {
    ostrel::platform::WriteStandardError(ostrel::FromUtf8(error.what()) + u"\n");
    return 1;
  }
}
