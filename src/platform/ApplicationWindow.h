// The program's one window, with all that belongs to it: menu bar, status list, notice, dialogs and
// the icon in the notification area. Only for programs that have a window.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/Dialogs.h"
#include "platform/MainWindow.h"
#include "platform/NotifyIcon.h"
#include "platform/Processes.h"
#include "platform/TextForm.h"
#include "platform/WindowFrame.h"
#include "util/Text.h"

namespace ostrel::platform {

/// One entry of the menu bar, in the order in which they are shown.
struct MenuDescription {
  MenuId id;
  MenuId parent = 0;  // 0: stands on the bar itself
  TextView caption;   // "&" before the access key; "-": a separator
};

struct ApplicationWindowDescription {
  Text title;  // the application's, over message boxes and questions
  Text caption;
  Text notice;  // stands below the status list, wrapped
  std::vector<MenuDescription> menus;
};

class ApplicationWindow : public MainWindow, public WindowFrame {
 public:
  enum class CloseReason { kCloseBox, kSystemEnds, kOther };

  /// A menu item was chosen, or one on the bar is about to open.
  std::function<void(MenuId)> MenuClick;
  /// The size or the state has changed.
  std::function<void()> Resize;
  /// The window is asked to close; nothing closes it but its destruction.
  std::function<void(CloseReason)> CloseRequest;
  /// Another instance was started and asks this one to be seen; false when it will not be, since it
  /// is about to end.
  std::function<bool()> RestoreRequest;
  /// A status line was double-clicked, or Enter pressed on it.
  std::function<void(TextView line)> StatusDoubleClick;
};

/// Created hidden, in the state that the program's starter asked for.
std::unique_ptr<ApplicationWindow> MakeApplicationWindow(
    const ApplicationWindowDescription& description);

/// Dialogs belong to this window; the others belong to none. None may outlive it.
std::unique_ptr<Dialogs> MakeDialogs(ApplicationWindow& owner);
std::unique_ptr<TextForm> MakeTextForm(const TextFormDescription& description);
std::unique_ptr<NotifyIcon> MakeNotifyIcon();
std::unique_ptr<Processes> MakeProcesses();

/// The first of all programs' windows that has the mark; 0 when none has.
WindowHandle FindMarkedWindow(TextView mark);
/// Asks a window of this program, in another instance, to be seen in front. False when it is about
/// to end.
bool ActivateWindow(WindowHandle window);

/// The program itself, which defines this: a program that has a window is entered in the system's
/// own way. commandLine: as it was written, without the program's name. Returns the exit code.
int RunWindowProgram(TextView commandLine);

}  // namespace ostrel::platform
