#include "shell/forms/TrayMenu.h"

#include <utility>

#include "shell/forms/Version.h"

namespace ostrel {

TrayMenu::TrayMenu(NotifyIconFactory createIcon, Trace& trace)
    : CreateIcon(std::move(createIcon)), oTrace(trace) {}

void TrayMenu::Show(platform::IconHandle icon) {
  if (bRemoved) return;
  if (!oSysTray) Create();
  oSysTray->IconHandle(icon);
  oSysTray->ShowIcon();
}

void TrayMenu::Remove() {
  bRemoved = true;
  // The object stays: its menu may be open, and its code on the stack.
  if (oSysTray) oSysTray->HideIcon();
}

void TrayMenu::Create() {
  oSysTray.emplace(CreateIcon(), oTrace);
  oSysTray->AddMenuItem(u"&Open", u"open", true, true);
  oSysTray->AddMenuItem(u"-", u"", false, true);
  oSysTray->AddMenuItem(u"&Close", u"close", false, true);
  oSysTray->ToolTip(kProgramTitle);
  oSysTray->MenuClick = [this](int, TextView key) { oSysTray_MenuClick(key); };
  oSysTray->SysTrayDoubleClick = [this](std::int16_t) { oSysTray_MenuClick(u"open"); };
  oSysTray->SysTrayMouseDown = [this](std::int16_t button) {
    if (button == frmSysTray::kRightButton) oSysTray->ShowMenu();
  };
}

void TrayMenu::oSysTray_MenuClick(TextView key) {
  if (bRemoved) return;
  if (key == u"open") Open();
  if (key == u"close") Close();
}

}  // namespace ostrel
