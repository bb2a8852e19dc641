// The main form: owns the parts of the program, wires their events, and handles menus and timers.
// It shows everything through platform::MainWindow, and leaves decisions to its parts.
#pragma once

#include <array>
#include <functional>
#include <memory>

#include "gateway/HostQuery.h"
#include "gateway/IdleClose.h"
#include "gateway/RequestGate.h"
#include "gateway/RequestHandler.h"
#include "gateway/qbxml.h"
#include "platform/ApplicationWindow.h"
#include "platform/Clock.h"
#include "platform/Dialogs.h"
#include "platform/EventLoop.h"
#include "platform/MainWindow.h"
#include "platform/Processes.h"
#include "platform/TextForm.h"
#include "platform/WindowFrame.h"
#include "shell/commands/CommunicationModes.h"
#include "shell/commands/ConnectionTest.h"
#include "shell/commands/DefaultCompanyFile.h"
#include "shell/commands/LogFileView.h"
#include "shell/commands/Logs.h"
#include "shell/commands/SettingsEditor.h"
#include "shell/commands/TestRequest.h"
#include "shell/forms/Menus.h"
#include "shell/forms/TrayMenu.h"
#include "shell/forms/frmAbout.h"
#include "shell/forms/frmError.h"
#include "shell/settings/AppSettings.h"
#include "shell/settings/SettingsFile.h"
#include "transports/FolderTransport.h"
#include "transports/SocketService.h"
#include "transports/SocketTransport.h"
#include "util/Text.h"

namespace ostrel {

class cCommandLine;

class frmMain {
 public:
  /// The window's mark, by which a second instance finds it.
  static constexpr TextView kWindowMark = u"Ostrel_APPLICATION";

  /// The surroundings of the form. The references outlive the form.
  struct Surroundings {
    platform::MainWindow& window;
    platform::WindowFrame& frame;
    platform::Dialogs& dialogs;
    platform::Processes& processes;
    platform::TextFormFactory createTextForm;
    NotifyIconFactory createNotifyIcon;
    const platform::Clock& clock;
    qbxml::ProcessorFactory createProcessor;
    SocketServiceFactory createSocketServer;
    std::function<std::unique_ptr<platform::FolderNotification>()> createFolderNotification;
    Text programFolder;
    Text commandLine;  // without the program's name
    /// The form has unloaded: the program can end. The form must not be destroyed in the call.
    std::function<void()> unloaded;
  };

  explicit frmMain(Surroundings surroundings);
  frmMain(const frmMain&) = delete;
  frmMain& operator=(const frmMain&) = delete;

  /// Marks the window, reads the command line and the settings, starts the transports, shows the
  /// icon in the notification area and then the window, unless that is to begin minimised. A step
  /// that fails is told on the status list, and the steps after it do not run; the form stays
  /// loaded, its window shown. Never raises.
  void Load();
  /// Ends the session, stops the transports and unloads. While a request is in work it is put off
  /// until that has ended, and then until the responses have gone out, unless no client has taken
  /// anything for five seconds. Harmless when repeated; never raises.
  void Unload();
  bool IsUnloaded() const { return bUnloaded; }
  void AddStatus(TextView text) { oLogs.AddStatus(text); }
  /// Whether requests are taken over one way at least.
  bool IsServing() const { return !bUnloadWanted && oCommunications.IsServing(); }

  /// The state of the transports: whether each runs, and the index of the connection whose request
  /// is in work (0: none). The folder is watched as soon as its watcher has been set up.
  bool bSocketRunning() const { return oSocketTransport.IsRunning(); }
  bool bFolderRunning() const { return oFolderTransport.IsRunning(); }
  bool bWatchActive() const { return oFolderTransport.IsRunning(); }
  std::int16_t iActiveSocket() const { return oSocketTransport.ActiveSocket(); }

  /// The events of the window. None of the handlers raises.
  void Resize();
  /// Another instance was started in vain. False when this one is about to end: its window is not
  /// shown any more.
  bool Restore();
  void CloseRequest(platform::ApplicationWindow::CloseReason reason);
  void lstStatus_DblClick(TextView line);

