// The main form: owns the parts of the program, wires their events, and answers menus and timers.
// What it shows, it shows through platform::MainWindow; what it decides, one of its parts decides.
#pragma once

#include <functional>
#include <memory>

#include "gateway/HostQuery.h"
#include "gateway/IdleClose.h"
#include "gateway/RequestGate.h"
#include "gateway/RequestHandler.h"
#include "gateway/qbxml.h"
#include "platform/Clock.h"
#include "platform/EventLoop.h"
#include "platform/MainWindow.h"
#include "shell/AppSettings.h"
#include "shell/CommunicationModes.h"
#include "shell/Logs.h"
#include "shell/RunState.h"
#include "shell/SettingsFile.h"
#include "shell/SocketService.h"
#include "transports/FolderTransport.h"
#include "transports/SocketTransport.h"
#include "util/Text.h"

namespace ostrel {

class cCommandLine;

class frmMain {
 public:
  /// What the form runs in. The references outlive the form.
  struct Surroundings {
    platform::MainWindow& window;
    const platform::Clock& clock;
    qbxml::ProcessorFactory createProcessor;
    /// Creates the socket server, its events wired to this transport.
    std::function<std::unique_ptr<SocketService>(SocketTransport&, Trace&)> createSocketServer;
    std::function<std::unique_ptr<platform::FolderNotification>()> createFolderNotification;
    Text programFolder;
    Text commandLine;  // without the program's name
    /// The form has unloaded: the program can end. The form must not be destroyed in the call.
    std::function<void()> unloaded;
  };

  explicit frmMain(Surroundings surroundings);
  frmMain(const frmMain&) = delete;
  frmMain& operator=(const frmMain&) = delete;

  /// Reads the command line and the settings and starts the transports. A step that fails is told
  /// on the status list, and the steps after it do not run; the form stays loaded. Never raises.
  void Load();
  /// Ends the session, stops the transports and unloads. While a request is in work it is put off
  /// until that has ended. Harmless when repeated; never raises.
  void Unload();
  bool IsUnloaded() const { return bUnloaded; }

  /// A menu item was chosen; one that the form does not know is ignored. Never raises.
  void MenuClick(platform::MenuId item);

  /// The timers' handlers.
  void tmrSocketProcess_Timer();
  /// Blocks while the folder is watched; put off while another handler waits below.
  void tmrProcess_Timer();
  void tmrLook_Timer();
  void tmrClose_Timer();
  void tmrLoadingFlag_Timer();

 private:
  struct MenuCommand;
  static const MenuCommand kMenuCommands[];

  void ReadCommandLine(cCommandLine& commandLine) const;
  void ShowDebugTools();
  // failure: what is told when the step fails.
  void RunLoadSteps(TextView& failure);
  void QueryUnload();
  void CarryOutUnload();
  float ProcessRequest(Text& request, Text& response);
  std::shared_ptr<clsWatchFolder> CreateWatcher();

  void mnuFile_Click();
  void mnuFileCloseConnection_Click();

  void oQBXML_UpdateStatus(TextView text);
  void oQBXML_Loading();
  void oQBXML_Loaded();

  Surroundings oSurroundings;
  AppSettings oSettings;
  RunState oState;
  RequestGate oGate;
  IdleClose oIdleClose;
  Logs oLogs;
  SettingsFile oSettingsFile;
  qbxml oQBXML;
  HostQuery oHostQuery;
  RequestHandler oRequestHandler;
  SocketTransport oSocketTransport;
  FolderTransport oFolderTransport;
  platform::Timer tmrSocketProcess;
  platform::Timer tmrProcess;
  platform::Timer tmrLook;  // looks at the process folder again while it is watched
  platform::Timer tmrClose;
  platform::Timer tmrLoadingFlag;
  platform::Timer tmrUnload;  // carries out an unload that was put off
  CommunicationModes oCommunications;
  bool bUnloadWanted = false;
  bool bUnloaded = false;
};

/// Declares the program's switches.
void DeclareSwitches(cCommandLine& commandLine);
/// The settings file that the command line names, else osl.ini in the program's folder.
Text SettingsFileName(const cCommandLine& commandLine, TextView programFolder);

}  // namespace ostrel