  /// A menu item was chosen; one that the form does not know is ignored. Never raises.
  void MenuClick(platform::MenuId item);

  /// The timers' handlers.
  void tmrSocketProcess_Timer();
  /// Blocks while the folder is watched; put off while another handler waits below.
  void tmrProcess_Timer();
  void tmrLook_Timer();
  void tmrClose_Timer();
  void tmrLoadingFlag_Timer();
  void tmrReload_Timer();
  void tmrGiveUp_Timer();

 private:
  struct MenuCommand;
  static const MenuCommand kMenuCommands[];

  void RunCommand(const MenuCommand& command);
  void ReadCommandLine();
  void ShowDebugTools();
  // failure: what is told when the step fails. False when the window has been hidden.
  bool RunLoadSteps(TextView& failure);
  void QueryUnload();
  bool AwaitDelivery();
  void GiveUpWaiting();
  void CarryOutUnload();
  void CarryOutReload();
  std::shared_ptr<clsWatchFolder> CreateWatcher();

  void oWatchFolder_FolderChanged(TextView folder);
  void oSysTray_SysTrayDoubleClick();
  void oSysTray_SysTrayMouseDown(std::int16_t button);
  void oSysTray_MenuClick(TextView key);

  void mnuFile_Click();
  void mnuFileTest_Click();
  void mnuFileCloseConnection_Click();
  void mnuFileHide_Click();
  void mnuFileExit_Click();
  void mnuToolsSettings_Click();
  void mnuToolsQBFile_Click();
  void mnuToolsStartQB_Click();
  void mnuToolsHist_Click();
  void mnuToolsCommLog_Click();
  void mnuToolsTest_Click();
  void mnuCommunicationsFolder_Click();
  void mnuCommunicationsSocket_Click();
  void mnuCommunicationsD3Linux_Click();
  void mnuCommunicationsD3NT_Click();
  void mnuCommunicationsUniverse_Click();
  void mnuCommunicationsOI_Click();
  void mnuHelpAbout_Click();

  // The only place where the window comes back, whoever asks for it.
  void RestoreWindow();
  void ProcessSoon();
  bool LetEventsRun() const;

  void oQBXML_UpdateStatus(TextView text);
  void oQBXML_Loading();
  void oQBXML_Loaded();

  Surroundings oSurroundings;
  AppSettings oSettings;
  RequestGate oGate;
  IdleClose oIdleClose;
  Logs oLogs;
  SettingsFile oSettingsFile;
  qbxml oQBXML;
  HostQuery oHostQuery;
  RequestHandler oRequestHandler;
  frmError oError;
  frmAbout oAbout;
  DefaultCompanyFile oCompanyFile;
  ConnectionTest oConnectionTest;
  TestRequest oTestRequest;
  SettingsEditor oSettingsEditor;
  LogFileView oLogFileView;
  TrayMenu oSysTray;
  SocketTransport oSocketTransport;
  FolderTransport oFolderTransport;
  platform::Timer tmrSocketProcess;
  platform::Timer tmrProcess;
  platform::Timer tmrLook;  // looks at the process folder again while it is watched
  platform::Timer tmrClose;
  platform::Timer tmrLoadingFlag;
  platform::Timer tmrDelivery;  // looks whether the responses have gone out
  platform::Timer tmrUnload;    // carries out an unload that was put off
  platform::Timer tmrReload;    // reads the edited settings that had to wait for a request
  platform::Timer tmrGiveUp;    // ends the waits of the exit when the system ends
  CommunicationModes oCommunications;
  std::array<bool, mnuLast + 1> bRunning{};  // by menu item: its command is on the stack
  bool bDebug = false;                       // the debug switch was given
  bool bUnloadWanted = false;
  bool bWaitingGivenUp = false;  // by a second exit
  bool bDeliveryTold = false;
  bool bUnloaded = false;
};

/// Declares the program's switches.
void DeclareSwitches(cCommandLine& commandLine);
/// The settings file that the command line names, else osl.ini in the program's folder.
Text SettingsFileName(const cCommandLine& commandLine, TextView programFolder);

}  // namespace ostrel
